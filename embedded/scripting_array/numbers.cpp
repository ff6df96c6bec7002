// Arrays of numbers: making, reading and writing them.

#include "embedded/scripting_array/classes.hpp"
#include "embedded/scripting_array/errors.hpp"
#include "embedded/scripting_array/payloads.hpp"

#include <algorithm>
#include <limits>

using namespace kmf::embedded;

namespace {

cvArray_tag* make_zeros(Shape shape, cvClassID class_id, bool is_complex) {
  if (!is_complex && shape == Shape(1, 1)) return make_number(class_id, 0);
  return make_array(class_id, new NumericPayload(std::move(shape), is_complex));
}

const NumericPayload* numbers_of(const cvArray_tag& array) {
  return array.payload && is_stored_as_numbers(class_of(array)) ? &payload_as<NumericPayload>(array) : nullptr;
}

// The array's numbers for writing, with a payload also where there was none.
NumericPayload& own_numbers(cvArray_tag& array) {
  if (!array.payload) {
    auto* const payload = new NumericPayload(shape_of(array), false);
    if (array.has_number) payload->real[0] = array.number;
    array.payload = payload;
  }
  return own_payload_as<NumericPayload>(array);
}

std::complex<double> element(const cvArray_tag& array, std::size_t index) {
  check_index(index, count_of(array));
  if (class_of(array) == cvCHAR_CLASS) return payload_as<TextPayload>(array).text[index];
  if (!is_stored_as_numbers(class_of(array))) throw_array_error("NotNumeric", cvGetClassName(&array));
  const NumericPayload* const numbers = numbers_of(array);
  if (!numbers) return array.number;
  return {numbers->real[index], numbers->complex ? numbers->imaginary[index] : 0};
}

void set_character(cvArray_tag& array, std::size_t index, double value) {
  constexpr double last = std::numeric_limits<char16_t>::max();
  const double code = value >= 0 ? std::min(value, last) : 0;  // NaN as 0, too
  own_payload_as<TextPayload>(array).text[index] = static_cast<char16_t>(code);
}

}  // namespace

cvArray_tag* cvCreateDoubleMatrix(std::size_t rows, std::size_t columns) {
  return make_zeros(Shape::matrix(rows, columns), cvDOUBLE_CLASS, false);
}

cvArray_tag* cvCreateDoubleScalar(double value) {
  return make_number(cvDOUBLE_CLASS, value);
}

cvArray_tag* cvCreateDoubleMatrix(std::size_t rows, std::size_t columns, const double* values) {
  cvUniquePtr array(cvCreateDoubleMatrix(rows, columns));
  const std::size_t count = count_of(*array);
  if (values && count > 0) std::copy(values, values + count, cvGetWritableDoubles(array.get()));
  return array.release();
}

cvArray_tag* cvCreateNumericArray(const std::vector<std::size_t>& dimensions, cvClassID classId, bool isComplex) {
  Shape shape(dimensions);
  if (classId == cvCHAR_CLASS) {
    ustring zeros(shape.count(), u'\0');
    return make_array(cvCHAR_CLASS, new TextPayload(std::move(shape), std::move(zeros)));
  }
  if (!is_stored_as_numbers(classId)) throw_array_error("NotANumericClass", class_name(classId));
  if (isComplex && classId == cvLOGICAL_CLASS) throw_array_error("ComplexNotHeld", class_name(classId));
  return make_zeros(std::move(shape), classId, isComplex);
}

cvArray_tag* cvCreateLogicalScalar(bool value) {
  return make_number(cvLOGICAL_CLASS, value ? 1 : 0);
}

double cvGetScalar(const cvArray_tag* array) {
  return cvGetElement(array, 0);
}

double cvGetElement(const cvArray_tag* array, std::size_t index) {
  return element(checked(array), index).real();
}

std::complex<double> cvGetComplexElement(const cvArray_tag* array, std::size_t index) {
  return element(checked(array), index);
}

void cvSetElement(cvArray_tag* array, std::size_t index, std::complex<double> value) {
  const cvClassID class_id = class_of(checked(array));
  check_index(index, count_of(*array));
  const bool is_text = class_id == cvCHAR_CLASS;
  if (!is_text && !is_stored_as_numbers(class_id)) throw_array_error("NotNumeric", cvGetClassName(array));
  const bool complex = value.imag() != 0;  // NaN, too
  if (complex && !is_number_class(class_id)) throw_array_error("ComplexNotHeld", class_name(class_id));
  if (is_text) return set_character(*array, index, value.real());

  const double real = converted(value.real(), class_id);
  if (!array->payload && !complex) {
    array->number = real;
    return;
  }
  NumericPayload& numbers = own_numbers(*array);
  if (complex && !numbers.complex) {
    numbers.imaginary.resize(numbers.real.size());
    numbers.complex = true;
  }
  numbers.real[index] = real;
  if (numbers.complex) numbers.imaginary[index] = converted(value.imag(), class_id);
}

const double* cvGetDoubles(const cvArray_tag* array) {
  if (class_of(checked(array)) != cvDOUBLE_CLASS) return nullptr;
  const NumericPayload* const numbers = numbers_of(*array);
  if (!numbers) return &array->number;
  return numbers->complex ? nullptr : numbers->real.data();
}

double* cvGetWritableDoubles(cvArray_tag* array) {
  if (class_of(checked(array)) != cvDOUBLE_CLASS) return nullptr;
  const NumericPayload* const numbers = numbers_of(*array);
  if (!numbers) return &array->number;
  return numbers->complex ? nullptr : own_payload_as<NumericPayload>(*array).real.data();
}

bool cvIsComplex(const cvArray_tag* array) {
  const NumericPayload* const numbers = numbers_of(checked(array));
  return numbers && numbers->complex;
}
