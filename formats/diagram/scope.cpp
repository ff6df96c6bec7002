#include "formats/diagram/scope.hpp"

#include "embedded/block_diagram/paths.hpp"
#include "formats/names.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <charconv>
#include <cmath>

namespace kinemo::formats::diagram {

bool Report::is_new(const SourcePlace& place, const std::string& text) {
  if (told_.size() >= error_limit) {
    if (!full_) list_.error("diagram:too-many", {place.file, 0, 0}, "there are more errors than are shown here");
    full_ = true;
    return false;
  }
  return told_.emplace(place.file, place.line, place.column, text).second;
}

Diagnostic* Report::error(const std::string& rule, const SourcePlace& place, const std::string& text) {
  return is_new(place, text) ? &list_.error(rule, place, text) : nullptr;
}

Diagnostic* Report::warning(const std::string& rule, const SourcePlace& place, const std::string& text) {
  return is_new(place, text) ? &list_.warning(rule, place, text) : nullptr;
}

std::string Report::suggest(const std::string& name, const std::vector<std::string>& known) {
  if (known.size() > comparisons_left_) return {};
  comparisons_left_ -= known.size();
  return did_you_mean(name, known);
}

std::string Scope::path() const {
  if (system == nullptr) return block;
  const std::string path = kmf::ustring_to_utf8_string(system->path());
  return block.empty() ? path : path + "/" + block;
}

DiagnosticObject Scope::object() const {
  if (system == nullptr) return {};
  ustring path = system->path();
  if (!block.empty()) path += u"/" + host::escapedName(kmf::utf8_string_to_ustring(block));
  return {kmf::ustring_to_utf8_string(path), {}, false};
}

namespace {

void add_notes(Diagnostic& diagnostic, const Scope& scope, const std::string& valid) {
  if (!valid.empty()) diagnostic.notes.push_back({"valid: " + valid, {}});
  const std::string path = scope.path();
  if (!path.empty()) diagnostic.notes.push_back({"in " + path, {}});
}

}  // namespace

void Scope::error(const YamlNode& at, const std::string& rule, const std::string& text, const std::string& valid,
                  const std::optional<DiagnosticObject>& object) const {
  Diagnostic* diagnostic = report.error(rule, place(at), text);
  if (diagnostic == nullptr) return;
  add_notes(*diagnostic, *this, valid);
  diagnostic->objects.push_back(object.value_or(this->object()));
}

void Scope::warning(const YamlNode& at, const std::string& rule, const std::string& text,
                    const std::string& valid) const {
  Diagnostic* diagnostic = report.warning(rule, place(at), text);
  if (diagnostic == nullptr) return;
  add_notes(*diagnostic, *this, valid);
  diagnostic->objects.push_back(object());
}

bool Scope::guarded(const YamlNode& at, const std::function<void()>& operation) const {
  try {
    operation();
    return true;
  } catch (const kmf::Exception& raised) {
    const kmf::ErrorData data = raised.data();
    const std::string rule = data.id.empty() ? "diagram:host" : data.group + ":" + data.id;
    if (Diagnostic* diagnostic = report.error(rule, place(at), data.text)) {
      for (const kmf::ErrorData& cause : data.causes) diagnostic->notes.push_back({cause.text, {}});
      add_notes(*diagnostic, *this, {});
      diagnostic->objects.push_back(object());
    }
    return false;
  }
}

bool expect_object(const Scope& scope, const YamlNode& node, ObjectKind kind) {
  const std::string what(object_name(kind));
  if (!expect_mapping(scope, node, what)) return false;
  const std::vector<std::string>& known = keys_of(kind);
  for (std::size_t i = 0; i < node.entry_count(); ++i) {
    const YamlNode& key = node.key(i);
    if (std::find(known.begin(), known.end(), key.text) != known.end()) continue;
    scope.error(key, "diagram:unknown-key",
                what + " has no key '" + key.text + "'" + scope.report.suggest(key.text, known),
                list_names(known, known.size()));
  }
  return true;
}

void check_version(const Scope& scope, const YamlNode& root) {
  constexpr const char* version = "1";
  const YamlNode* given = root.find("kinemo");
  if (given == nullptr) {
    return scope.error(root, "diagram:version", "the file doesn't say which version of the format it has",
                       "'kinemo: 1' at its head");
  }
  if (given->text != version) {
    scope.error(*given, "diagram:version", "the version '" + given->text + "' of the format isn't known here", version);
  }
}

bool expect_mapping(const Scope& scope, const YamlNode& node, const std::string& what) {
  if (node.is_mapping() || node.is_null()) return true;
  scope.error(node, "diagram:wrong-kind", what + " is a mapping, and this is " + std::string(kind_name(node.kind)));
  return false;
}

bool expect_list(const Scope& scope, const YamlNode& node, const std::string& what) {
  if (node.is_sequence() || node.is_null()) return true;
  scope.error(node, "diagram:wrong-kind", what + " is a list, and this is " + std::string(kind_name(node.kind)));
  return false;
}

std::optional<std::string> expect_text(const Scope& scope, const YamlNode& node, const std::string& what) {
  if (node.is_scalar()) return node.text;
  const std::string valid = node.is_sequence() ? "a matrix is a text in quotes, such as '[1 2; 3 4]'" : "";
  scope.error(node, "diagram:wrong-kind", what + " is a text, and this is " + std::string(kind_name(node.kind)), valid);
  return std::nullopt;
}

std::optional<bool> expect_switch(const Scope& scope, const YamlNode& node, const std::string& what) {
  const std::string text = node.is_scalar() ? kmf::lower(node.text) : std::string();
  if (text == "on" || text == "true" || text == "yes") return true;
  if (text == "off" || text == "false" || text == "no") return false;
  scope.error(node, "diagram:bad-value", what + " is a switch, and this is '" + node.text + "'", "on, off");
  return std::nullopt;
}

std::optional<double> expect_number(const Scope& scope, const YamlNode& node, const std::string& what) {
  double value = 0;
  const char* end = node.text.data() + node.text.size();
  const auto [stop, error] = std::from_chars(node.text.data(), end, value);
  if (node.is_scalar() && error == std::errc() && stop == end && std::isfinite(value)) return value;
  scope.error(node, "diagram:bad-value", what + " is a number, and this is '" + node.text + "'");
  return std::nullopt;
}

}  // namespace kinemo::formats::diagram
