#include "embedded/data/expr_node.hpp"
#include "embedded/expression/print.hpp"

#include <ostream>

namespace data2::core {

namespace ex = embedded::expression;

namespace {

constexpr std::string_view continuation = " ...";

/// Breaks a line at its blanks. The blank that is replaced stands between two operands or operators, as an expression
/// of the subset holds no texts; the continuation means the same there.
std::string wrapped(const std::string& line, std::size_t indent, std::size_t width) {
  std::string result;
  std::size_t begin = 0;
  while (begin < line.size()) {
    const std::size_t room = width > indent + continuation.size() ? width - indent - continuation.size() : 1;
    if (line.size() - begin <= room + continuation.size()) break;
    std::size_t end = line.rfind(' ', begin + room);
    if (end == std::string::npos || end <= begin) end = line.find(' ', begin + room);
    if (end == std::string::npos) break;
    result.append(line, begin, end - begin).append(continuation).append("\n").append(indent, ' ');
    begin = end + 1;
  }
  return result.append(line, begin, std::string::npos);
}

/// Bindings stand around the expression; they hold texts and aren't broken.
std::string text_of(const ex::Node& node, std::size_t indent, std::size_t width) {
  const Binding binding = binding_of(node);
  if (binding.expression == nullptr) {
    const std::string line = ex::print(node);
    return width == 0 || line.size() + indent <= width ? line : wrapped(line, indent, width);
  }
  return ex::print(node.child(0)) + "(" + text_of(*binding.expression, indent, width) + ", " +
         ex::print(node.child(2)) + ")";
}

}  // namespace

void out(std::ostream& stream, std::size_t indent, std::size_t width, const Expr& expression) {
  stream << std::string(indent, ' ');
  if (expression.node()) stream << text_of(*expression.node()->tree, indent, width);
}

}  // namespace data2::core
