#include "embedded/block_diagram/parameter_object.hpp"

#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <utility>

namespace embedded::block_diagram {

const char* const parameter_class = "Gantrel.Parameter";

namespace {

scripting_runtime::Quantity inUnit(const cvArray_tag* value, const std::string& unit) {
  scripting_runtime::Quantity quantity = scripting_runtime::quantity_of(value);
  const scripting_runtime::Unit wanted = units2::core::parse(unit);
  if (wanted.id() == 0) return quantity;
  return {scripting_runtime::told_in(std::move(quantity), wanted, "unit"), wanted};
}

}  // namespace

cvUniquePtr parameterObject(cvUniquePtr value, const std::string& unit, bool runtime) {
  scripting_runtime::Quantity quantity = inUnit(value.get(), unit);
  cvUniquePtr object(cvCreateObject(parameter_class));
  cvSetProperty(object.get(), 0, "Unit", cvCreateString(scripting_runtime::unit_text(quantity.unit)));
  cvSetProperty(object.get(), 0, "Value", scripting_runtime::value_of(std::move(quantity)).release().release());
  cvSetProperty(object.get(), 0, "Runtime", cvCreateLogicalScalar(runtime));
  return object;
}

bool isParameterObject(const cvArray_tag* array) {
  return cvIsA(array, parameter_class);
}

cvUniquePtr parameterValue(const cvArray_tag* array) {
  if (isParameterObject(array)) {
    if (cvArray_tag* value = cvGetProperty(array, 0, "Value")) return cvUniquePtr(value);
  }
  return cvUniquePtr(cvCreateSharedCopy(array));
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
