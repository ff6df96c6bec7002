#include "embedded/foundation/catalogue.hpp"

#include <algorithm>

namespace kmf::embedded {
namespace {

// Calls `text(part)` and `placeholder(number, part)` for the parts of a pattern, in order.
template <class Text, class Placeholder>
void split(std::string_view pattern, const Text& text, const Placeholder& placeholder) {
  while (!pattern.empty()) {
    const std::size_t open = std::min(pattern.find('{'), pattern.size());
    text(pattern.substr(0, open));
    pattern.remove_prefix(open);
    if (pattern.empty()) return;

    std::size_t end = 1;
    std::size_t number = 0;
    while (end < pattern.size() && end <= 3 && pattern[end] >= '0' && pattern[end] <= '9') {
      number = 10 * number + static_cast<std::size_t>(pattern[end++] - '0');
    }
    const bool is_placeholder = number > 0 && end < pattern.size() && pattern[end] == '}';
    const std::size_t size = is_placeholder ? end + 1 : 1;
    if (is_placeholder) {
      placeholder(number, pattern.substr(0, size));
    } else {
      text(pattern.substr(0, size));
    }
    pattern.remove_prefix(size);
  }
}

}  // namespace

std::string fill_placeholders(std::string_view pattern, const std::vector<std::string>& arguments) {
  std::string result;
  split(
      pattern, [&](std::string_view text) { result += text; },
      [&](std::size_t number, std::string_view part) {
        result += number <= arguments.size() ? std::string_view(arguments[number - 1]) : part;
      });
  return result;
}

std::size_t highest_placeholder(std::string_view pattern) {
  std::size_t highest = 0;
  split(
      pattern, [](std::string_view) {},
      [&](std::size_t number, std::string_view) { highest = std::max(highest, number); });
  return highest;
}

}  // namespace kmf::embedded
