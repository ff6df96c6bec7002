#pragma once

// A script as statements: what stands between line ends, semicolons and commas outside of brackets. The parts of a
// statement are expressions of the one grammar; the tokens only tell where they begin and end.

#include "embedded/expression/token.hpp"
#include "embedded/expression/tree.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

struct Statement {
  enum class Kind {
    expression,  ///< [value]
    assignment,  ///< [targets, value] name = x, name(i).f{j} = x, [a, ~] = x
    deletion,    ///< [one target, an index node] name(i) = []
    command      ///< [words] a function called with texts: help sin
  };

  Kind kind = Kind::expression;
  std::vector<expression::Tree> targets;  ///< names, indexings and fields that begin with a name; null for "~"
  expression::Tree value;                 ///< offsets in the trees count from the beginning of `text`
  std::vector<std::string> words;
  bool silent = false;     ///< ended by a semicolon
  std::string text;        ///< without what parts it from the next one
  std::size_t line = 1;    ///< of its first character
  std::size_t column = 1;  ///< of its first character, in characters
};

/// All statements of a text, before the first of them is run. Places of errors count from the beginning of the text.
/// @throws "kinemo:scripting:expression" with the ids of `expression::parse`, and "NotInLanguage" (word, line, column,
/// excerpt) for what begins with a word of control flow, "NotAssignable" (text, line, column, excerpt)
std::vector<Statement> parse_script(std::string_view text);

/// A text that comes line by line until it is whole. Each line is read once.
class IncompleteText {
 public:
  /// Takes the next line, which comes without its end. Whether further ones are needed to end what the text begins:
  /// brackets or block comments that aren't closed, or "..." at the end of the line. A text with an error of form needs
  /// none.
  bool needs_more(std::string_view line);

 private:
  bool add(std::string_view line);

  expression::LineTokenizer lines_;
  std::size_t open_ = 0;      ///< brackets
  std::size_t comments_ = 0;  ///< block comments, one in the other
};

/// Words that begin a statement with texts behind them, such as "help" in `help sin`.
const std::vector<std::string>& command_words();
/// Words that other languages have for control flow and this one doesn't know. None is the name of a variable.
const std::vector<std::string>& reserved_words();

}  // namespace embedded::scripting_runtime
