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

/// Place of the value of an attribute, behind its quotation mark, in the tag whose name ends at `at`; npos without one.
/// Values may hold anything but their quotes.
std::size_t attribute(const std::string& svg, std::size_t at, const std::string& name) {
  while ((at = svg.find_first_not_of(spaces, at)) != std::string::npos && svg[at] != '>' && svg[at] != '/') {
    const std::size_t name_end = svg.find_first_of(" \t\r\n=>", at);
    if (name_end == std::string::npos) break;
    const std::size_t quote = svg.find_first_of("\"'>", name_end);
    if (quote == std::string::npos || svg[quote] == '>') break;
    if (svg.compare(at, name_end - at, name) == 0) return quote + 1;
    const std::size_t end = svg.find(svg[quote], quote + 1);
    if (end == std::string::npos) break;
    at = end + 1;
  }
  return std::string::npos;
}

/// Gives the root an attribute unless it has it.
void add_to_root(std::string& svg, const std::string& name, const std::string& value) {
  const std::size_t root = first_element(svg);
  if (root == std::string::npos) return;
  const std::size_t name_end = svg.find_first_of(" \t\r\n/>", root);
  if (name_end == std::string::npos || attribute(svg, name_end, name) != std::string::npos) return;
  svg.insert(name_end, " " + name + "=\"" + value + "\"");
}

/// Place of the number behind "stroke-width" at `at`, or `at` where none is given.
std::size_t number_behind(const std::string& svg, std::size_t at) {
  std::size_t i = svg.find_first_not_of(spaces, at);
  if (i == std::string::npos || (svg[i] != '=' && svg[i] != ':')) return at;
  i = svg.find_first_not_of(" \t\r\n\"'", i + 1);
  return i == std::string::npos ? at : i;
}

double number_attribute(const std::string& svg, std::size_t at, const std::string& name) {
  double number = 0;
  const std::size_t value = attribute(svg, at, name);
  if (value != std::string::npos) std::from_chars(svg.data() + value, svg.data() + svg.size(), number);
  return number;
}

/// The transformation that stretches the element whose tag's name ends at `at` about its x and y.
std::string stretching(const std::string& svg, std::size_t at, double x_factor, double y_factor) {
  const auto pair = [](double x, double y) { return "(" + number_text(x) + " " + number_text(y) + ")"; };
  const double x = number_attribute(svg, at, "x");
  const double y = number_attribute(svg, at, "y");
  return "translate" + pair(x, y) + " scale" + pair(x_factor, y_factor) + " translate" + pair(0 - x, 0 - y);
}

}  // namespace

double first_stroke_width(const std::string& svg) {
  for (std::size_t at = 0; (at = svg.find(stroke_width, at)) != std::string::npos;) {
    at = number_behind(svg, at + std::strlen(stroke_width));
    double width = 0;
    std::from_chars(svg.data() + at, svg.data() + svg.size(), width);
    if (width > 0) return width;
  }
  return 1;
}

std::string with_texts_stretched(const std::string& svg, double x_factor, double y_factor) {
  std::string result;
  std::size_t done = 0;
  for (std::size_t at = 0; (at = svg.find("<text", at)) != std::string::npos;) {
    at += std::strlen("<text");
    if (at == svg.size() || !std::strchr(" \t\r\n/>", svg[at]))
      continue;  // other elements begin with these letters too
    const std::string transform = stretching(svg, at, x_factor, y_factor);
    const std::size_t present = attribute(svg, at, "transform");
    const std::size_t end = present == std::string::npos ? at : svg.find(svg[present - 1], present);
    if (end == std::string::npos) break;
    result.append(svg, done, end - done);
    // Behind what is there: it is stretched first, and then put in its place.
    result += present == std::string::npos ? " transform=\"" + transform + "\"" : " " + transform;
    done = end;
  }
  result.append(svg, done, std::string::npos);
  return result;
}

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
