#pragma once

// Tokens of the expression language: what lies between text and parser.

#include "embedded/expression/parse.hpp"

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace embedded::expression {

enum class TokenType : std::uint8_t {
  number,
  imaginary,
  text,
  name,
  open_round,
  close_round,
  open_square,
  close_square,
  open_curly,
  close_curly,
  comma,
  semicolon,
  colon,
  dot,
  at,
  assign,  ///< a single "=", which is no part of an expression but of a statement
  newline,
  op,
  end_of_text
};

struct Token {
  TokenType type;
  Operator op;        ///< of `TokenType::op`; plus, minus, not_ also where they stand before an operand
  bool blank_before;  ///< blanks, a comment or a continuation stand between it and the token before
  std::uint32_t offset;
  std::uint32_t length;
};

/// What ends a parse; `throw`n and caught inside the library only.
struct Failure {
  const char* id;
  std::string detail;
  std::size_t offset;
};

/// All tokens of a text, closed by `end_of_text`. Line ends inside round brackets are blanks; inside square and curly
/// ones they are tokens. Quotes behind an operand are transpositions. @throws Failure
std::vector<Token> tokenize(std::string_view text);

/// Reads a text that comes line by line, each line once: what a quote or a line end means depends on brackets that
/// lines before it left open.
class LineTokenizer {
 public:
  LineTokenizer();
  LineTokenizer(LineTokenizer&&) noexcept;
  LineTokenizer& operator=(LineTokenizer&&) noexcept;
  ~LineTokenizer();

  /// Those of the next line, which comes with its end; offsets count from its beginning. @throws Failure
  std::vector<Token> next(std::string_view line);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace embedded::expression
