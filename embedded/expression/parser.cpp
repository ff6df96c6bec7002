#include "embedded/expression/parser.hpp"

#include "platform/foundation/exception.hpp"

#include <algorithm>

namespace embedded::expression {

/// Operands of one precedence that wait for what follows them.
struct Parser::OpenChain {
  Precedence level;
  std::size_t offset;
  std::vector<Tree> operands;
  std::vector<Operator> operators;
};

/// Counts the brackets that are open around the parser.
class Parser::Nesting {
 public:
  explicit Nesting(Parser& parser) : parser_(parser) {
    if (++parser_.depth_ > height_limit)
      throw Failure{"TooDeeplyNested", std::to_string(height_limit), parser_.token().offset};
  }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;
  ~Nesting() { --parser_.depth_; }

 private:
  Parser& parser_;
};

namespace {

std::string unquoted(std::string_view quoted) {
  const char quote = quoted.front();
  std::string result;
  for (std::size_t i = 1; i + 1 < quoted.size(); ++i) {
    result += quoted[i];
    if (quoted[i] == quote) ++i;
  }
  return result;
}

/// a:b:c:d is ((a:b:c):d).
Tree range_of(const std::vector<Tree>& bounds, std::size_t offset) {
  std::size_t used = std::min<std::size_t>(bounds.size(), 3);
  Tree result = make_node(Kind::range, {bounds.begin(), bounds.begin() + static_cast<std::ptrdiff_t>(used)}, offset);
  while (used < bounds.size()) {
    const std::size_t more = std::min<std::size_t>(bounds.size() - used, 2);
    std::vector<Tree> children{result};
    for (std::size_t i = 0; i < more; ++i) children.push_back(bounds[used + i]);
    result = make_node(Kind::range, std::move(children), offset);
    used += more;
  }
  return result;
}

bool begins_operand(const Token& token) {
  switch (token.type) {
    case TokenType::number:
    case TokenType::imaginary:
    case TokenType::text:
    case TokenType::name:
    case TokenType::open_round:
    case TokenType::open_square:
    case TokenType::open_curly:
    case TokenType::at:
      return true;
    default:
      return token.type == TokenType::op &&
             (token.op == Operator::plus || token.op == Operator::minus || token.op == Operator::not_);
  }
}

bool is_sign(const Token& token) {
  return token.type == TokenType::op && (token.op == Operator::plus || token.op == Operator::minus);
}

}  // namespace

Tree Parser::whole_text() {
  skip_line_ends();
  if (is(TokenType::end_of_text)) throw Failure{"EmptyExpression", "", 0};
  try {
    Tree result = expression(Context::plain);
    skip_line_ends();
    if (!is(TokenType::end_of_text)) fail_here();
    return result;
  } catch (const kmf::MessageException&) {  // the tree got too high without brackets, as in a.b.c.…
    throw Failure{"TooDeeplyNested", std::to_string(height_limit), token().offset};
  }
}

Tree Parser::expression(Context context) {
  const Nesting nesting(*this);
  std::vector<OpenChain> chains;
  for (;;) {
    Tree next = operand(context);
    if (!binary_operator_follows(context)) return close_chains(chains, std::move(next), Precedence::loosest);
    const bool range = is(TokenType::colon);
    const Precedence level = range ? Precedence::range : precedence(token().op);
    next = close_chains(chains, std::move(next), level);
    if (chains.empty() || chains.back().level != level) chains.push_back({level, token().offset, {}, {}});
    chains.back().operands.push_back(std::move(next));
    if (!range) chains.back().operators.push_back(token().op);
    take();
  }
}

/// Closes the chains that bind tighter than `level`, with `operand` as the last of the innermost.
Tree Parser::close_chains(std::vector<OpenChain>& chains, Tree operand, Precedence level) {
  while (!chains.empty() && chains.back().level > level) {
    OpenChain& chain = chains.back();
    chain.operands.push_back(std::move(operand));
    operand = chain.level == Precedence::range
                  ? range_of(chain.operands, chain.offset)
                  : make_chain(std::move(chain.operands), std::move(chain.operators), chain.offset);
    chains.pop_back();
  }
  return operand;
}

bool Parser::binary_operator_follows(Context context) const {
  if (is(TokenType::colon)) return true;
  return is(TokenType::op) && token().op != Operator::not_ && !parts_elements(context);
}

/// Whether the token here begins a new element: [1 -2] are two, [1 - 2] is one.
bool Parser::parts_elements(Context context) const {
  return context == Context::elements && token().blank_before && is_sign(token()) && !next_token().blank_before;
}

Tree Parser::operand(Context context) {
  std::vector<const Token*> prefixes;
  while (is(Operator::plus) || is(Operator::minus) || is(Operator::not_)) prefixes.push_back(&take());
  Tree result = powers(context);
  for (auto prefix = prefixes.rbegin(); prefix != prefixes.rend(); ++prefix) {
    result = make_unary((*prefix)->op, std::move(result), (*prefix)->offset);
  }
  return result;
}

/// Powers and transpositions, from the left: 2^-1^2 is (2^-1)^2, a^b' is (a^b)'.
Tree Parser::powers(Context context) {
  Tree result = postfix(context, true);
  while (is(Operator::power) || is(Operator::element_power)) {
    OpenChain chain{Precedence::power, token().offset, {std::move(result)}, {}};
    while (is(Operator::power) || is(Operator::element_power)) {
      chain.operators.push_back(take().op);
      std::vector<const Token*> prefixes;
      while (is(Operator::plus) || is(Operator::minus) || is(Operator::not_)) prefixes.push_back(&take());
      Tree exponent = postfix(context, false);
      for (auto prefix = prefixes.rbegin(); prefix != prefixes.rend(); ++prefix) {
        exponent = make_unary((*prefix)->op, std::move(exponent), (*prefix)->offset);
      }
      chain.operands.push_back(std::move(exponent));
    }
    result = make_chain(std::move(chain.operands), std::move(chain.operators), chain.offset);
    while (is(Operator::transpose) || is(Operator::conjugate_transpose)) {
      const Token& quote = take();
      result = make_transpose(quote.op, std::move(result), quote.offset);
    }
  }
  return result;
}

Tree Parser::postfix(Context context, bool with_transpose) {
  const bool indexable = !is(TokenType::at);
  Tree result = primary(context);
  while (indexable) {
    if (context == Context::elements && token().blank_before) break;
    const std::size_t offset = token().offset;
    if (is(TokenType::open_round)) {
      result = make_node(Kind::index, arguments(result, TokenType::close_round), offset);
    } else if (is(TokenType::open_curly)) {
      result = make_node(Kind::cell_index, arguments(result, TokenType::close_curly), offset);
    } else if (is(TokenType::dot)) {
      result = field(result);
    } else {
      break;
    }
  }
  while (with_transpose && (is(Operator::transpose) || is(Operator::conjugate_transpose))) {
    const Token& quote = take();
    result = make_transpose(quote.op, std::move(result), quote.offset);
  }
  return result;
}

Tree Parser::primary(Context context) {
  const std::size_t offset = token().offset;
  switch (token().type) {
    case TokenType::number: {
      const double value = number_from(lexeme());
      take();
      return make_number(value, offset);
    }
    case TokenType::imaginary: {
      const double value = number_from(lexeme().substr(0, lexeme().size() - 1));
      take();
      return make_imaginary(value, offset);
    }
    case TokenType::text: {
      std::string value = unquoted(lexeme());
      take();
      return make_text(std::move(value), offset);
    }
    case TokenType::name:
      return name_or_end();
    case TokenType::open_round:
      return in_round_brackets();
    case TokenType::open_square:
      return literal(Kind::matrix, TokenType::close_square);
    case TokenType::open_curly:
      return literal(Kind::cell, TokenType::close_curly);
    case TokenType::at:
      return handle(context);
    default:
      fail_here();
  }
}

Tree Parser::in_round_brackets() {
  const Token& opening = take();
  Tree result = expression(Context::plain);
  expect(TokenType::close_round, opening);
  return result;
}

Tree Parser::literal(Kind kind, TokenType closing) {
  const Nesting nesting(*this);
  const Token& opening = take();
  std::vector<Tree> rows;
  for (;;) {
    while (is(TokenType::newline) || is(TokenType::semicolon)) take();
    if (is(closing)) break;
    if (is(TokenType::end_of_text)) expect(closing, opening);
    rows.push_back(row(closing));
    if (!is(closing) && !is(TokenType::semicolon) && !is(TokenType::newline)) expect(closing, opening);
  }
  take();
  return make_node(kind, std::move(rows), opening.offset);
}

Tree Parser::row(TokenType closing) {
  const std::size_t offset = token().offset;
  std::vector<Tree> elements;
  for (;;) {
    elements.push_back(expression(Context::elements));
    if (is(TokenType::comma)) {
      take();
      if (is(closing) || is(TokenType::newline) || is(TokenType::semicolon)) break;
    } else if (!token().blank_before || !begins_operand(token())) {
      break;
    }
  }
  return make_node(Kind::row, std::move(elements), offset);
}

Tree Parser::name_or_end() {
  if (lexeme() != "end") {
    std::string name(lexeme());
    return make_name(std::move(name), take().offset);
  }
  if (indexing_depth_ == 0) throw Failure{"EndOutsideIndexing", "end", token().offset};
  return make_node(Kind::end, {}, take().offset);
}

Tree Parser::handle(Context context) {
  const std::size_t offset = take().offset;
  if (is(TokenType::open_round)) return anonymous(offset, context);
  if (!is(TokenType::name)) fail_here();
  std::string name(lexeme());
  take();
  while (is(TokenType::dot) && next_token().type == TokenType::name) {
    take();
    name += '.';
    name += lexeme();
    take();
  }
  return make_node(Kind::handle, std::move(name), {}, offset);
}

Tree Parser::anonymous(std::size_t offset, Context context) {
  const Token& opening = take();
  std::vector<Tree> children;
  if (!is(TokenType::close_round)) {
    children.push_back(anonymous_parameter());
    while (is(TokenType::comma)) {
      take();
      children.push_back(anonymous_parameter());
    }
  }
  expect(TokenType::close_round, opening);
  children.push_back(expression(context));
  return make_node(Kind::anonymous, std::move(children), offset);
}

Tree Parser::anonymous_parameter() {
  if (!is(TokenType::name) && !is(Operator::not_)) fail_here();
  std::string name = is(TokenType::name) ? std::string(lexeme()) : "~";
  return make_name(std::move(name), take().offset);
}

Tree Parser::field(const Tree& base) {
  const Token& dot = take();
  if (is(TokenType::name)) {
    std::string name(lexeme());
    take();
    return make_field(base, std::move(name), dot.offset);
  }
  if (!is(TokenType::open_round)) fail_here();
  return make_node(Kind::dynamic_field, {base, in_round_brackets()}, dot.offset);
}

/// What is indexed, and the arguments up to `closing`.
std::vector<Tree> Parser::arguments(const Tree& base, TokenType closing) {
  const Token& opening = take();
  ++indexing_depth_;
  std::vector<Tree> result{base};
  if (!is(closing)) {
    result.push_back(argument());
    while (is(TokenType::comma)) {
      take();
      result.push_back(argument());
    }
  }
  expect(closing, opening);
  --indexing_depth_;
  return result;
}

Tree Parser::argument() {
  const TokenType after = next_token().type;
  const bool alone = after == TokenType::comma || after == TokenType::close_round || after == TokenType::close_curly;
  if (is(TokenType::colon) && alone) return make_node(Kind::colon, {}, take().offset);
  return expression(Context::plain);
}

void Parser::skip_line_ends() {
  while (is(TokenType::newline)) take();
}

void Parser::expect(TokenType closing, const Token& opening) {
  if (is(closing)) {
    take();
    return;
  }
  if (is(TokenType::end_of_text))
    throw Failure{"UnclosedBracket", std::string(1, text_[opening.offset]), opening.offset};
  fail_here();
}

void Parser::fail_here() const {
  if (is(TokenType::end_of_text)) throw Failure{"UnexpectedEnd", "", token().offset};
  if (is(TokenType::newline)) throw Failure{"UnexpectedLineEnd", "", token().offset};
  if (is(TokenType::assign)) throw Failure{"UnexpectedCharacter", "=", token().offset};
  throw Failure{"UnexpectedToken", std::string(lexeme()), token().offset};
}

}  // namespace embedded::expression
