#include "platform/foundation/vn_id.hpp"

#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include "embedded/foundation/unique_ids.hpp"

#include <algorithm>

namespace kmf {
namespace {

// Letters and digits of ASCII, whatever the locale says.
constexpr bool is_letter(char c) noexcept {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool is_inner(char c) noexcept {
  return is_letter(c) || (c >= '0' && c <= '9') || c == '_';
}

constexpr char kLeadingLetter = 'x';

const std::string& checked(const std::string& text) {
  if (!text.empty() && !VnId::isLegal(text)) {
    throw_message("kinemo:foundation:identifiers", "InvalidIdentifier", text);
  }
  return text;
}

}  // namespace

VnId::VnId(const std::string& text) : TableString(checked(text)) {}

VnId::VnId(const ustring& text) : VnId(ustring_to_utf8_string(text)) {}

VnId::operator ustring() const {
  return ustring(data(), data() + size());
}

bool VnId::isLegal(std::string_view text) noexcept {
  return !text.empty() && is_letter(text.front()) && std::all_of(text.begin(), text.end(), is_inner);
}

VnId VnId::make(const std::string& text) {
  if (isLegal(text)) return VnId(text);
  std::string id;
  for (const char c : text) {
    const bool continues_character = (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
    if (is_inner(c)) {
      id += c;
    } else if (!continues_character) {
      id += '_';
    }
  }
  if (id.empty() || !is_letter(id.front())) id.insert(id.begin(), kLeadingLetter);
  return VnId(id);
}

void VnId::stringsToIds(std::map<std::string, VnId>& names, const std::vector<VnId>& reserved, std::size_t maxLength) {
  embedded::UniqueIds ids(reserved, maxLength);
  std::vector<std::map<std::string, VnId>::value_type*> open;
  for (auto& name : names) {
    if (isLegal(name.first) && ids.take(VnId(name.first))) {
      name.second = VnId(name.first);
    } else {
      open.push_back(&name);
    }
  }
  for (auto* name : open) name->second = ids.near(make(name->first));
}

std::vector<VnId> VnId::unique(const std::vector<VnId>& wanted, const std::vector<VnId>& taken, std::size_t maxLength) {
  embedded::UniqueIds ids(taken, maxLength);
  std::vector<VnId> result(wanted.size());
  std::vector<std::size_t> open;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (!wanted[i].empty() && ids.take(wanted[i])) {
      result[i] = wanted[i];
    } else {
      open.push_back(i);
    }
  }
  for (const std::size_t i : open) result[i] = ids.near(make(wanted[i]));
  return result;
}

}  // namespace kmf
