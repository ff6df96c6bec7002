#include "embedded/scripting_runtime/statement.hpp"

#include "embedded/expression/parser.hpp"

#include <algorithm>
#include <utility>

namespace embedded::scripting_runtime {

namespace {

using expression::Failure;
using expression::Kind;
using expression::Operator;
using expression::Token;
using expression::TokenType;
using expression::Tree;

using Tokens = std::vector<Token>;

bool opens(TokenType type) {
  return type == TokenType::open_round || type == TokenType::open_square || type == TokenType::open_curly;
}

bool closes(TokenType type) {
  return type == TokenType::close_round || type == TokenType::close_square || type == TokenType::close_curly;
}

bool parts_statements(TokenType type) {
  return type == TokenType::newline || type == TokenType::semicolon || type == TokenType::comma;
}

bool contains(const std::vector<std::string>& words, std::string_view word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

/// The tokens of one statement, with offsets that count from its beginning.
class StatementParser {
 public:
  StatementParser(std::string_view text, Tokens tokens) : text_(text), tokens_(std::move(tokens)) {}

  /// @throws Failure with an offset in the statement
  Statement parse() {
    Statement result;
    result.text = text_;
    if (is_name(0) && contains(reserved_words(), lexeme(0))) {
      throw Failure{"NotInLanguage", std::string(lexeme(0)), tokens_[0].offset};
    }
    if (is_command()) {
      result.kind = Statement::Kind::command;
      result.words = words();
      return result;
    }
    const std::size_t equals = assignment();
    if (equals == tokens_.size()) {
      result.value = part(0, tokens_.size());
      return result;
    }
    result.kind = Statement::Kind::assignment;
    result.targets = targets(equals);
    result.value = part(equals + 1, tokens_.size());
    if (deletes(result)) result.kind = Statement::Kind::deletion;
    return result;
  }

 private:
  std::string_view lexeme(std::size_t i) const { return text_.substr(tokens_[i].offset, tokens_[i].length); }
  bool is(std::size_t i, TokenType type) const { return i < tokens_.size() && tokens_[i].type == type; }
  bool is_name(std::size_t i) const { return is(i, TokenType::name); }
  std::size_t end_of(std::size_t i) const { return tokens_[i].offset + tokens_[i].length; }

  /// The first "=" outside of brackets; the number of tokens where there is none.
  std::size_t assignment() const {
    std::size_t depth = 0;
    for (std::size_t i = 0; i < tokens_.size(); ++i) {
      if (opens(tokens_[i].type)) ++depth;
      if (closes(tokens_[i].type)) --depth;
      if (depth == 0 && tokens_[i].type == TokenType::assign) return i;
    }
    return tokens_.size();
  }

  /// A command word, a blank, and something that isn't the rest of an expression.
  bool is_command() const {
    if (!is_name(0) || tokens_.size() < 2 || !contains(command_words(), lexeme(0))) return false;
    const Token& next = tokens_[1];
    if (!next.blank_before || is(1, TokenType::assign) || is(2, TokenType::assign)) return false;
    if (next.type == TokenType::op || next.type == TokenType::dot) {
      return tokens_.size() > 2 && !tokens_[2].blank_before;
    }
    return next.type == TokenType::name || next.type == TokenType::number || next.type == TokenType::text;
  }

  std::vector<std::string> words() const {
    std::vector<std::string> result;
    for (std::size_t i = 0; i < tokens_.size();) {
      std::size_t last = i;
      while (last + 1 < tokens_.size() && !tokens_[last + 1].blank_before) ++last;
      if (i == last && is(i, TokenType::text)) {
        result.push_back(part(i, i + 1)->text());
      } else {
        const std::size_t begin = tokens_[i].offset;
        result.emplace_back(text_.substr(begin, end_of(last) - begin));
      }
      i = last + 1;
    }
    return result;
  }

  /// The expression of tokens `begin` to `end`.
  Tree part(std::size_t begin, std::size_t end) const {
    const std::size_t at = end > 0 ? end_of(end - 1) : 0;
    if (begin == end) throw Failure{"UnexpectedEnd", "", at};
    Tokens tokens(tokens_.begin() + static_cast<std::ptrdiff_t>(begin),
                  tokens_.begin() + static_cast<std::ptrdiff_t>(end));
    tokens.push_back({TokenType::end_of_text, Operator::plus, false, static_cast<std::uint32_t>(at), 0});
    return expression::Parser(text_, std::move(tokens)).whole_text();
  }

  std::vector<Tree> targets(std::size_t equals) const {
    if (equals == 0) throw Failure{"UnexpectedCharacter", "=", tokens_[0].offset};
    const bool several = is(0, TokenType::open_square) && is(equals - 1, TokenType::close_square);
    if (!several) return {target(0, equals)};
    std::vector<Tree> result;
    std::size_t begin = 1;
    while (begin + 1 < equals) {
      const std::size_t end = target_end(begin, equals - 1);
      result.push_back(is_ignored(begin, end) ? nullptr : target(begin, end));
      begin = is(end, TokenType::comma) ? end + 1 : end;
    }
    if (result.empty()) throw not_assignable(0, equals);
    return result;
  }

  /// Commas and blanks outside of brackets part the targets of "[a, b(1) c] = …".
  std::size_t target_end(std::size_t begin, std::size_t end) const {
    std::size_t depth = 0;
    for (std::size_t i = begin; i < end; ++i) {
      const TokenType type = tokens_[i].type;
      if (depth == 0 && i > begin && (type == TokenType::comma || tokens_[i].blank_before)) return i;
      if (opens(type)) ++depth;
      if (closes(type)) --depth;
    }
    return end;
  }

  bool is_ignored(std::size_t begin, std::size_t end) const {
    return end == begin + 1 && is(begin, TokenType::op) && tokens_[begin].op == Operator::not_;
  }

  Tree target(std::size_t begin, std::size_t end) const {
    Tree tree = part(begin, end);
    const expression::Node* node = tree.get();
    while (node->kind() == Kind::index || node->kind() == Kind::cell_index || node->kind() == Kind::field ||
           node->kind() == Kind::dynamic_field) {
      node = &node->child(0);
    }
    if (node->kind() != Kind::name) throw not_assignable(begin, end);
    return tree;
  }

  Failure not_assignable(std::size_t begin, std::size_t end) const {
    const std::size_t from = tokens_[begin].offset;
    return {"NotAssignable", std::string(text_.substr(from, end_of(end - 1) - from)), from};
  }

  static bool deletes(const Statement& statement) {
    return statement.targets.size() == 1 && statement.targets[0] && statement.targets[0]->kind() == Kind::index &&
           statement.value->kind() == Kind::matrix && statement.value->children().empty();
  }

  std::string_view text_;
  Tokens tokens_;
};

/// Goes through the tokens of a script once, and counts lines on the way.
class ScriptParser {
 public:
  explicit ScriptParser(std::string_view text) : text_(text), tokens_(expression::tokenize(text)) {}

  std::vector<Statement> parse() {
    std::vector<Statement> result;
    for (std::size_t begin = 0; tokens_[begin].type != TokenType::end_of_text;) {
      const std::size_t end = statement_end(begin);
      if (end > begin) result.push_back(statement(begin, end));
      begin = tokens_[end].type == TokenType::end_of_text ? end : end + 1;
    }
    return result;
  }

 private:
  std::size_t statement_end(std::size_t begin) const {
    std::vector<std::size_t> open;
    for (std::size_t i = begin;; ++i) {
      const TokenType type = tokens_[i].type;
      if (type == TokenType::end_of_text) {
        if (open.empty()) return i;
        const std::size_t at = tokens_[open.front()].offset;
        throw Failure{"UnclosedBracket", std::string(1, text_[at]), at};
      }
      if (open.empty() && parts_statements(type)) return i;
      if (opens(type)) open.push_back(i);
      if (!closes(type)) continue;
      if (open.empty()) throw Failure{"UnexpectedToken", std::string(1, text_[tokens_[i].offset]), tokens_[i].offset};
      open.pop_back();
    }
  }

  Statement statement(std::size_t begin, std::size_t end) {
    const std::size_t from = tokens_[begin].offset;
    const std::size_t to = tokens_[end - 1].offset + tokens_[end - 1].length;
    Tokens tokens(tokens_.begin() + static_cast<std::ptrdiff_t>(begin),
                  tokens_.begin() + static_cast<std::ptrdiff_t>(end));
    for (Token& token : tokens) token.offset -= static_cast<std::uint32_t>(from);
    count_lines_to(from);
    try {
      Statement result = StatementParser(text_.substr(from, to - from), std::move(tokens)).parse();
      result.silent = tokens_[end].type == TokenType::semicolon;
      result.line = line_;
      result.column = column_;
      return result;
    } catch (const Failure& failure) {
      throw Failure{failure.id, failure.detail, failure.offset + from};
    }
  }

  void count_lines_to(std::size_t offset) {
    for (; counted_ < offset; ++counted_) {
      if (text_[counted_] == '\n') {
        ++line_;
        column_ = 1;
      } else if ((static_cast<unsigned char>(text_[counted_]) & 0xC0U) != 0x80U) {
        ++column_;
      }
    }
  }

  std::string_view text_;
  Tokens tokens_;
  std::size_t counted_ = 0;
  std::size_t line_ = 1;
  std::size_t column_ = 1;
};

/// '{' or '}' where nothing but "%{" or "%}" stands on a line, else 0.
char block_comment_mark(std::string_view line) {
  const std::size_t first = std::min(line.find_first_not_of(" \t\r"), line.size());
  const std::string_view mark = line.substr(first, line.find_last_not_of(" \t\r") + 1 - first);
  const bool marks = mark.size() == 2 && (mark[0] == '%' || mark[0] == '#') && (mark[1] == '{' || mark[1] == '}');
  return marks ? mark[1] : '\0';
}

/// The text with blanks in the place of block comments, which lines with nothing but "%{" and "%}" enclose; they may
/// hold further ones. @throws Failure for one that isn't closed
std::string without_block_comments(std::string_view text) {
  std::string result(text);
  std::vector<std::size_t> open;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find('\n', begin), text.size());
    const std::string_view line = text.substr(begin, end - begin);
    const char mark = block_comment_mark(line);
    if (mark == '{') open.push_back(begin + line.find_first_not_of(" \t\r"));
    if (!open.empty()) std::fill_n(result.begin() + static_cast<std::ptrdiff_t>(begin), line.size(), ' ');
    if (mark == '}' && !open.empty()) open.pop_back();
    begin = end + 1;
  }
  if (!open.empty()) throw Failure{"UnclosedBracket", std::string(text.substr(open.front(), 2)), open.front()};
  return result;
}

}  // namespace

std::vector<Statement> parse_script(std::string_view text) {
  expression::ParseError error;
  if (text.size() > expression::text_limit) {
    error = {"TextTooLong", std::to_string(expression::text_limit), 1, 1, ""};
    expression::throw_parse_error(error);
  }
  try {
    return ScriptParser(without_block_comments(text)).parse();
  } catch (const Failure& failure) {
    const expression::Place place = expression::place_of(text, failure.offset);
    error = {failure.id, failure.detail, place.line, place.column, place.excerpt};
  }
  expression::throw_parse_error(error);
}

bool IncompleteText::add(std::string_view line) {
  const Tokens tokens = lines_.next(std::string(line) + "\n");
  bool ends = false;  // unless the line end is a part of a continuation
  for (const Token& token : tokens) {
    ends = ends || (token.type == TokenType::newline && token.offset == line.size());
    if (opens(token.type)) ++open_;
    if (!closes(token.type)) continue;
    if (open_ == 0) return false;
    --open_;
  }
  return open_ > 0 || !ends;
}

bool IncompleteText::needs_more(std::string_view line) {
  const char mark = block_comment_mark(line);
  if (mark == '{') ++comments_;
  const bool comment = comments_ > 0;
  if (mark == '}' && comment) --comments_;
  if (comments_ > 0) return true;
  try {
    return add(comment ? std::string_view() : line);
  } catch (const Failure&) {
    return false;
  }
}

const std::vector<std::string>& command_words() {
  static const std::vector<std::string> words{"clear", "who",  "whos", "clc",     "help", "format",
                                              "exit",  "quit", "run",  "methods", "exist"};
  return words;
}

const std::vector<std::string>& reserved_words() {
  static const std::vector<std::string> words{"for",      "parfor",   "while",     "do",     "until", "if",
                                              "else",     "elseif",   "end",       "switch", "case",  "otherwise",
                                              "break",    "continue", "return",    "try",    "catch", "function",
                                              "classdef", "global",   "persistent"};
  return words;
}

}  // namespace embedded::scripting_runtime
