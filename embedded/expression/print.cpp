#include "embedded/expression/print.hpp"

namespace embedded::expression {

namespace {

class Printer {
 public:
  void node(const Node& tree) {
    switch (tree.kind()) {
      case Kind::number:
        return append(print_number(tree.number()));
      case Kind::imaginary:
        return append(print_number(tree.number()) + "i");
      case Kind::text:
        return append(print_text(tree.text()));
      case Kind::name:
        return append(tree.text());
      case Kind::colon:
        return append(":");
      case Kind::end:
        return append("end");
      case Kind::matrix:
        return rows(tree, '[', ']');
      case Kind::cell:
        return rows(tree, '{', '}');
      case Kind::row:
        return list(tree, 0, tree.children().size());
      case Kind::handle:
        return append("@" + tree.text());
      case Kind::anonymous:
        return anonymous(tree);
      default:
        return compound(tree);
    }
  }

  std::string result() && { return std::move(out_); }

 private:
  void compound(const Node& tree) {
    switch (tree.kind()) {
      case Kind::unary:
        append(symbol(tree.op()));
        return bracketed(tree.child(0), precedence(tree.child(0)) < Precedence::unary);
      case Kind::transpose:
        bracketed(tree.child(0), precedence(tree.child(0)) < Precedence::power || doubles_quote(tree));
        return append(symbol(tree.op()));
      case Kind::chain:
        return chain(tree);
      case Kind::range:
        return range(tree);
      case Kind::index:
        return indexed(tree, '(', ')');
      case Kind::cell_index:
        return indexed(tree, '{', '}');
      case Kind::field:
        base(tree.child(0));
        return append("." + tree.text());
      default:  // dynamic_field
        base(tree.child(0));
        append(".");
        return bracketed(tree.child(1), true);
    }
  }

  /// A quote right behind a text, as in 2^'a'', would belong to the text.
  static bool doubles_quote(const Node& transposition) {
    if (transposition.op() != Operator::conjugate_transpose) return false;
    const Node* last = &transposition.child(0);
    while (last->kind() == Kind::chain || last->kind() == Kind::unary) last = last->children().back().get();
    return last->kind() == Kind::text;
  }

  void chain(const Node& tree) {
    const Precedence level = precedence(tree.op());
    const bool wide = level <= Precedence::additive;
    bracketed(tree.child(0), precedence(tree.child(0)) < level);
    for (std::size_t i = 1; i < tree.children().size(); ++i) {
      if (wide) out_ += ' ';
      append(symbol(tree.operators()[i - 1]));
      if (wide) out_ += ' ';
      const Node& right = tree.child(i);
      bracketed(right, level == Precedence::power ? !is_exponent(right) : precedence(right) <= level);
    }
  }

  /// Whether a node stands behind "^" without brackets: a postfix expression with signs before it.
  static bool is_exponent(const Node& tree) {
    const Node* inner = &tree;
    while (inner->kind() == Kind::unary) inner = &inner->child(0);
    return precedence(*inner) == Precedence::postfix;
  }

  void range(const Node& tree) {
    for (std::size_t i = 0; i < tree.children().size(); ++i) {
      if (i > 0) out_ += ':';
      bracketed(tree.child(i), precedence(tree.child(i)) <= Precedence::range);
    }
  }

  void indexed(const Node& tree, char opening, char closing) {
    base(tree.child(0));
    out_ += opening;
    list(tree, 1, tree.children().size());
    out_ += closing;
  }

  /// What is indexed. "1.a" would not be read as a field of 1.
  void base(const Node& tree) {
    const bool number = tree.kind() == Kind::number || tree.kind() == Kind::imaginary;
    bracketed(tree, number || precedence(tree) < Precedence::postfix);
  }

  void rows(const Node& tree, char opening, char closing) {
    out_ += opening;
    for (std::size_t i = 0; i < tree.children().size(); ++i) {
      if (i > 0) append("; ");
      node(tree.child(i));
    }
    out_ += closing;
  }

  void anonymous(const Node& tree) {
    append("@(");
    list(tree, 0, tree.children().size() - 1);
    append(") ");
    node(*tree.children().back());
  }

  void list(const Node& tree, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
      if (i > begin) append(", ");
      node(tree.child(i));
    }
  }

  void bracketed(const Node& tree, bool with_brackets) {
    if (with_brackets) out_ += '(';
    node(tree);
    if (with_brackets) out_ += ')';
  }

  void append(std::string_view text) { out_ += text; }

  std::string out_;
};

}  // namespace

std::string without_controls(std::string_view text, std::string_view kept) {
  constexpr std::string_view digits = "0123456789abcdef";
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    auto code = static_cast<unsigned char>(text[i]);
    const bool two_bytes = code == 0xC2U && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0U;
    if (two_bytes) code = static_cast<unsigned char>(text[++i]);  // U+0080 to U+009F
    const bool control = two_bytes || code < 0x20U || code == 0x7FU;
    if (!control || kept.find(text[i]) != std::string_view::npos) {
      result += text[i];
    } else {
      result += {'\\', 'x', digits[code >> 4U], digits[code & 0xFU]};
    }
  }
  return result;
}

std::string print_text(std::string_view text) {
  std::string result = "'";
  for (const char c : text) {
    if (c == '\'') result += c;
    result += c;
  }
  return result + "'";
}

std::string print(const Node& tree) {
  Printer printer;
  printer.node(tree);
  return std::move(printer).result();
}

}  // namespace embedded::expression
