// Searches in texts, and texts read as numbers.

#include "embedded/expression/parser.hpp"
#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <charconv>
#include <cmath>
#include <limits>

namespace embedded::scripting_runtime {

namespace {

/// A logical for the text, or for each text of a cell array.
template <class Test>
void test_texts(Call& call, Test test) {
  if (!cvIsCell(call[0])) return call.give(static_cast<bool>(test(kmf::cvarray_to_ustring(call[0]))));
  Numbers result = Numbers::zeros(cvGetDimensions(call[0]), cvLOGICAL_CLASS);
  for (std::size_t i = 0; i < result.size(); ++i) {
    result.re[i] = test(kmf::cvarray_to_ustring(cvGetCell(call[0], i))) ? 1 : 0;
  }
  call.give(array_of(std::move(result)));
}

enum class Place { begin, end, anywhere };

/// Whether one of the patterns stands at the place.
template <Place ThePlace>
void contains_at(Call& call) {
  const std::vector<ustring> patterns = kmf::cvarray_to_ustring_vector(call[1]);
  test_texts(call, [&](const ustring& text) {
    for (const ustring& pattern : patterns) {
      if (pattern.size() > text.size()) continue;
      const std::size_t end = text.size() - pattern.size();
      if (ThePlace == Place::begin && text.compare(0, pattern.size(), pattern) == 0) return true;
      if (ThePlace == Place::end && text.compare(end, pattern.size(), pattern) == 0) return true;
      if (ThePlace == Place::anywhere && text.find(pattern) != ustring::npos) return true;
    }
    return false;
  });
}

/// The places from 1 at which a pattern begins.
void find_text(Call& call) {
  const ustring text = kmf::cvarray_to_ustring(call[0]);
  const ustring pattern = kmf::cvarray_to_ustring(call[1]);
  std::vector<double> places;
  for (std::size_t at = text.find(pattern); at != ustring::npos && !pattern.empty(); at = text.find(pattern, at + 1)) {
    places.push_back(static_cast<double>(at + 1));
  }
  if (places.empty()) return call.give(cvUniquePtr(cvCreateDoubleMatrix(0, 0)));
  call.give(array_of(Numbers::row(std::move(places))));
}

void begins_equal(Call& call) {
  const auto count = static_cast<std::size_t>(std::max(0.0, std::min(call.number(2), 1e15)));
  if (!cvIsChar(call[1])) return call.give(false);
  const ustring other = kmf::cvarray_to_ustring(call[1]);
  if (!cvIsCell(call[0]) && !cvIsChar(call[0])) return call.give(false);
  test_texts(call, [&](const ustring& text) {
    return text.size() >= count && other.size() >= count && text.compare(0, count, other, 0, count) == 0;
  });
}

/// The number that a text is; NaN for any other text.
double number_in(std::string text) {
  const std::size_t begin = text.find_first_not_of(" \t");
  if (begin == std::string::npos) return std::numeric_limits<double>::quiet_NaN();
  text = text.substr(begin, text.find_last_not_of(" \t") - begin + 1);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.erase(0, 1);
  double value = std::numeric_limits<double>::quiet_NaN();
  if (text == "Inf" || text == "inf") {
    value = std::numeric_limits<double>::infinity();
  } else if (!text.empty() && (std::isdigit(static_cast<unsigned char>(text.front())) != 0 || text.front() == '.')) {
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = read.ptr == text.data() + text.size();
    if (!whole || read.ec == std::errc::invalid_argument) return std::numeric_limits<double>::quiet_NaN();
    if (read.ec == std::errc::result_out_of_range) value = expression::number_from(text);
  }
  return negative ? -value : value;
}

void text_to_double(Call& call) {
  if (cvIsChar(call[0]) && cvGetDimensions(call[0])[0] <= 1) return call.give(number_in(call.text(0)));
  if (!cvIsCell(call[0])) return call.give(std::numeric_limits<double>::quiet_NaN());
  Numbers result = Numbers::zeros(cvGetDimensions(call[0]));
  for (std::size_t i = 0; i < result.size(); ++i) {
    const cvArray_tag* text = cvGetCell(call[0], i);
    result.re[i] = cvIsChar(text) ? number_in(kmf::cvarray_to_string(text)) : std::numeric_limits<double>::quiet_NaN();
  }
  call.give(array_of(std::move(result)));
}

void is_cell_of_texts(Call& call) {
  bool result = cvIsCell(call[0]);
  for (std::size_t i = 0; result && i < cvGetNumberOfElements(call[0]); ++i) result = cvIsChar(cvGetCell(call[0], i));
  call.give(result);
}

/// fprintf(template, …), fprintf(1, template, …).
void print(Call& call) {
  std::size_t first = 0;
  if (!cvIsChar(call[0])) {
    const double stream = call.number(0);
    if (stream != 1 && stream != 2) throw_runtime_error("UnknownStream", number_text(stream));
    first = 1;
    if (call.size() == 1) return;
  }
  std::vector<const cvArray_tag*> arguments;
  for (std::size_t i = first + 1; i < call.size(); ++i) arguments.push_back(call[i]);
  const std::string text = format_text(call.text(first), arguments);
  if (first == 1 && call.number(0) == 2) {
    write_error_output(text);
  } else {
    write_output(text);
  }
}

void display_value(Call& call) {
  display(named_text("ans", call[0]));
}

}  // namespace

std::vector<Builtin> search_builtins() {
  return {{"contains", 2, 2, contains_at<Place::anywhere>},
          {"startsWith", 2, 2, contains_at<Place::begin>},
          {"endsWith", 2, 2, contains_at<Place::end>},
          {"strfind", 2, 2, find_text},
          {"strncmp", 3, 3, begins_equal},
          {"str2double", 1, 1, text_to_double},
          {"iscellstr", 1, 1, is_cell_of_texts},
          {"fprintf", 1, any_number, print},
          {"display", 1, 1, display_value}};
}

}  // namespace embedded::scripting_runtime
