// Reports what is wrong with cards. In definitions that nothing calls, mistakes are warnings: a library holds much that
// a netlist doesn't use, and the simulator doesn't look at it either.
#pragma once

#include <string>

#include "formats/diagnostics.hpp"
#include "formats/spice/card.hpp"

namespace kinemo::formats::spice {

class Reporter {
 public:
  explicit Reporter(DiagnosticList& list) : m_list(&list) {}

  /// From now on mistakes are those of a definition that is used or isn't.
  void set_used(bool used) { m_severity = used ? Severity::error : Severity::warning; }

  Diagnostic& mistake(std::string rule, const Place& place, std::string text) {
    return m_list->add(m_severity, std::move(rule), source_place(place), std::move(text));
  }
  Diagnostic& warning(std::string rule, const Place& place, std::string text) {
    return m_list->warning(std::move(rule), source_place(place), std::move(text));
  }
  void note(std::string rule, const Place& place, std::string text) {
    m_list->note(std::move(rule), source_place(place), std::move(text));
  }
  DiagnosticList& list() { return *m_list; }

 private:
  DiagnosticList* m_list;
  Severity m_severity = Severity::error;
};

}  // namespace kinemo::formats::spice
