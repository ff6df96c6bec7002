#include "embedded/scripting_runtime/numbers.hpp"

#include "embedded/scripting_runtime/quantity.hpp"

#include <algorithm>
#include <string_view>

namespace embedded::scripting_runtime {

namespace {

Numbers read_numbers(const cvArray_tag* array) {
  if (!holds_numbers(array)) throw_runtime_error("NotNumeric", cvGetClassName(array));
  Numbers result;
  result.shape = cvGetDimensions(array);
  result.class_id = cvGetClassID(array);
  const std::size_t count = cvGetNumberOfElements(array);
  if (const double* doubles = cvGetDoubles(array)) {
    result.re.assign(doubles, doubles + count);
    return result;
  }
  result.re.resize(count);
  if (cvIsComplex(array)) result.im.resize(count);
  for (std::size_t i = 0; i < count; ++i) {
    const Complex value = cvGetComplexElement(array, i);
    result.re[i] = value.real();
    if (!result.im.empty()) result.im[i] = value.imag();
  }
  return result;
}

}  // namespace

bool holds_numbers(const cvArray_tag* array) {
  return cvIsNumeric(array) || cvIsLogical(array) || cvIsChar(array);
}

Numbers Numbers::zeros(Shape shape, cvClassID class_id, bool complex) {
  const std::size_t count = checked_count(shape);
  Numbers result{std::move(shape), class_id, std::vector<double>(count), {}};
  if (complex) result.im.resize(count);
  return result;
}

Numbers Numbers::row(std::vector<double> values) {
  Numbers result;
  result.shape = {1, values.size()};
  result.re = std::move(values);
  return result;
}

Numbers numbers_of(const cvArray_tag* array) {
  if (!is_value_object(array)) return read_numbers(array);
  Quantity quantity = quantity_of(array);
  if (!units2::core::is_dimensionless(quantity.unit)) throw_runtime_error("UnitNotExpected", unit_text(quantity.unit));
  return numbers_of(dimensionless_numbers(std::move(quantity), {}));
}

Numbers numbers_of(const Value& value) {
  return value.is_number() ? Numbers::scalar(value.number()) : numbers_of(value.array());
}

cvUniquePtr array_of(Numbers numbers) {
  const bool complex = std::any_of(numbers.im.begin(), numbers.im.end(), [](double part) { return part != 0; });
  cvUniquePtr result(cvCreateNumericArray(numbers.shape, numbers.class_id, complex));
  if (double* doubles = cvGetWritableDoubles(result.get())) {
    std::copy(numbers.re.begin(), numbers.re.end(), doubles);
    return result;
  }
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    cvSetElement(result.get(), i, complex ? numbers.at(i) : Complex(numbers.re[i]));
  }
  return result;
}

bool is_true(const Value& value) {
  if (value.is_number()) return value.number() != 0;
  const Numbers numbers =
      is_value_object(value) ? numbers_of(condition_numbers(quantity_of(value), "&& ||")) : numbers_of(value);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (numbers.at(i) == 0.0) return false;
  }
  return numbers.size() > 0;
}

bool is_integer_class(cvClassID class_id) {
  return class_id >= cvINT8_CLASS && class_id <= cvUINT64_CLASS;
}

const char* class_name_of(cvClassID class_id) {
  constexpr const char* names[] = {"unknown", "cell",  "struct", "logical", "char",  "unknown", "double", "single",
                                   "int8",    "uint8", "int16",  "uint16",  "int32", "uint32",  "int64",  "uint64"};
  return class_id <= cvUINT64_CLASS ? names[class_id] : "unknown";
}

cvClassID arithmetic_class(cvClassID a, cvClassID b) {
  if (is_integer_class(a) && is_integer_class(b) && a != b) {
    throw_runtime_error("MixedIntegers", std::string(class_name_of(a)), std::string(class_name_of(b)));
  }
  if (is_integer_class(a)) return a;
  if (is_integer_class(b)) return b;
  return a == cvSINGLE_CLASS || b == cvSINGLE_CLASS ? cvSINGLE_CLASS : cvDOUBLE_CLASS;
}

Shape common_shape(const Shape& a, const Shape& b, std::string_view operation) {
  if (a == b) return a;
  Shape result(std::max(a.size(), b.size()));
  for (std::size_t d = 0; d < result.size(); ++d) {
    const std::size_t in_a = d < a.size() ? a[d] : 1;
    const std::size_t in_b = d < b.size() ? b[d] : 1;
    if (in_a != in_b && in_a != 1 && in_b != 1) {
      throw_runtime_error("SizeMismatch", std::string(operation), shape_text(a), shape_text(b));
    }
    result[d] = in_a == 1 ? in_b : in_a;
  }
  return result;
}

}  // namespace embedded::scripting_runtime
