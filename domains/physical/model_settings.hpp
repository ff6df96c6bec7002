#pragma once

// Settings of a model that the domain asks the host for. They are read once in each compile, and kept with the model.

#include "common/gl/gti/export/translation_configuration.hpp"
#include "platform/graph_core/graph.hpp"

#include <string>

namespace kinemo::physical {

/// "on" keeps parameters that depend on run-time variables as expressions; "off", the default, gives numbers.
extern const char runtime_parameters_setting[];
/// An expression for the temperature at which parts are told to work; "auto" is 300.15 K.
extern const char reference_temperature_setting[];
/// An expression for the temperature of thermal parts at the start; "auto" is the reference temperature.
extern const char initial_temperature_setting[];

/// Asks for the settings. The conversions raise "kinemo:physical:settings" "NotASwitch" (setting, text) and what
/// `temperature_of` raises, which the translation tells as the cause of its "ConfigSetEvalErr".
void add_model_settings(gl::gti::TranslationConfiguration& configuration);

/// Reads the settings of a registered model afresh.
/// @throws "kinemo:common:gl:gti:compile" "ConfigSetEvalErr" (text, setting, model)
void read_model_settings(const std::string& modelName);

/// As of the last reading, which takes place now if there was none; so do the operations below.
bool keeps_runtime_parameters(const std::string& modelName);

/// What a block that follows a setting takes for its parameter: the number in K. It is an expression in K instead where
/// that is asked for by `tunable`, the model keeps run-time parameters, and the setting's text uses run-time parameters
/// and no other variables, of whose names neither the block nor a mask around it has one for itself.
gl::core::Parameter parameter_of_setting(double block, const std::string& modelName, const std::string& setting,
                                         bool tunable);

}  // namespace kinemo::physical
