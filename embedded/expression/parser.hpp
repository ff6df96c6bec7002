#pragma once

// The parser of one text: recursive over brackets only, with a stack of its own for the precedence of operators.

#include "embedded/expression/token.hpp"

#include <string_view>
#include <utility>
#include <vector>

namespace embedded::expression {

class Parser {
 public:
  /// `text` must outlive the parser. @throws Failure
  explicit Parser(std::string_view text) : text_(text), tokens_(tokenize(text)) {}

  /// Of a part of a longer text: tokens whose offsets count from the beginning of `text`, closed by `end_of_text`.
  Parser(std::string_view text, std::vector<Token> tokens) : text_(text), tokens_(std::move(tokens)) {}

  /// @throws Failure
  Tree whole_text();

 private:
  /// Blanks part elements in rows and mean nothing elsewhere.
  enum class Context : bool { plain, elements };
  struct OpenChain;
  class Nesting;

  Tree expression(Context context);
  Tree operand(Context context);
  Tree powers(Context context);
  Tree postfix(Context context, bool with_transpose);
  Tree primary(Context context);
  Tree in_round_brackets();
  Tree literal(Kind kind, TokenType closing);
  Tree row(TokenType closing);
  Tree name_or_end();
  Tree handle(Context context);
  Tree anonymous(std::size_t offset, Context context);
  Tree anonymous_parameter();
  Tree field(const Tree& base);
  std::vector<Tree> arguments(const Tree& base, TokenType closing);
  Tree argument();

  bool binary_operator_follows(Context context) const;
  bool parts_elements(Context context) const;
  Tree close_chains(std::vector<OpenChain>& chains, Tree operand, Precedence level);
  void skip_line_ends();

  const Token& token() const { return tokens_[at_]; }
  const Token& next_token() const { return tokens_[at_ + 1 < tokens_.size() ? at_ + 1 : at_]; }
  bool is(TokenType type) const { return token().type == type; }
  bool is(Operator op) const { return is(TokenType::op) && token().op == op; }
  std::string_view lexeme() const { return text_.substr(token().offset, token().length); }
  const Token& take() { return tokens_[at_++]; }
  void expect(TokenType closing, const Token& opening);
  [[noreturn]] void fail_here() const;

  std::string_view text_;
  std::vector<Token> tokens_;
  std::size_t at_ = 0;
  std::size_t depth_ = 0;
  std::size_t indexing_depth_ = 0;
};

/// Value of the characters of a number; infinity and zero where a double can't hold it.
double number_from(std::string_view digits);

}  // namespace embedded::expression
