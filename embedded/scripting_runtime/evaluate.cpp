#include "embedded/scripting_runtime/evaluate.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"

#include <algorithm>
#include <charconv>
#include <optional>

namespace embedded::scripting_runtime {

namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool is_letter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  const std::size_t end = text.find_last_not_of(" \t") + 1;
  return text.substr(begin, end > begin ? end - begin : 0);
}

/// The number when the text is one and nothing else; the grammar has the last word on all other texts.
std::optional<double> plain_number(std::string_view text) {
  const std::size_t sign = !text.empty() && text.front() == '-' ? 1 : 0;
  if (text.size() <= sign || !(is_digit(text[sign]) || text[sign] == '.')) return std::nullopt;
  double value = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  if (read.ec != std::errc() || read.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

bool is_plain_name(std::string_view text) {
  return !text.empty() && is_letter(text.front()) && text != "end" &&
         std::all_of(text.begin(), text.end(), [](char c) { return is_letter(c) || is_digit(c) || c == '_'; });
}

cvUniquePtr first_of(std::vector<Value> values) {
  if (values.empty()) throw_runtime_error("NoValue");
  return std::move(values.front()).release();
}

}  // namespace

cvUniquePtr evaluate(std::string_view text, const Scope& scope) {
  const std::string_view inner = trimmed(text);
  if (const auto number = plain_number(inner)) return cvUniquePtr(cvCreateDoubleScalar(*number));
  if (is_plain_name(inner)) {
    if (const cvArray_tag* found = scope.find(inner)) return cvUniquePtr(cvCreateSharedCopy(found));
  }
  return evaluate(expression::parse_or_throw(text), scope, text);
}

cvUniquePtr evaluate(const expression::Tree& tree, const Scope& scope, std::string_view source) {
  return first_of(Evaluator(scope, source).run(*tree, 1));
}

std::vector<cvUniquePtr> evaluate_outputs(std::string_view text, const Scope& scope, int wanted) {
  const expression::Tree tree = expression::parse_or_throw(text);
  std::vector<cvUniquePtr> result;
  for (Value& value : Evaluator(scope, text).run(*tree, wanted)) result.push_back(std::move(value).release());
  return result;
}

}  // namespace embedded::scripting_runtime
