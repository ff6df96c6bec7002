#include "views/diagnostics_view.hpp"

#include "views/json_writer.hpp"

#include <algorithm>
#include <ostream>

namespace kinemo::views {

namespace {

const char* color_of(formats::Severity severity) {
  switch (severity) {
    case formats::Severity::error:
      return "\x1b[1;31m";
    case formats::Severity::warning:
      return "\x1b[1;35m";
    case formats::Severity::note:
      break;
  }
  return "\x1b[1;36m";
}

/// Marks the first severity in the text, which the place comes before.
std::string colored(const formats::Diagnostic& diagnostic) {
  std::string text = formats::to_string(diagnostic);
  const std::string word = std::string(formats::to_string(diagnostic.severity)) + ": ";
  const std::size_t at = text.find(word);
  if (at == std::string::npos) return text;
  return text.substr(0, at) + color_of(diagnostic.severity) + word + "\x1b[0m" + text.substr(at + word.size());
}

void write_place(JsonWriter& json, const std::string& file, std::size_t line, std::size_t column) {
  if (!file.empty()) json.member("file", file);
  if (line != 0) json.member("line", line);
  if (column != 0) json.member("column", column);
}

void write_one(JsonWriter& json, const formats::Diagnostic& diagnostic) {
  json.begin_object();
  write_place(json, diagnostic.file, diagnostic.line, diagnostic.column);
  json.member("severity", formats::to_string(diagnostic.severity));
  json.member("rule", diagnostic.rule).member("text", diagnostic.text);
  json.key("notes").begin_array();
  for (const formats::DiagnosticNote& note : diagnostic.notes) {
    json.begin_object(true);
    write_place(json, note.place.file, note.place.line, note.place.column);
    json.member("text", note.text).end_object();
  }
  json.end_array().end_object();
}

}  // namespace

void write_diagnostics_text(std::ostream& out, const formats::DiagnosticList& list, bool color) {
  for (const formats::Diagnostic& diagnostic : list.all()) {
    out << (color ? colored(diagnostic) : formats::to_string(diagnostic)) << '\n';
  }
}

void write_diagnostics_json(std::ostream& out, const formats::DiagnosticList& list) {
  JsonWriter json(out);
  json.begin_object().member("schema", std::size_t{1}).key("diagnostics").begin_array();
  for (const formats::Diagnostic& diagnostic : list.all()) write_one(json, diagnostic);
  json.end_array();
  json.member("errors", count(list, formats::Severity::error));
  json.member("warnings", count(list, formats::Severity::warning));
  json.end_object().finish();
}

std::size_t count(const formats::DiagnosticList& list, formats::Severity severity) {
  return static_cast<std::size_t>(
      std::count_if(list.all().begin(), list.all().end(),
                    [&](const formats::Diagnostic& diagnostic) { return diagnostic.severity == severity; }));
}

}  // namespace kinemo::views
