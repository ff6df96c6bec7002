// Diagnostics as text for people, and as JSON and SARIF 2.1.0 for programs.
#pragma once

#include "formats/diagnostics.hpp"

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::views {

/// What a rule is about, for programs that list the rules of a run.
struct RuleText {
  std::string_view id;
  std::string_view text;
};

/// One after the other, notes indented; `color` marks severities.
void write_diagnostics_text(std::ostream& out, const formats::DiagnosticList& list, bool color);
/// {"schema": 1, "diagnostics": [...], "errors": n, "warnings": n}
void write_diagnostics_json(std::ostream& out, const formats::DiagnosticList& list);
/// One run of the tool; `rules` gives texts for the rules that are known beforehand.
void write_diagnostics_sarif(std::ostream& out, const formats::DiagnosticList& list, std::string_view tool_version,
                             const std::vector<RuleText>& rules);

std::size_t count(const formats::DiagnosticList& list, formats::Severity severity);

}  // namespace kinemo::views
