#include "embedded/block_diagram/parameter_object.hpp"

#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <utility>

namespace embedded::block_diagram {

const char* const parameter_class = "Gantrel.Parameter";

namespace {

namespace sr = scripting_runtime;

bool holdsNumbers(const cvArray_tag* array) {
  return cvIsNumeric(array) || cvIsLogical(array);
}

sr::Quantity inUnit(const cvArray_tag* value, const std::string& unit) {
  sr::Quantity quantity = sr::quantity_of(value);
  const sr::Unit wanted = units2::core::parse(unit);
  if (wanted.id() == 0) return quantity;
  const cvArray_tag* numbers = quantity.numbers.array();
  if (!holdsNumbers(numbers))
    kmf::throw_message("kinemo:host:parameters", "UnitOfNoNumbers", unit, cvGetClassName(numbers));
  if (quantity.has_unit() && !units2::core::commensurable(quantity.unit, wanted))
    kmf::throw_message("kinemo:host:parameters", "UnitOfVariable", sr::unit_text(quantity.unit), unit);
  return {sr::told_in(std::move(quantity), wanted, "unit"), wanted};
}

/// A graph holds doubles, and so expressions over run-time parameters compute with doubles. They do so here, too.
sr::Value asDoubles(sr::Value value) {
  if (value.is_number() || !holdsNumbers(value.array()) || cvGetClassID(value.array()) == cvDOUBLE_CLASS) return value;
  sr::Numbers numbers = sr::numbers_of(value);
  numbers.class_id = cvDOUBLE_CLASS;
  return sr::array_of(std::move(numbers));
}

}  // namespace

cvUniquePtr parameterObject(cvUniquePtr value, const std::string& unit, bool runtime) {
  sr::Quantity quantity = inUnit(value.get(), unit);
  if (runtime) quantity.numbers = asDoubles(std::move(quantity.numbers));
  cvUniquePtr object(cvCreateObject(parameter_class));
  cvSetProperty(object.get(), 0, "Unit", cvCreateString(sr::unit_text(quantity.unit)));
  cvSetProperty(object.get(), 0, "Value", sr::value_of(std::move(quantity)).release().release());
  cvSetProperty(object.get(), 0, "Runtime", cvCreateLogicalScalar(runtime));
  return object;
}

bool isParameterObject(const cvArray_tag* array) {
  return cvIsA(array, parameter_class);
}

cvUniquePtr parameterValue(const cvArray_tag* array) {
  return sr::parameter_contents(array);
}

bool holdsRealNumbers(const cvArray_tag* array) {
  const sr::Quantity quantity = sr::quantity_of(array);
  const cvArray_tag* value = quantity.numbers.array();
  return holdsNumbers(value) && !cvIsComplex(value) && !cvIsEmpty(value);
}

std::string unitOf(const cvArray_tag* parameter) {
  if (!isParameterObject(parameter)) return {};
  const cvUniquePtr unit(cvGetProperty(parameter, 0, "Unit"));
  return unit && cvIsChar(unit.get()) ? kmf::cvarray_to_string(unit.get()) : std::string();
}

bool isRuntime(const cvArray_tag* array) {
  if (!isParameterObject(array)) return false;
  const cvUniquePtr mark(cvGetProperty(array, 0, "Runtime"));
  return mark && cvIsLogical(mark.get()) && !cvIsEmpty(mark.get()) && cvGetScalar(mark.get()) != 0.0;
}

}  // namespace embedded::block_diagram
