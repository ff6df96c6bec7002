// The cache of parsed texts: two generations, of which the older one is dropped when the younger one is full. A text
// that is asked for again moves to the younger one. So the size is bounded and no list of uses is kept.

#include "embedded/expression/parse.hpp"

#include <string>
#include <unordered_map>

namespace embedded::expression {

namespace {

constexpr std::size_t generation_bytes = std::size_t{32} << 20;
constexpr std::size_t bytes_per_character = 16;  // of a tree, roughly
constexpr std::size_t bytes_per_entry = 256;

class ParseCache {
 public:
  ParseResult get(std::string_view text) {
    std::string key(text);
    if (const auto found = young_.find(key); found != young_.end()) return {found->second, {}};
    ParseResult result;
    if (const auto found = old_.find(key); found != old_.end()) {
      result.tree = found->second;
    } else {
      result = parse(text);
    }
    if (result) keep(std::move(key), result.tree);
    return result;
  }

 private:
  void keep(std::string text, const Tree& tree) {
    const std::size_t cost = text.size() * bytes_per_character + bytes_per_entry;
    if (used_ + cost > generation_bytes) {
      old_ = std::move(young_);
      young_.clear();
      used_ = 0;
    }
    used_ += cost;
    young_.emplace(std::move(text), tree);
  }

  std::unordered_map<std::string, Tree> young_;
  std::unordered_map<std::string, Tree> old_;
  std::size_t used_ = 0;
};

}  // namespace

ParseResult parse_cached(std::string_view text) {
  static ParseCache cache;
  return cache.get(text);
}

}  // namespace embedded::expression
