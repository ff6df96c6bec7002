#pragma once

// Expressions as people write them, with a bound unit behind them instead of around them.

#include "platform/data/data.hpp"

#include <string>

namespace data2::core {

/// The expression in front of its unit: "2*R0". A unit bound further in stays, since the number may be told in another
/// one.
std::string plain_text(const Expr& expression);
/// "2*R0", or "(2*R0) Ohm" where a unit is bound.
std::string expression_text(const Expr& expression);

}  // namespace data2::core
