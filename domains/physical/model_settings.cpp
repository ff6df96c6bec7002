#include "domains/physical/model_settings.hpp"

#include "common/gl/gti/export/toplevel_runtime_parameters.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "domains/physical/prepared_kind.hpp"
#include "domains/physical/temperature_setting.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <boost/any.hpp>
#include <boost/optional.hpp>

#include <algorithm>
#include <map>
#include <vector>

namespace kinemo::physical {

const char runtime_parameters_setting[] = "PropagateRuntimeParameters";
const char reference_temperature_setting[] = "ReferenceTemperature";
const char initial_temperature_setting[] = "InitialTemperature";

namespace {

using data2::core::Expr;
using gl::gti::GtParameterEvaluator;
using gl::gti::TranslationManager;
using Convert = std::function<ParameterVariant(const cvUniquePtr&, GtParameterEvaluator)>;

constexpr double standard_temperature = 300.15;  // K

/// A setting as blocks take it.
struct Setting {
  data2::core::Value value;
  boost::optional<Expr> expression;  ///< over run-time parameters alone, where the model keeps them
};

/// What the last reading gave.
struct ModelSettings {
  bool runtimeParameters = false;
  std::map<std::string, Setting> temperatures;
};

gl::gti::DomainKey key() {
  return TranslationManager::get().domainKey(domain_name);
}

units2::core::ExprString kelvin() {
  return units2::core::parse("K");
}

ParameterVariant convert_switch(const cvUniquePtr& value, const GtParameterEvaluator&) {
  const ustring text = setting_text(runtime_parameters_setting, value);
  if (text != u"on" && text != u"off")
    kmf::throw_message("kinemo:physical:settings", "NotASwitch", std::string(runtime_parameters_setting), text);
  return text;
}

void add_temperature(gl::gti::TranslationConfiguration& configuration, const char* setting,
                     const ParameterVariant& automatic) {
  const auto convert = [setting, automatic](const cvUniquePtr& value,
                                            const GtParameterEvaluator& evaluate) -> ParameterVariant {
    const ustring text = setting_text(setting, value);
    if (text == u"auto") return automatic;
    return temperature_of(setting, text, evaluate);
  };
  configuration.addModelParameter(setting, automatic, Convert(convert));
}

/// The text of a setting that the model has; "auto" of any other.
ustring text_of_setting(const std::string& modelName, const std::string& setting) {
  const auto ask = [&modelName](kmf::CvCleaner& cleaner, const std::string& parameter) -> const cvArray_tag* {
    cvArray_tag* inputs[] = {cleaner.createString(modelName), cleaner.createString(parameter)};
    cvArray_tag* output = nullptr;
    kmf::call_internal_corvane(1, &output, 2, inputs, "get_param");
    return cleaner.addCvArray(output);
  };
  kmf::CvCleaner cleaner;
  if (cvGetField(ask(cleaner, "ObjectParameters"), 0, setting.c_str()) == nullptr) return u"auto";
  return kmf::cvarray_to_ustring(ask(cleaner, setting));
}

/// Names that mean something else in the text of a setting than in the compiled model: a setting is evaluated in the
/// model's dictionary alone where there is one, and the workspace goes before the dictionary in the model.
std::set<kmf::VnId> ambiguous_names(const std::string& modelName) {
  kmf::CvCleaner cleaner;
  const auto call = [&cleaner](const char* function, std::vector<cvArray_tag*> inputs) {
    cvArray_tag* output = nullptr;
    kmf::call_internal_corvane(1, &output, static_cast<int>(inputs.size()), inputs.data(), function);
    return cleaner.addCvArray(output);
  };
  cvArray_tag* model = cleaner.createString(modelName);
  std::set<kmf::VnId> names;
  if (cvIsEmpty(call("get_param", {model, cleaner.createString(std::string("DataDictionary"))}))) return names;
  const cvArray_tag* variables =
      call("data", {call("get_param", {model, cleaner.createString(std::string("ModelWorkspace"))})});
  for (std::size_t i = 0; i < cvGetNumberOfElements(variables); ++i)
    names.insert(kmf::cvarray_to_string(kmf::cvarray_get_field(variables, i, "Name")));
  return names;
}

/// The text as an expression, if run-time parameters with values are all the variables that it uses.
boost::optional<Expr> tunable_expression(const std::string& modelName, const ustring& text) {
  const boost::optional<Expr> expression = data2::cvi::CorvaneParser()(kmf::ustring_to_local_encoded_string(text));
  if (!expression || text == u"auto") return boost::none;
  const auto used = data2::core::UsedIds()(*expression);
  const std::set<kmf::VnId> tunable =
      gl::gti::toplevel_runtime_parameters(kmf::local_encoded_string_to_ustring(modelName)).runtimeParameters();
  const std::set<kmf::VnId> ambiguous = ambiguous_names(modelName);
  const auto known = [&](const kmf::VnId& name) { return tunable.count(name) != 0 && ambiguous.count(name) == 0; };
  if (used.empty() || !std::all_of(used.begin(), used.end(), known)) return boost::none;
  if (data2::core::bound_unit(*expression).unit().id() != 0) return expression;
  return Expr(data2::core::UnitBindExpr(*expression, kelvin()));
}

ModelSettings read(const std::string& modelName) {
  const gl::gti::ObjectParameterMap& values = TranslationManager::get().objectParameters(key(), modelName);
  ModelSettings settings;
  settings.runtimeParameters = boost::get<ustring>(values.at(runtime_parameters_setting)) == u"on";
  for (const char* name : {reference_temperature_setting, initial_temperature_setting}) {
    const auto* value = boost::get<data2::core::Value>(&values.at(name));
    if (!value) {
      settings.temperatures[name] = settings.temperatures.at(reference_temperature_setting);
      continue;
    }
    settings.temperatures[name].value = *value;
    if (settings.runtimeParameters)
      settings.temperatures[name].expression = tunable_expression(modelName, text_of_setting(modelName, name));
  }
  return settings;
}

const ModelSettings& settings_of(const std::string& modelName) {
  boost::any& data = TranslationManager::get().modelData(key(), modelName);
  if (data.empty()) data = read(modelName);
  return boost::any_cast<const ModelSettings&>(data);
}

/// Whether a name of the expression means something else at the block than at the top of the model.
bool is_hidden(const Expr& expression, double block) {
  kmf::CvCleaner cleaner;
  cvArray_tag* input = cleaner.createScalarDouble(block);
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, 1, &input, "gl.gti.internal.recursiveMaskNames");
  const std::vector<std::string> names = kmf::cvarray_to_string_vector(cleaner.addCvArray(output));
  const auto used = data2::core::UsedIds()(expression);
  return std::any_of(names.begin(), names.end(),
                     [&used](const std::string& name) { return used.count(kmf::VnId(name)) != 0; });
}

}  // namespace

void add_model_settings(gl::gti::TranslationConfiguration& configuration) {
  configuration.addModelParameter(runtime_parameters_setting, ustring(u"off"), Convert(convert_switch));
  const data2::core::Value standard(data2::core::ValueData(standard_temperature, kelvin()));
  add_temperature(configuration, reference_temperature_setting, standard);
  add_temperature(configuration, initial_temperature_setting, ustring(u"auto"));
}

void read_model_settings(const std::string& modelName) {
  TranslationManager::get().setModelData(key(), modelName, read(modelName));
}

bool keeps_runtime_parameters(const std::string& modelName) {
  return settings_of(modelName).runtimeParameters;
}

gl::core::Parameter parameter_of_setting(double block, const std::string& modelName, const std::string& setting,
                                         bool tunable) {
  const Setting& value = settings_of(modelName).temperatures.at(setting);
  const gl::core::ParameterType type = gl::core::ParameterType::number(kelvin());
  if (tunable && value.expression && !is_hidden(*value.expression, block))
    return gl::core::Parameter(*value.expression, type);
  return gl::core::Parameter(value.value, type);
}

}  // namespace kinemo::physical
