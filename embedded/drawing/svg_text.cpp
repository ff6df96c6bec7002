#include "embedded/drawing/svg_text.hpp"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace embedded::drawing {

namespace {

constexpr char spaces[] = " \t\r\n";
constexpr char stroke_width[] = "stroke-width";

std::string number_text(double number) {
  char text[32];
  const auto end = std::to_chars(text, text + sizeof text, number).ptr;
  return std::string(text, end);
}

/// Behind the opening and closing of whatever comes before the first element; npos where there is none.
std::size_t first_element(const std::string& svg) {
  std::size_t at = 0;
  while ((at = svg.find('<', at)) != std::string::npos) {
    if (svg.compare(at, 4, "<!--") == 0) {
      at = svg.find("-->", at);
    } else if (svg.compare(at, 2, "<?") == 0) {
      at = svg.find("?>", at);
    } else if (svg.compare(at, 2, "<!") == 0) {
      // A document type may hold declarations in brackets.
      const std::size_t bracket = svg.find_first_of("[>", at);
      at = bracket != std::string::npos && svg[bracket] == '[' ? svg.find("]>", bracket) : bracket;
    } else {
      return at;
    }
    if (at == std::string::npos) break;
  }
  return std::string::npos;
}

/// Whether the tag whose name ends at `at` has an attribute. Values may hold anything but their quotes.
bool has_attribute(const std::string& svg, std::size_t at, const std::string& name) {
  while ((at = svg.find_first_not_of(spaces, at)) != std::string::npos && svg[at] != '>' && svg[at] != '/') {
    const std::size_t name_end = svg.find_first_of(" \t\r\n=>", at);
    if (name_end == std::string::npos) return false;
    if (svg.compare(at, name_end - at, name) == 0) return true;
    const std::size_t quote = svg.find_first_of("\"'>", name_end);
    if (quote == std::string::npos || svg[quote] == '>') return false;
    const std::size_t end = svg.find(svg[quote], quote + 1);
    if (end == std::string::npos) return false;
    at = end + 1;
  }
  return false;
}

/// Gives the root an attribute unless it has it.
void add_to_root(std::string& svg, const std::string& name, const std::string& value) {
  const std::size_t root = first_element(svg);
  if (root == std::string::npos) return;
  const std::size_t name_end = svg.find_first_of(" \t\r\n/>", root);
  if (name_end == std::string::npos || has_attribute(svg, name_end, name)) return;
  svg.insert(name_end, " " + name + "=\"" + value + "\"");
}

/// Place of the number behind "stroke-width" at `at`, or `at` where none is given.
std::size_t number_behind(const std::string& svg, std::size_t at) {
  std::size_t i = svg.find_first_not_of(spaces, at);
  if (i == std::string::npos || (svg[i] != '=' && svg[i] != ':')) return at;
  i = svg.find_first_not_of(" \t\r\n\"'", i + 1);
  return i == std::string::npos ? at : i;
}

}  // namespace

std::string with_stroke_widths(const std::string& svg, double factor) {
  std::string result;
  std::size_t done = 0;
  for (std::size_t at = 0; (at = svg.find(stroke_width, at)) != std::string::npos;) {
    at = number_behind(svg, at + std::strlen(stroke_width));
    double width = 0;
    const auto number = std::from_chars(svg.data() + at, svg.data() + svg.size(), width);
    if (number.ec != std::errc()) continue;
    result.append(svg, done, at - done);
    result += number_text(width * factor);
    done = at = static_cast<std::size_t>(number.ptr - svg.data());
  }
  result.append(svg, done, std::string::npos);
  add_to_root(result, stroke_width, number_text(factor));
  return result;
}

std::string with_foreground(const std::string& svg, const std::string& color) {
  std::string result = svg;
  add_to_root(result, "fill", color);
  add_to_root(result, "color", color);
  return result;
}

std::string foreground_style_sheet(const std::string& color) {
  std::string sheet;
  for (const char* property : {"fill", "stroke"}) {
    const std::string name = property;
    for (const char* black : {"black", "#000", "#000000"}) {
      sheet += "[" + name + "=\"" + black + "\"], ";
      sheet += "[style*=\"" + name + ":" + black + ";\"], [style$=\"" + name + ":" + black + "\"]";
      sheet += " { " + name + ": " + color + " !important }\n";
    }
  }
  return sheet;
}

}  // namespace embedded::drawing
