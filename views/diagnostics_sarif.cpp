// SARIF is the Static Analysis Results Interchange Format of OASIS, version 2.1.0.

#include "views/diagnostics_view.hpp"
#include "views/json_writer.hpp"

#include <map>
#include <ostream>

namespace kinemo::views {

namespace {

/// Positions of the rules in the run's list, by id.
using RuleNumbers = std::map<std::string, std::size_t, std::less<>>;

RuleNumbers number_rules(const formats::DiagnosticList& list) {
  RuleNumbers numbers;
  for (const formats::Diagnostic& diagnostic : list.all()) numbers.emplace(diagnostic.rule, 0);
  std::size_t next = 0;
  for (auto& [id, number] : numbers) number = next++;
  return numbers;
}

/// A file's name as a URI reference: relative as the user gave it, with what isn't allowed in one as %XX.
std::string uri(const std::string& file) {
  static const char digits[] = "0123456789ABCDEF";
  std::string text = file.substr(0, 1) == "/" ? "file://" : "";
  for (const char c : file) {
    const auto byte = static_cast<unsigned char>(c);
    const bool plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
                       std::string_view("/._-~").find(c) != std::string_view::npos;
    if (plain) {
      text += c;
    } else {
      text += {'%', digits[byte >> 4], digits[byte & 15]};
    }
  }
  return text;
}

void write_location(JsonWriter& json, const std::string& file, std::size_t line, std::size_t column) {
  json.key("physicalLocation").begin_object();
  json.key("artifactLocation").begin_object(true).member("uri", uri(file)).end_object();
  if (line != 0) {
    json.key("region").begin_object(true).member("startLine", line);
    if (column != 0) json.member("startColumn", column);
    json.end_object();
  }
  json.end_object();
}

void write_message(JsonWriter& json, const std::string& text) {
  json.key("message").begin_object(true).member("text", text).end_object();
}

/// Notes without a place are part of the message; the others are related locations.
std::string full_text(const formats::Diagnostic& diagnostic) {
  std::string text = diagnostic.text;
  for (const formats::DiagnosticNote& note : diagnostic.notes) {
    if (note.place.line == 0) text += "\n" + note.text;
  }
  return text;
}

void write_related(JsonWriter& json, const formats::Diagnostic& diagnostic) {
  bool begun = false;
  for (const formats::DiagnosticNote& note : diagnostic.notes) {
    if (note.place.line == 0) continue;
    if (!begun) json.key("relatedLocations").begin_array();
    begun = true;
    json.begin_object();
    write_location(json, note.place.file, note.place.line, note.place.column);
    write_message(json, note.text);
    json.end_object();
  }
  if (begun) json.end_array();
}

void write_result(JsonWriter& json, const formats::Diagnostic& diagnostic, const RuleNumbers& rules) {
  json.begin_object().member("ruleId", diagnostic.rule).member("ruleIndex", rules.at(diagnostic.rule));
  json.member("level", formats::to_string(diagnostic.severity));
  write_message(json, full_text(diagnostic));
  if (!diagnostic.file.empty()) {
    json.key("locations").begin_array().begin_object();
    write_location(json, diagnostic.file, diagnostic.line, diagnostic.column);
    json.end_object().end_array();
  }
  write_related(json, diagnostic);
  json.end_object();
}

void write_rules(JsonWriter& json, const RuleNumbers& numbers, const std::vector<RuleText>& texts) {
  json.key("rules").begin_array();
  for (const auto& entry : numbers) {
    json.begin_object().member("id", entry.first);
    for (const RuleText& rule : texts) {
      if (rule.id != entry.first) continue;
      json.key("shortDescription").begin_object(true).member("text", rule.text).end_object();
    }
    json.end_object();
  }
  json.end_array();
}

}  // namespace

void write_diagnostics_sarif(std::ostream& out, const formats::DiagnosticList& list, std::string_view tool_version,
                             const std::vector<RuleText>& rules) {
  const RuleNumbers numbers = number_rules(list);
  JsonWriter json(out);
  json.begin_object();
  json.member("$schema", "https://json.schemastore.org/sarif-2.1.0.json").member("version", "2.1.0");
  json.key("runs").begin_array().begin_object().key("tool").begin_object().key("driver").begin_object();
  json.member("name", "kinemo").member("version", tool_version);
  write_rules(json, numbers, rules);
  json.end_object().end_object().key("columnKind").value("utf16CodeUnits").key("results").begin_array();
  for (const formats::Diagnostic& diagnostic : list.all()) write_result(json, diagnostic, numbers);
  json.end_array().end_object().end_array().end_object().finish();
}

}  // namespace kinemo::views
