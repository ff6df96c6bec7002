#include "platform/foundation/exception.hpp"

#include <algorithm>

namespace kmf {
namespace {

// Deeper causes are shown at this depth, so that a long chain doesn't become a triangle of blanks.
constexpr std::size_t kMaxIndent = 24;

void render(const ErrorData& error, std::size_t indent, const char* lead, std::string& out) {
  const std::string margin(std::min(indent, kMaxIndent), ' ');
  out += margin;
  out += lead;
  for (const char c : error.text) {
    out += c;
    if (c == '\n') out.append(margin).append("  ");
  }
  out += '\n';
  for (std::string object : error.objects) {
    std::replace(object.begin(), object.end(), '\n', ' ');
    out.append(margin).append("  in: ").append(object) += '\n';
  }
  for (const ErrorData& cause : error.causes) render(cause, indent + 2, "cause: ", out);
}

}  // namespace

std::string render_error(const Exception& error) {
  std::string text;
  render(error.data(), 0, "", text);
  return text;
}

}  // namespace kmf
