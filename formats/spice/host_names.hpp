// The names that parameters of a netlist have in the host, where a name is an identifier and some words are taken.
#pragma once

#include <string>

#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

/// The same name wherever it can be kept; the same result for the same name.
std::string host_name(const std::string& parameter);

/// The expression in the host's language with the host's names.
std::string host_expression(const Expression& expression);

}  // namespace kinemo::formats::spice
