#pragma once

// Netlists read into diagrams of the host, for tests that look at what becomes of them.

#include <stdexcept>
#include <string>

#include "formats/spice/read_netlist.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/support/physical_environment.hpp"

namespace kinemo::formats::spice {

class CircuitFixture : public test::PhysicalEnvironment {
 protected:
  using Diagram = embedded::block_diagram::Diagram;

  /// The text has no title. Notes and warnings are in `problems`.
  Diagram& read_circuit(const std::string& text, const Options& options = {}) {
    problems = {};
    Diagram* diagram = read_netlist_text("title\n" + text, "circuit.cir", options, problems);
    if (diagram == nullptr) {
      throw std::runtime_error(test::all_text(problems));
    }
    return *diagram;
  }

  static std::string parameter(const Diagram& diagram, const ustring& block, const std::string& name) {
    return kmf::ustring_to_utf8_string(embedded::block_diagram::parameter(*diagram.findBlock(block), name));
  }

  DiagnosticList problems;
};

}  // namespace kinemo::formats::spice
