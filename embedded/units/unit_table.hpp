#pragma once

// What the algebra of units needs of the table of parsed units.

#include "embedded/units/unit_database.hpp"
#include "platform/units/units.hpp"

namespace units2::core::detail {

/// No unit that people write comes near it.
constexpr std::size_t longest_text = 256;

/// What the database knows of a parsed unit; it lives as long as the process. The empty unit is the dimensionless one.
const DatabaseUnit& database_unit(const AbstractExpr& unit);

}  // namespace units2::core::detail
