// sprintf of the language: %d %i %u %f %e %g %s %c %x %o %%, flags, width, precision and "*" for either; \n \t \\ in
// the template.

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <optional>
#include <variant>

namespace embedded::scripting_runtime {

namespace {

using Argument = std::variant<double, std::string>;

std::vector<Argument> flattened(const std::vector<const cvArray_tag*>& arrays) {
  std::vector<Argument> result;
  for (const cvArray_tag* array : arrays) {
    if (cvIsChar(array)) {
      result.emplace_back(kmf::cvarray_to_string(array));
      continue;
    }
    const Numbers numbers = numbers_of(array);
    if (numbers.is_complex()) throw_runtime_error("ComplexInTemplate");
    for (const double value : numbers.re) result.emplace_back(value);
  }
  return result;
}

class Formatter {
 public:
  Formatter(const std::string& format, std::vector<Argument> arguments)
      : format_(format), arguments_(std::move(arguments)) {}

  std::string run() {
    do {
      const std::size_t before = next_;
      pass();
      if (next_ == before) break;
    } while (next_ < arguments_.size() && !ended_);
    return std::move(out_);
  }

 private:
  void pass() {
    for (std::size_t i = 0; i < format_.size() && !ended_;) {
      poll_.step();
      checked_count({1, out_.size()});
      if (format_[i] == '\\' && i + 1 < format_.size()) {
        i = escape(i);
      } else if (format_[i] == '%') {
        i = conversion(i);
      } else {
        out_ += format_[i++];
      }
    }
  }

  std::size_t escape(std::size_t i) {
    constexpr std::string_view names = "ntr\\";
    constexpr std::string_view meanings = "\n\t\r\\";
    const std::size_t which = names.find(format_[i + 1]);
    if (which == std::string_view::npos) {
      out_ += format_[i];
      return i + 1;
    }
    out_ += meanings[which];
    return i + 2;
  }

  /// One conversion; returns the place behind it.
  std::size_t conversion(std::size_t i) {
    if (format_.compare(i, 2, "%%") == 0) {
      out_ += '%';
      return i + 2;
    }
    std::string flags;
    std::size_t at = i + 1;
    while (at < format_.size() && std::string_view("-+ #0").find(format_[at]) != std::string_view::npos) {
      flags += format_[at++];
    }
    const int width = number(at).value_or(0);
    std::optional<int> precision;
    if (at < format_.size() && format_[at] == '.') {
      ++at;
      precision = number(at).value_or(0);
    }
    if (at >= format_.size() || std::string_view("diufFeEgGscxXo").find(format_[at]) == std::string_view::npos) {
      throw_runtime_error("InvalidFormat", format_);
    }
    convert(format_[at], flags, width, precision);
    return at + 1;
  }

  /// The number at `at`, which moves behind it; "*" takes an argument.
  std::optional<int> number(std::size_t& at) {
    constexpr int most = 4000;
    if (at < format_.size() && format_[at] == '*') {
      ++at;
      if (next_ >= arguments_.size()) return std::nullopt;
      const auto* value = std::get_if<double>(&arguments_[next_++]);
      return value != nullptr && std::abs(*value) < most ? std::optional<int>(static_cast<int>(*value)) : std::nullopt;
    }
    std::optional<int> result;
    for (; at < format_.size() && format_[at] >= '0' && format_[at] <= '9'; ++at) {
      result = std::min(most, result.value_or(0) * 10 + (format_[at] - '0'));
    }
    return result;
  }

  void convert(char letter, std::string flags, int width, std::optional<int> precision) {
    if (next_ >= arguments_.size()) {  // arguments are used up: what follows is left out
      ended_ = next_ > 0;
      return;
    }
    if (width < 0) flags += '-', width = -width;
    const Argument argument = arguments_[next_++];
    if (const auto* text = std::get_if<std::string>(&argument))
      return convert_text(letter, flags, width, precision, *text);
    const double value = std::get<double>(argument);
    const bool whole = std::isfinite(value) && value == std::floor(value);
    constexpr double last_code = 0xFFFF;
    if (letter == 'c' && whole && value >= 0 && value <= last_code) return padded(flags, width, character(value));
    if (letter == 's' || letter == 'c') {
      return padded(flags, width, number_text(value, precision.value_or(usual_digits(value))));
    }
    if (!std::isfinite(value)) return padded(flags, width, number_text(value, 1));
    constexpr std::string_view integers = "diuxXo";
    if (integers.find(letter) == std::string_view::npos) return print(flags, width, precision, letter, value);
    if (!whole) return print(flags, width, precision, 'e', value);  // as "%d" of 1.5 is shown
    convert_whole(letter, flags, width, precision, value);
  }

  void convert_whole(char letter, const std::string& flags, int width, std::optional<int> precision, double value) {
    constexpr double limit = 9e18;  // of 64 bits
    const bool decimal = letter == 'd' || letter == 'i' || letter == 'u';
    if (std::abs(value) < limit && (decimal || value >= 0)) {
      return print_integer(flags, width, precision, letter == 'u' ? 'd' : letter, static_cast<long long>(value));
    }
    decimal ? print(flags, width, 0, 'f', value) : print(flags, width, precision, 'e', value);
  }

  void convert_text(char letter, const std::string& flags, int width, std::optional<int> precision,
                    const std::string& text) {
    if (letter == 's' || letter == 'c') {
      return padded(flags, width, precision ? text.substr(0, static_cast<std::size_t>(std::max(*precision, 0))) : text);
    }
    padded(flags, width, text);
  }

  static std::string character(double code) {
    return kmf::cvarray_to_string(cvUniquePtr(cvCreateUString(ustring(1, static_cast<char16_t>(code)))).get());
  }

  void padded(const std::string& flags, int width, const std::string& text) {
    const auto wanted = static_cast<std::size_t>(width);
    const std::string blanks(wanted > text.size() ? wanted - text.size() : 0, ' ');
    out_ += flags.find('-') != std::string::npos ? text + blanks : blanks + text;
  }

  template <class Number>
  void print_with(const std::string& conversion_text, int width, std::optional<int> precision, Number value) {
    std::vector<char> buffer(9000);
    const int length =
        precision ? std::snprintf(buffer.data(), buffer.size(), conversion_text.c_str(), width, *precision, value)
                  : std::snprintf(buffer.data(), buffer.size(), conversion_text.c_str(), width, value);
    if (length > 0) out_.append(buffer.data(), std::min(static_cast<std::size_t>(length), buffer.size() - 1));
  }

  void print(const std::string& flags, int width, std::optional<int> precision, char letter, double value) {
    print_with("%" + flags + "*" + (precision ? ".*" : "") + letter, width, precision, value);
  }

  void print_integer(const std::string& flags, int width, std::optional<int> precision, char letter, long long value) {
    print_with("%" + flags + "*" + (precision ? ".*" : "") + "ll" + letter, width, precision, value);
  }

  const std::string& format_;
  std::vector<Argument> arguments_;
  std::size_t next_ = 0;
  bool ended_ = false;
  InterruptPoll poll_;
  std::string out_;
};

}  // namespace

std::string format_text(const std::string& format, const std::vector<const cvArray_tag*>& arguments) {
  return Formatter(format, flattened(arguments)).run();
}

}  // namespace embedded::scripting_runtime
