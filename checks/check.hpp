// The rules of `kinemo check`: what each is called, and what it looks at. Every rule is one function in a file of its
// own; it only reads, and adds what it finds to a list.
#pragma once

#include "formats/diagnostics.hpp"
#include "platform/graph_core/graph.hpp"

#include <string>
#include <string_view>
#include <vector>

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::checks {

struct CheckInput {
  embedded::block_diagram::Diagram& diagram;
  const gl::core::Model* model;  ///< null where the diagram doesn't compile
  std::string file;              ///< shown where a block tells no place
};

struct Rule {
  std::string_view id;
  formats::Severity severity;
  std::string_view text;  ///< one sentence for people
  bool needs_model;       ///< is left out where the diagram doesn't compile
  void (*run)(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings);
};

/// All rules but those of the compile itself, by id.
const std::vector<Rule>& rules();

/// Runs every rule that the input allows.
void run_rules(const CheckInput& input, formats::DiagnosticList& findings);

// --- the rules
void check_missing_reference(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings);
void check_mixed_port_types(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings);
void check_unconnected_ports(const CheckInput& input, const Rule& rule, formats::DiagnosticList& findings);

}  // namespace kinemo::checks
