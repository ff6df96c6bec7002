// Whether a parameter of a compiled model follows the model's run-time parameters, and if not, why.
#pragma once

#include "platform/graph_core/graph.hpp"
#include "views/parameter_trace.hpp"

#include <boost/optional.hpp>

#include <string>
#include <vector>

namespace kinemo::views {

struct Tunability {
  bool tunable = false;
  std::vector<std::string> through;  ///< the run-time parameters that it follows, in the order of the alphabet
  std::string reason;                ///< the first one why it is fixed; empty when it is tunable
};

/// What the block became.
struct CompiledParameter {
  bool in_model = false;  ///< whether the block has a component
  bool opaque = false;
  bool subsystem = false;
  boost::optional<ParameterVariant> value;  ///< none where the component lacks the parameter
};

Tunability tunability(const ParameterTrace& trace, const CompiledParameter& compiled);

}  // namespace kinemo::views
