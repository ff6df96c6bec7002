#pragma once

// The unit context of the scripting layer: by it, unit texts in arrays become units. There is one for the process.

#include "platform/units/units.hpp"

#include <string>

namespace unit_manager {

struct Context {
  /// @throws as `units2::core::parse`
  units2::core::AbstractExpr parse(const std::string& text) const;
};

}  // namespace unit_manager
