#pragma once

// Values of the graph core as arrays of the scripting runtime. All results are new arrays that the caller owns.

#include "embedded/scripting_runtime/builtin.hpp"
#include "platform/data/data.hpp"
#include "platform/graph_core/graph.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <string>
#include <utility>
#include <vector>

namespace embedded::graph_core_scripting {

/// Plain numbers, without the unit.
cvUniquePtr numbers_of(const data2::core::ValueData& value);
/// Numbers, or an object of the class "kinemo.Value" where there is a unit.
cvUniquePtr array_of(const data2::core::ValueData& value);
using scripting_runtime::text_column;

/// Fields of one structure, in order.
using FieldValues = std::vector<std::pair<std::string, cvUniquePtr>>;
cvUniquePtr structure(FieldValues fields);

/// A text as it is, a value as `array_of` gives it, an expression as its text.
cvUniquePtr variant_array(const ParameterVariant& value);
/// A structure with "value" (numbers, a text, or empty for an expression), "unit" and "expression", both texts.
cvUniquePtr parameter_structure(const ParameterVariant& value);
/// A structure with one such structure for each parameter.
cvUniquePtr parameters_structure(const gl::core::Component& component);

/// The identifiers of an address, joined by "/".
std::string address_text(const kmf::VnIdPath& address);

}  // namespace embedded::graph_core_scripting
