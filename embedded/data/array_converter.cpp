#include "embedded/units/context.hpp"
#include "platform/data/data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

namespace data2::cvi {

namespace {

constexpr const char* value_class = "kinemo.Value";

bool is_real_numeric(const cvArray_tag* array) {
  return array != nullptr && (cvIsNumeric(array) || cvIsLogical(array)) && !cvIsComplex(array);
}

bool is_value_object(const cvArray_tag* array) {
  return array != nullptr && cvGetClassID(array) == cvOBJECT_CLASS && cvIsA(array, value_class) &&
         cvGetNumberOfElements(array) == 1;
}

/// The parts of an object of the class of values.
struct ValueObject {
  explicit ValueObject(const cvArray_tag* array)
      : value(cvGetProperty(array, 0, "value")), unit(cvGetProperty(array, 0, "unit")) {}
  bool isComplete() const {
    return is_real_numeric(value.get()) && (unit == nullptr || cvIsChar(unit.get()) || cvIsEmpty(unit.get()));
  }
  cvUniquePtr value;
  cvUniquePtr unit;  ///< without it, or when it is empty, the value has no unit
};

core::Value numbers_of(const cvArray_tag* array, const units2::core::ExprString& unit) {
  const std::size_t count = cvGetNumberOfElements(array);
  std::vector<double> elements;
  if (const double* numbers = cvGetDoubles(array)) {
    elements.assign(numbers, numbers + count);
  } else {
    elements.reserve(count);
    for (std::size_t i = 0; i < count; ++i) elements.push_back(cvGetElement(array, i));
  }
  return core::Value(core::ValueData(cvGetDimensions(array), std::move(elements), unit));
}

[[noreturn]] void refuse(const cvArray_tag* array) {
  const std::string kind = array != nullptr && cvIsComplex(array) ? "complex " : "";
  const std::string className = array == nullptr ? std::string("null") : kind + cvGetClassName(array);
  kmf::throw_message("kinemo:data:cvi", "CannotConvert", className);
}

}  // namespace

bool CvArrayValueConverter::canConvert(const cvArray_tag* array) const {
  return is_real_numeric(array) || (is_value_object(array) && ValueObject(array).isComplete());
}

core::Value CvArrayValueConverter::operator()(const cvArray_tag* array) const {
  if (is_real_numeric(array)) return numbers_of(array, {});
  if (!is_value_object(array)) refuse(array);
  const ValueObject object(array);
  if (!object.isComplete()) refuse(array);
  units2::core::ExprString unit;
  if (object.unit && cvIsChar(object.unit.get())) {
    unit = context_->parse(kmf::ustring_to_utf8_string(cvGetCharacters(object.unit.get())));
  }
  return numbers_of(object.value.get(), unit);
}

}  // namespace data2::cvi
