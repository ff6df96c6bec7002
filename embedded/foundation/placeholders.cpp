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

/// The number of the mark "{n?" that ends at `end`; 0 for any other question mark.
std::size_t option_number(std::string_view pattern, std::size_t end) {
  const std::size_t open = pattern.rfind('{', end);
  if (open == std::string_view::npos) return 0;
  const std::string_view inside = pattern.substr(open, end - open);
  return inside.find('}') == std::string_view::npos ? highest_placeholder(std::string(inside) + "}") : 0;
}

/// The pattern without its optional parts whose argument is empty, and without the marks of the others.
std::string with_options(std::string_view pattern, const std::vector<std::string>& arguments) {
  std::string result;
  for (std::size_t mark = 0; (mark = pattern.find('?')) != std::string_view::npos;) {
    const std::size_t close = pattern.find("?}", mark + 1);
    const std::size_t number = option_number(pattern, mark);
    if (number == 0 || close == std::string_view::npos) {
      result.append(pattern.substr(0, mark + 1));
      pattern.remove_prefix(mark + 1);
      continue;
    }
    result.append(pattern.substr(0, pattern.rfind('{', mark)));
    const bool shown = number <= arguments.size() && !arguments[number - 1].empty();
    if (shown) result.append(pattern.substr(mark + 1, close - mark - 1));
    pattern.remove_prefix(close + 2);
  }
  return result.append(pattern);
}

}  // namespace

std::string fill_placeholders(std::string_view text, const std::vector<std::string>& arguments) {
  const std::string pattern = with_options(text, arguments);
  std::string result;
  split(
      pattern, [&](std::string_view part) { result += part; },
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
