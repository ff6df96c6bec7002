#include "views/picture/value_text.hpp"

#include "embedded/block_diagram/diagram.hpp"

#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;

namespace {

class Dialog {
 public:
  explicit Dialog(const GTBlock& block) : block_(block), names_(host::parameterNames(block)) {}

  const std::vector<std::string>& names() const { return names_; }
  bool has(const std::string& name) const { return std::find(names_.begin(), names_.end(), name) != names_.end(); }
  ustring text(const std::string& name) const { return has(name) ? host::parameter(block_, name) : ustring(); }

 private:
  const GTBlock& block_;
  std::vector<std::string> names_;
};

bool is_number(const ustring& text) {
  double value = 0;
  const std::string utf8 = kmf::ustring_to_utf8_string(text);
  const char* end = utf8.data() + utf8.size();
  const auto [stop, error] = std::from_chars(utf8.data(), end, value);
  return error == std::errc() && stop == end;
}

/// A name or formula has the unit of its own.
ustring with_unit(const ustring& value, const ustring& unit) {
  if (!is_number(value) || unit.empty() || unit == u"1") return value;
  return value + u" " + unit;
}

ustring number_text(const Dialog& dialog, const std::string& name) {
  return with_unit(dialog.text(name), dialog.text(name + "_unit"));
}

}  // namespace

ustring value_text(const GTBlock& block) {
  if (host::isSubsystem(block) || host::isIoPort(block)) return {};
  const Dialog dialog(block);
  if (const ustring model = dialog.text("model"); !model.empty()) return model;
  if (const ustring rest = dialog.text("text"); !rest.empty()) return rest;
  if (dialog.has("value")) return number_text(dialog, "value");
  for (const std::string& name : dialog.names()) {
    if (dialog.has(name + "_unit")) return number_text(dialog, name);
  }
  return {};
}

ustring shortened(const ustring& text, std::size_t length) {
  if (text.size() <= length) return text;
  std::size_t end = length - 1;
  const bool splits_a_pair = text[end - 1] >= 0xD800 && text[end - 1] < 0xDC00;
  if (splits_a_pair) --end;
  return text.substr(0, end) + u"\u2026";
}

}  // namespace kinemo::views::picture
