// Walks through the expanded circuit, call by call, without building it: what visits it sees every element of every
// instance with the values that parameters have there. The walk is no deeper on the stack for deeper netlists.
#pragma once

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "formats/spice/netlist.hpp"
#include "formats/spice/parameter_scopes.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

/// One instance while the walk is inside of it.
struct Instance {
  const Definition* definition = nullptr;
  const Call* call = nullptr;  ///< null for the top level
  std::vector<char> branches;  ///< whether each branch of the definition is taken
  std::size_t next_call = 0;
};

class ExpansionVisitor {
 public:
  virtual ~ExpansionVisitor() = default;
  /// The parameters of the instance have their values by now. False leaves its inside out.
  virtual bool begin(const Instance& instance, const ParameterScopes& scopes) = 0;
  /// An element of the innermost instance that has begun; all elements come before the first call.
  virtual void element(const Element& element, const ParameterScopes& scopes) = 0;
  virtual void end(const Instance& instance) = 0;
};

/// Walks through a netlist that has no errors. Values that can't be computed are reported, each place once.
void expand(const Netlist& netlist, ExpansionVisitor& visitor, Reporter& reporter);

}  // namespace kinemo::formats::spice
