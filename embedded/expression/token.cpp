#include "embedded/expression/token.hpp"

#include "embedded/expression/print.hpp"

#include <tao/pegtl.hpp>

#include <array>
#include <optional>
#include <string>
#include <utility>

namespace embedded::expression {

namespace {

namespace pegtl = tao::pegtl;

enum class Bracket : std::uint8_t { round, parameters, elements };

/// Tokens so far, and what the reading of the next one depends on: the brackets around it and the blank before it.
class TokenList {
 public:
  /// The text that is read next, behind what was read before.
  void begin(const char* text) { begin_ = text; }

  void add(TokenType type, Operator op, const char* at, std::size_t length) {
    tokens_.push_back({type, op, blank_, static_cast<std::uint32_t>(at - begin_), static_cast<std::uint32_t>(length)});
    const bool follows_operand = at_operand_end_ && !(blank_ && in_elements());
    const bool closes_parameters = type == TokenType::close_round && in(Bracket::parameters);
    at_operand_end_ = ends_operand(type, op) && !closes_parameters;
    blank_ = false;
    follow_brackets(type, follows_operand);
    before_ = type;
  }

  void add_blank() { blank_ = true; }

  void add_line_end(const char* at) {
    if (!brackets_.empty() && !in_elements()) {
      blank_ = true;
    } else {
      add(TokenType::newline, Operator::plus, at, 1);
    }
  }

  /// Whether a quote at this place follows an operand, and so transposes it.
  bool transposes() const { return at_operand_end_ && !(blank_ && in_elements()); }

  /// What was read since the last time.
  std::vector<Token> take(std::size_t length) {
    tokens_.push_back({TokenType::end_of_text, Operator::plus, blank_, static_cast<std::uint32_t>(length), 0});
    return std::exchange(tokens_, {});
  }

 private:
  static bool ends_operand(TokenType type, Operator op) {
    switch (type) {
      case TokenType::number:
      case TokenType::imaginary:
      case TokenType::text:
      case TokenType::name:
      case TokenType::close_round:
      case TokenType::close_square:
      case TokenType::close_curly:
        return true;
      default:
        return type == TokenType::op && (op == Operator::transpose || op == Operator::conjugate_transpose);
    }
  }

  bool in(Bracket bracket) const { return !brackets_.empty() && brackets_.back() == bracket; }
  bool in_elements() const { return in(Bracket::elements); }

  void follow_brackets(TokenType type, bool follows_operand) {
    switch (type) {
      case TokenType::open_round:
        return brackets_.push_back(before_ == TokenType::at ? Bracket::parameters : Bracket::round);
      case TokenType::open_square:
        return brackets_.push_back(Bracket::elements);
      case TokenType::open_curly:  // behind an operand it indexes, as the parser sees it too
        return brackets_.push_back(follows_operand ? Bracket::round : Bracket::elements);
      case TokenType::close_round:
      case TokenType::close_square:
      case TokenType::close_curly:
        if (!brackets_.empty()) brackets_.pop_back();
        return;
      default:
        return;
    }
  }

  const char* begin_ = nullptr;
  TokenType before_ = TokenType::newline;
  bool blank_ = false;
  bool at_operand_end_ = false;
  std::vector<Token> tokens_;
  std::vector<Bracket> brackets_;
};

// --- the grammar

struct letter : pegtl::alpha {};
struct name_rest : pegtl::identifier_other {};
struct digits : pegtl::plus<pegtl::digit> {};
struct exponent : pegtl::seq<pegtl::one<'e', 'E'>, pegtl::opt<pegtl::one<'+', '-'>>, digits> {};
// The dot of "1.*a" belongs to the operator and that of "1...", to the continuation.
struct fraction_dot
    : pegtl::seq<pegtl::one<'.'>,
                 pegtl::not_at<pegtl::sor<pegtl::one<'*', '/', '\\', '^', '\''>, pegtl::string<'.', '.'>>>> {};
struct mantissa : pegtl::sor<pegtl::seq<digits, pegtl::opt<fraction_dot, pegtl::star<pegtl::digit>>>,
                             pegtl::seq<pegtl::one<'.'>, digits>> {};
struct plain_number : pegtl::seq<mantissa, pegtl::opt<exponent>> {};
struct number : pegtl::seq<plain_number, pegtl::not_at<name_rest>> {};
struct imaginary : pegtl::seq<plain_number, pegtl::one<'i', 'j'>, pegtl::not_at<name_rest>> {};
struct name : pegtl::seq<letter, pegtl::star<name_rest>> {};

template <char Quote>
struct quoted
    : pegtl::seq<pegtl::one<Quote>, pegtl::star<pegtl::sor<pegtl::two<Quote>, pegtl::not_one<Quote, '\n', '\r'>>>,
                 pegtl::one<Quote>> {};

struct line_rest : pegtl::star<pegtl::not_one<'\n', '\r'>> {};
struct line_break : pegtl::sor<pegtl::string<'\r', '\n'>, pegtl::one<'\n', '\r'>> {};
struct line_end : line_break {};
struct comment : pegtl::seq<pegtl::one<'%', '#'>, line_rest> {};
struct continuation : pegtl::seq<pegtl::string<'.', '.', '.'>, line_rest, pegtl::opt<line_break>> {};
struct blank : pegtl::plus<pegtl::sor<pegtl::one<' ', '\t', '\f', '\v'>, comment, continuation>> {};

/// A quote that transposes; whether it does is known by the tokens before.
struct transposing_quote {
  using rule_t = transposing_quote;
  using subs_t = pegtl::empty_list;

  template <pegtl::apply_mode, pegtl::rewind_mode, template <class...> class, template <class...> class, class Input>
  static bool match(Input& in, TokenList& tokens) {
    if (in.empty() || in.peek_char() != '\'' || !tokens.transposes()) return false;
    in.bump_in_this_line(1);
    return true;
  }
};

template <TokenType Type, class Rule>
struct token : Rule {};

template <Operator Op, class Rule>
struct op : Rule {};

// Longer operators come before those that they begin with.
struct operators
    : pegtl::sor<
          op<Operator::conjugate_transpose, transposing_quote>, op<Operator::transpose, pegtl::string<'.', '\''>>,
          op<Operator::element_times, pegtl::string<'.', '*'>>, op<Operator::element_divide, pegtl::string<'.', '/'>>,
          op<Operator::element_left_divide, pegtl::string<'.', '\\'>>,
          op<Operator::element_power, pegtl::string<'.', '^'>>, op<Operator::or_else, pegtl::string<'|', '|'>>,
          op<Operator::and_also, pegtl::string<'&', '&'>>, op<Operator::element_or, pegtl::one<'|'>>,
          op<Operator::element_and, pegtl::one<'&'>>, op<Operator::equal, pegtl::string<'=', '='>>,
          op<Operator::not_equal, pegtl::seq<pegtl::one<'~', '!'>, pegtl::one<'='>>>,
          op<Operator::less_equal, pegtl::string<'<', '='>>, op<Operator::greater_equal, pegtl::string<'>', '='>>,
          op<Operator::less, pegtl::one<'<'>>, op<Operator::greater, pegtl::one<'>'>>,
          op<Operator::plus, pegtl::one<'+'>>, op<Operator::minus, pegtl::one<'-'>>,
          op<Operator::times, pegtl::one<'*'>>, op<Operator::divide, pegtl::one<'/'>>,
          op<Operator::left_divide, pegtl::one<'\\'>>, op<Operator::not_, pegtl::one<'~', '!'>>,
          op<Operator::power, pegtl::one<'^'>>> {};

struct punctuation
    : pegtl::sor<token<TokenType::open_round, pegtl::one<'('>>, token<TokenType::close_round, pegtl::one<')'>>,
                 token<TokenType::open_square, pegtl::one<'['>>, token<TokenType::close_square, pegtl::one<']'>>,
                 token<TokenType::open_curly, pegtl::one<'{'>>, token<TokenType::close_curly, pegtl::one<'}'>>,
                 token<TokenType::comma, pegtl::one<','>>, token<TokenType::semicolon, pegtl::one<';'>>,
                 token<TokenType::colon, pegtl::one<':'>>, token<TokenType::at, pegtl::one<'@'>>,
                 token<TokenType::assign, pegtl::one<'='>>, token<TokenType::dot, pegtl::one<'.'>>> {};

struct operand : pegtl::sor<token<TokenType::number, number>, token<TokenType::imaginary, imaginary>,
                            token<TokenType::name, name>> {};
struct text : pegtl::sor<token<TokenType::text, quoted<'\''>>, token<TokenType::text, quoted<'"'>>> {};

struct grammar : pegtl::star<pegtl::sor<blank, line_end, operand, operators, text, punctuation>> {};

template <class Rule>
struct action : pegtl::nothing<Rule> {};

template <TokenType Type, class Rule>
struct action<token<Type, Rule>> {
  template <class Input>
  static void apply(const Input& in, TokenList& tokens) {
    tokens.add(Type, Operator::plus, in.begin(), in.size());
  }
};

template <Operator Op, class Rule>
struct action<op<Op, Rule>> {
  template <class Input>
  static void apply(const Input& in, TokenList& tokens) {
    tokens.add(TokenType::op, Op, in.begin(), in.size());
  }
};

template <>
struct action<blank> {
  static void apply0(TokenList& tokens) { tokens.add_blank(); }
};

template <>
struct action<line_end> {
  template <class Input>
  static void apply(const Input& in, TokenList& tokens) {
    tokens.add_line_end(in.begin());
  }
};

/// The character at `offset`, whole when it takes several bytes; a control character by its code.
std::string character_at(std::string_view text, std::size_t offset) {
  std::size_t end = offset + 1;
  while (end < text.size() && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) ++end;
  return without_controls(text.substr(offset, end - offset));
}

[[noreturn]] void fail_at(std::string_view text, std::size_t offset) {
  const char found = text[offset];
  if (found == '\'' || found == '"') throw Failure{"UnterminatedText", std::string(1, found), offset};
  const bool digit = (found >= '0' && found <= '9') || found == '.';
  throw Failure{digit ? "InvalidNumber" : "UnexpectedCharacter", character_at(text, offset), offset};
}

std::vector<Token> read(std::string_view source, TokenList& tokens) {
  pegtl::memory_input<pegtl::tracking_mode::lazy, pegtl::eol::lf> input(source.data(), source.data() + source.size(),
                                                                        "");
  tokens.begin(source.data());
  pegtl::parse<grammar, action>(input, tokens);
  if (!input.empty()) fail_at(source, static_cast<std::size_t>(input.current() - source.data()));
  return tokens.take(source.size());
}

}  // namespace

std::vector<Token> tokenize(std::string_view text) {
  TokenList tokens;
  return read(text, tokens);
}

struct LineTokenizer::State {
  TokenList tokens;
};

LineTokenizer::LineTokenizer() : state_(std::make_unique<State>()) {}
LineTokenizer::LineTokenizer(LineTokenizer&&) noexcept = default;
LineTokenizer& LineTokenizer::operator=(LineTokenizer&&) noexcept = default;
LineTokenizer::~LineTokenizer() = default;

std::vector<Token> LineTokenizer::next(std::string_view line) {
  return read(line, state_->tokens);
}

}  // namespace embedded::expression
