// Texts of the expression subset. Block parameters of a model repeat the same few texts, so that results are kept: two
// generations, of which the older one is dropped when the younger one is full. That a text isn't in the subset is kept
// as well.

#include "embedded/data/expr_node.hpp"
#include "embedded/data/subset.hpp"
#include "embedded/expression/parse.hpp"
#include "platform/foundation/exception.hpp"

#include <unordered_map>

namespace data2::cvi {

namespace ex = embedded::expression;

namespace {

using Result = boost::optional<core::Expr>;

/// A tree of the subset, also one with a unit bound at its root.
bool is_readable(const ex::Node& tree) {
  const ex::Node* node = &tree;
  for (core::Binding binding = core::binding_of(*node); binding.expression != nullptr;
       binding = core::binding_of(*node)) {
    node = binding.expression;
  }
  return core::is_in_subset(*node);
}

Result read(const std::string& text) {
  const ex::ParseResult parsed = ex::parse(text);
  if (!parsed || !is_readable(*parsed.tree)) return boost::none;
  try {
    return core::make_expr(parsed.tree);
  } catch (const kmf::MessageException&) {
    return boost::none;  // the text in the place of the unit isn't one
  }
}

class ResultCache {
 public:
  Result get(const std::string& text) {
    const auto young = young_.find(text);
    if (young != young_.end()) return young->second;
    const auto old = old_.find(text);
    const Result result = old != old_.end() ? old->second : read(text);
    keep(text, result);
    return result;
  }

 private:
  static constexpr std::size_t generation_cost = std::size_t{1} << 20;  // in characters
  static constexpr std::size_t cost_of_entry = 32;

  void keep(const std::string& text, const Result& result) {
    const std::size_t cost = text.size() + cost_of_entry;
    if (cost > generation_cost) return;
    if (cost_ + cost > generation_cost) {
      old_ = std::move(young_);
      young_ = {};
      cost_ = 0;
    }
    cost_ += cost;
    young_.emplace(text, result);
  }

  std::unordered_map<std::string, Result> young_, old_;
  std::size_t cost_ = 0;  ///< of the younger generation
};

}  // namespace

Result CorvaneParser::operator()(const std::string& text) const {
  static ResultCache& cache = *new ResultCache;
  return cache.get(text);
}

}  // namespace data2::cvi
