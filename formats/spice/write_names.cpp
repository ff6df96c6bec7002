#include "formats/spice/write_names.hpp"

#include <algorithm>
#include <cctype>

#include "platform/foundation/strings.hpp"

namespace kinemo::formats::spice {

namespace {

bool fits_name(char c) {
  constexpr std::string_view separators = ",=(){}'\";\\";
  return c > ' ' && c < '\x7f' && separators.find(c) == std::string_view::npos;
}

bool fits_identifier(char c) {
  return c == '_' || (static_cast<unsigned char>(c) < 0x80 && std::isalnum(static_cast<unsigned char>(c)) != 0);
}

template <class Fits>
std::string with_underscores(std::string_view text, Fits fits) {
  std::string name(text);
  std::replace_if(
      name.begin(), name.end(), [fits](char c) { return !fits(c); }, '_');
  return name;
}

/// A dollar sign at an end of a name, and two slashes, begin a comment.
void hide_comments(std::string& name) {
  for (char* end : {&name.front(), &name.back()}) {
    *end = *end == '$' ? '_' : *end;
  }
  for (std::size_t at = name.find("//"); at != std::string::npos; at = name.find("//", at)) {
    name.replace(at, 2, "__");
  }
}

}  // namespace

std::string legal_name(std::string_view text) {
  std::string name = with_underscores(text, fits_name);
  if (!name.empty()) {
    hide_comments(name);
  }
  return name;
}

std::string legal_identifier(std::string_view text) {
  std::string name = with_underscores(text, fits_identifier);
  const bool leads = !name.empty() && std::isalpha(static_cast<unsigned char>(name.front())) != 0;
  return name.empty() || leads ? name : "p_" + name;
}

bool names_ground(std::string_view name) {
  return name == "0" || kmf::lower(std::string(name)) == "gnd";
}

bool UniqueNames::claim(const std::string& name) {
  return !name.empty() && m_taken.insert(kmf::lower(name)).second;
}

std::string UniqueNames::make(const std::string& wanted) {
  if (claim(wanted)) {
    return wanted;
  }
  std::size_t& next = m_next.try_emplace(kmf::lower(wanted), 2).first->second;
  std::string name;
  do {
    name = wanted + "_" + std::to_string(next++);
  } while (!claim(name));
  return name;
}

void Aliases::add(const std::string& alias, const std::string& written) {
  m_exact.emplace(alias, written);
  m_lower.emplace(kmf::lower(alias), written);
}

std::optional<std::string> Aliases::find(const std::string& alias) const {
  const auto exact = m_exact.find(alias);
  if (exact != m_exact.end()) {
    return exact->second;
  }
  const auto lower = m_lower.find(kmf::lower(alias));
  return lower != m_lower.end() ? std::optional(lower->second) : std::nullopt;
}

}  // namespace kinemo::formats::spice
