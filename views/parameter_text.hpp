// How values of parameters are shown to people and programs.
#pragma once

#include "embedded/data/expression_text.hpp"
#include "platform/graph_core/graph.hpp"

#include <string>

namespace kinemo::views {

class JsonWriter;

/// "5 Ohm", "[1 2; 3 4] V", "2*R0", "(2*R0) Ohm" or "'text'".
std::string parameter_text(const ParameterVariant& value);
std::string value_text(const data2::core::ValueData& value);
using data2::core::expression_text;

/// {"value": ..., "unit": ...}, {"expression": ..., "unit": ...} or {"text": ...}. An array is told by rows.
void write_parameter(JsonWriter& json, const ParameterVariant& value);
void write_value(JsonWriter& json, const data2::core::ValueData& value);

}  // namespace kinemo::views
