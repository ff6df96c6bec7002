#include "embedded/scripting_runtime/text_layout.hpp"

#include <algorithm>
#include <sstream>

namespace embedded::scripting_runtime {

namespace {

bool begins_character(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// The first `width` characters.
std::string first_of(const std::string& text, std::size_t width) {
  std::size_t end = 0;
  for (std::size_t seen = 0; end < text.size(); ++end) {
    if (begins_character(text[end]) && ++seen > width) break;
  }
  return text.substr(0, end);
}

std::string wrapped_line(const std::string& line, std::size_t width, std::size_t indent) {
  const std::size_t own = std::min(line.find_first_not_of(' '), line.size());
  const std::string margin(indent + own, ' ');
  std::istringstream words(line);
  std::string result;
  std::string current = margin;
  for (std::string word; words >> word;) {
    const bool first = current.size() == margin.size();
    if (!first && text_width(current) + 1 + text_width(word) > width) {
      result += current + "\n";
      current = margin + word;
      continue;
    }
    current += (first ? "" : " ") + word;
  }
  return result + current;
}

}  // namespace

std::size_t text_width(const std::string& text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins_character));
}

std::string wrapped(const std::string& text, std::size_t width, std::size_t indent) {
  std::istringstream lines(text);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    result += (result.empty() ? "" : "\n") + (line.empty() ? "" : wrapped_line(line, width, indent));
  }
  return result;
}

std::string on_one_line(const std::string& text, std::size_t width) {
  std::istringstream lines(text);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    line.erase(0, line.find_first_not_of(' '));
    if (!result.empty()) result += result.back() == ':' ? " " : ", ";
    result += line;
  }
  const std::string dots = "...";
  return text_width(result) <= width ? result : first_of(result, std::max(width, dots.size()) - dots.size()) + dots;
}

}  // namespace embedded::scripting_runtime
