#include "checks/check.hpp"

namespace kinemo::checks {

const std::vector<Rule>& rules() {
  using formats::Severity;
  static const std::vector<Rule> all{
      {"check:missing-reference", Severity::warning,
       "A network of connected parts of one domain has no reference block, so that its potential is undetermined.",
       true, check_missing_reference},
      {"check:mixed-port-types", Severity::error,
       "Ports of different types share a net, directly or through the ports of subsystems.", false,
       check_mixed_port_types},
      {"check:unconnected-port", Severity::warning, "A port of a block is joined to nothing.", false,
       check_unconnected_ports},
  };
  return all;
}

void run_rules(const CheckInput& input, formats::DiagnosticList& findings) {
  for (const Rule& rule : rules()) {
    if (input.model != nullptr || !rule.needs_model) rule.run(input, rule, findings);
  }
}

}  // namespace kinemo::checks
