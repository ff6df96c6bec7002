#include "platform/foundation/strings.hpp"

#include "embedded/foundation/local_encoding.hpp"

#include <boost/locale/utf.hpp>

#include <algorithm>

namespace kmf {
namespace {

namespace utf = boost::locale::utf;

constexpr utf::code_point kReplacement = 0xFFFD;

template <class Char>
bool is_ascii(const std::basic_string<Char>& text) {
  // Without an early end, so that the loop becomes one of wide instructions.
  typename std::make_unsigned<Char>::type bits = 0;
  for (const Char c : text) bits |= static_cast<typename std::make_unsigned<Char>::type>(c);
  return bits < 0x80;
}

// Where the reading goes on after a bad sequence: behind its first unit and the trailing units that belong to it.
template <class Char>
const Char* after_bad_sequence(const Char* start, const Char* end) {
  int left = std::max(0, utf::utf_traits<Char>::trail_length(*start));
  const Char* at = start + 1;
  for (; left > 0 && at != end && utf::utf_traits<Char>::is_trail(*at); --left) ++at;
  return at;
}

template <class To, class From>
std::basic_string<To> convert(const std::basic_string<From>& text) {
  if (is_ascii(text)) return std::basic_string<To>(text.begin(), text.end());
  std::basic_string<To> result;
  result.reserve(text.size() + text.size() / 2);
  auto out = std::back_inserter(result);
  const From* at = text.data();
  const From* const end = at + text.size();
  while (at != end) {
    const From* const start = at;
    utf::code_point point = utf::utf_traits<From>::decode(at, end);
    if (point == utf::illegal || point == utf::incomplete) {
      point = kReplacement;
      at = after_bad_sequence(start, end);
    }
    out = utf::utf_traits<To>::encode(point, out);
  }
  return result;
}

}  // namespace

ustring utf8_string_to_ustring(const std::string& text) {
  return convert<char16_t>(text);
}

std::string ustring_to_utf8_string(const ustring& text) {
  return convert<char>(text);
}

ustring local_encoded_string_to_ustring(const std::string& text) {
  const std::string charset = embedded::local_charset();
  return utf8_string_to_ustring(charset.empty() ? text : embedded::to_utf8_from(text, charset));
}

std::string ustring_to_local_encoded_string(const ustring& text) {
  const std::string charset = embedded::local_charset();
  const std::string utf8 = ustring_to_utf8_string(text);
  return charset.empty() ? utf8 : embedded::from_utf8_to(utf8, charset);
}

ustring get_sanitized_ustring(const ustring& text, char16_t unwanted, char16_t replacement) {
  ustring result = text;
  std::replace(result.begin(), result.end(), unwanted, replacement);
  return result;
}

std::string lower(const std::string& text) {
  std::string result = text;
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

}  // namespace kmf
