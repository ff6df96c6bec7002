#include "domains/physical/temperature_setting.hpp"

#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/optional.hpp>

#include <cmath>
#include <iomanip>
#include <sstream>

namespace kinemo::physical {

namespace {

constexpr char group[] = "kinemo:physical:settings";

std::string text_of_number(double number) {
  std::ostringstream text;
  text << std::setprecision(12) << number;
  return text.str();
}

/// The variable that a text names, if it is nothing but its name.
boost::optional<ustring> named_variable(const ustring& text) {
  const auto expression = data2::cvi::CorvaneParser()(kmf::ustring_to_utf8_string(text));
  if (!expression) return boost::none;
  std::ostringstream plain;
  data2::core::out(plain, 0, 0, *expression);
  if (!kmf::VnId::isLegal(plain.str())) return boost::none;
  return kmf::utf8_string_to_ustring(plain.str());
}

ustring text_of(const ParameterVariant& value) {
  const ustring* text = boost::get<ustring>(&value);
  return text ? *text : ustring();
}

/// The unit of a variable that has one; the evaluator gives its number alone.
units2::core::ExprString unit_of_variable(const ustring& text, const gl::gti::GtParameterEvaluator& evaluate) {
  const boost::optional<ustring> name = named_variable(text);
  if (!name || text_of(evaluate(u"class(" + *name + u")")) != u"Gantrel.Parameter") return {};
  return units2::core::parse(kmf::ustring_to_utf8_string(text_of(evaluate(*name + u".Unit"))));
}

std::string size_of(const data2::core::ValueData& value) {
  std::string text;
  for (const std::size_t length : value.dimensions()) text += (text.empty() ? "" : "x") + std::to_string(length);
  return text;
}

}  // namespace

ustring setting_text(const std::string& setting, const cvUniquePtr& value) {
  if (!cvIsChar(value.get())) kmf::throw_message(group, "NotText", setting, cvGetClassName(value.get()));
  return cvGetCharacters(value.get());
}

data2::core::Value temperature_of(const std::string& setting, const ustring& text,
                                  const gl::gti::GtParameterEvaluator& evaluate) {
  static const units2::core::AbstractExpr kelvin = units2::core::parse("K");
  const ParameterVariant result = evaluate(text);
  const auto* value = boost::get<data2::core::Value>(&result);
  if (!value) kmf::throw_message(group, "NotNumeric", setting, text);
  if (!value->data().isScalar()) kmf::throw_message(group, "NotScalar", setting, text, size_of(value->data()));
  units2::core::ExprString unit = value->data().unit();
  if (unit.unit().id() == 0) unit = unit_of_variable(text, evaluate);
  if (unit.unit().id() == 0) unit = kelvin;
  if (!units2::core::commensurable(unit.unit(), kelvin))
    kmf::throw_message(group, "NotATemperature", setting, text, unit.text());
  const double temperature = units2::core::convert(value->data().elements().front(), unit.unit(), kelvin);
  if (!std::isfinite(temperature) || temperature < 0)
    kmf::throw_message(group, "NoSuchTemperature", setting, text, text_of_number(temperature));
  return data2::core::Value(data2::core::ValueData(temperature, kelvin));
}

}  // namespace kinemo::physical
