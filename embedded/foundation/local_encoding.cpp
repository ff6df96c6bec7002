#include "embedded/foundation/local_encoding.hpp"

#include "platform/foundation/strings.hpp"

#include <boost/locale/encoding.hpp>
#include <boost/locale/utf.hpp>

#include <langinfo.h>

namespace kmf::embedded {
namespace {

namespace conv = boost::locale::conv;

std::string one_by_one(const std::string& text, const std::string& charset) {
  std::string result;
  for (const char byte : text) {
    try {
      result += conv::to_utf<char>(std::string(1, byte), charset, conv::stop);
    } catch (const conv::conversion_error&) {
      result += "\xEF\xBF\xBD";
    }
  }
  return result;
}

}  // namespace

std::string local_charset() {
  const std::string name = lower(nl_langinfo(CODESET));
  if (name == "utf-8" || name == "utf8" || name == "ansi_x3.4-1968" || name == "us-ascii" || name == "646") return {};
  return name;
}

std::string to_utf8_from(const std::string& text, const std::string& charset) {
  try {
    return conv::to_utf<char>(text, charset, conv::stop);
  } catch (const conv::conversion_error&) {
    return one_by_one(text, charset);
  } catch (const conv::invalid_charset_error&) {
    return text;
  }
}

std::string from_utf8_to(const std::string& text, const std::string& charset) {
  try {
    return conv::from_utf<char>(text, charset, conv::stop);
  } catch (const conv::invalid_charset_error&) {
    return text;
  } catch (const conv::conversion_error&) {
  }
  std::string result;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t size = 1;
    while (at + size < text.size() && boost::locale::utf::utf_traits<char>::is_trail(text[at + size])) ++size;
    try {
      result += conv::from_utf<char>(text.substr(at, size), charset, conv::stop);
    } catch (const conv::conversion_error&) {
      result += '?';
    }
    at += size;
  }
  return result;
}

}  // namespace kmf::embedded
