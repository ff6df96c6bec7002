#pragma once

#include "common/gl/gti/export/gt_parameter_evaluator.hpp"
#include "platform/graph_core/graph.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <string>

namespace kinemo::physical {

/// The temperature in K that the text of a model's setting gives: a number without a unit is told in K, one with a unit
/// of temperature is converted, and so is a variable that has a unit.
/// @throws "kinemo:physical:settings" "NotText" (setting, class), "NotNumeric" (setting, text), "NotScalar" (setting,
/// text, size), "NotATemperature" (setting, text, unit), "NoSuchTemperature" (setting, text, number in K), and script
/// errors
data2::core::Value temperature_of(const std::string& setting, const ustring& text,
                                  const gl::gti::GtParameterEvaluator& evaluate);

/// The text that the host holds for a setting. @throws "NotText" (setting, class)
ustring setting_text(const std::string& setting, const cvUniquePtr& value);

}  // namespace kinemo::physical
