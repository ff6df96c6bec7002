#include "domains/physical/parameter_reader.hpp"

#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <cmath>

namespace kinemo::physical {

namespace {

constexpr char group[] = "kinemo:physical:parameters";

data2::core::ValueData with_unit(const data2::core::ValueData& value, const units2::core::ExprString& unit) {
  const units2::core::AbstractExpr& own = value.unit().unit();
  std::vector<double> elements = value.elements();
  if (own.id() != 0 && !(own == unit.unit()))
    for (double& element : elements) element = units2::core::convert(element, own, unit.unit());
  return data2::core::ValueData(value.dimensions(), std::move(elements), unit);
}

std::string class_of(const cvArray_tag* value) {
  return (cvIsComplex(value) ? "complex " : "") + cvGetClassName(value);
}

std::string size_of(const data2::core::ValueData& value) {
  std::string text;
  for (const std::size_t length : value.dimensions()) text += (text.empty() ? "" : "x") + std::to_string(length);
  return text;
}

std::string joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "'" : ", '") + text + "'";
  return all;
}

}  // namespace

ParameterReader::ParameterReader(const gl::gti::BlockData& data, std::function<ustring()> describe)
    : data_(data), describe_(std::move(describe)) {}

template <class... Arguments>
void ParameterReader::fail(const char* id, const kmf::VnId& parameter, Arguments&&... arguments) const {
  kmf::throw_message(group, id, describe_(), std::string(parameter), std::forward<Arguments>(arguments)...);
}

const gl::gti::ParameterValue* ParameterReader::find(const kmf::VnId& id) const {
  const auto found = data_.parameters().find(id);
  return found == data_.parameters().end() ? nullptr : &found->second;
}

const cvArray_tag* ParameterReader::array(const kmf::VnId& id) const {
  const gl::gti::ParameterValue* value = find(id);
  if (!value) fail("MissingParameter", id);
  return value->value();
}

ustring ParameterReader::typed(const kmf::VnId& id) const {
  const gl::gti::ParameterValue* value = find(id);
  return value ? value->expression() : ustring();
}

data2::core::ValueData ParameterReader::converted(const kmf::VnId& id) const {
  const cvArray_tag* value = array(id);
  const data2::cvi::CvArrayValueConverter convert(unit_manager::get_cv_context());
  if (!convert.canConvert(value)) fail("NotNumeric", id, typed(id), class_of(value));
  return convert(value).data();
}

gl::core::Parameter ParameterReader::number(const kmf::VnId& id, const kmf::VnId& unit, const NumberRule& rule) const {
  const data2::core::ValueData value = converted(id);
  if (!value.isScalar()) fail("NotScalar", id, typed(id), size_of(value));
  units2::core::ExprString told = unitOf(id, unit);
  if (told.unit().id() == 0) told = rule.unit;
  if (!units2::core::commensurable(told.unit(), rule.unit.unit()))
    fail("UnitNotOfKind", id, told.text(), rule.unit.text());
  const units2::core::ExprString& own = value.unit();
  if (own.unit().id() != 0 && !units2::core::commensurable(own.unit(), told.unit()))
    fail("ValueUnitNotOfKind", id, own.text(), told.text(), rule.unit.text());
  const data2::core::ValueData result = with_unit(value, told);
  checkFinite(id, result.elements().front(), rule);
  return gl::core::Parameter(data2::core::Value(result), gl::core::ParameterType::number(told));
}

void ParameterReader::checkFinite(const kmf::VnId& id, double number, const NumberRule& rule) const {
  if (std::isnan(number)) fail("NotANumber", id, typed(id));
  if (std::isinf(number) && !rule.unlimited) fail("Infinite", id, typed(id));
}

gl::core::Parameter ParameterReader::numbers(const kmf::VnId& id, const kmf::VnId& unit) const {
  const data2::core::ValueData value = converted(id);
  const units2::core::ExprString& own = value.unit();
  units2::core::ExprString told = unitOf(id, unit);
  if (told.unit().id() == 0) told = own;
  if (own.unit().id() != 0 && !units2::core::commensurable(own.unit(), told.unit()))
    fail("UnitsDiffer", id, own.text(), told.text());
  return gl::core::Parameter(data2::core::Value(with_unit(value, told)), gl::core::ParameterType::number(told));
}

units2::core::ExprString ParameterReader::unitOf(const kmf::VnId& id, const kmf::VnId& unit) const {
  const std::string name = has(unit) ? kmf::ustring_to_utf8_string(text(unit)) : std::string();
  try {
    return units2::core::parse(name);
  } catch (const kmf::Exception&) {
    fail("InvalidUnit", id, name);
  }
}

ustring ParameterReader::text(const kmf::VnId& id) const {
  const cvArray_tag* value = array(id);
  if (!cvIsChar(value)) fail("NotText", id, cvGetClassName(value));
  return cvGetCharacters(value);
}

ustring ParameterReader::choice(const kmf::VnId& id, const std::vector<std::string>& choices) const {
  const ustring chosen = text(id);
  const std::string lower = kmf::lower(kmf::ustring_to_utf8_string(chosen));
  const auto found = std::find_if(choices.begin(), choices.end(),
                                  [&lower](const std::string& choice) { return kmf::lower(choice) == lower; });
  if (found == choices.end()) fail("InvalidChoice", id, chosen, joined(choices));
  return kmf::utf8_string_to_ustring(*found);
}

boost::optional<gl::core::Parameter> ParameterReader::any(const kmf::VnId& id, const kmf::VnId& unit) const {
  const cvArray_tag* value = array(id);
  if (cvIsChar(value)) return gl::core::Parameter(text(id), gl::core::ParameterType::text());
  if (data2::cvi::CvArrayValueConverter(unit_manager::get_cv_context()).canConvert(value)) return numbers(id, unit);
  return boost::none;
}

}  // namespace kinemo::physical
