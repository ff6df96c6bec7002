#include "runtime_fixture.hpp"

#include "embedded/expression/print.hpp"

namespace embedded::scripting_runtime {

namespace {

std::string element(const cvArray_tag* array, std::size_t i) {
  if (cvIsCell(array)) return describe(cvGetCell(array, i));
  const std::complex<double> value = cvGetComplexElement(array, i);
  const std::string real = expression::print_number(value.real());
  if (!cvIsComplex(array)) return real;
  const std::string imaginary = expression::print_number(value.imag());
  return real + (imaginary.front() == '-' ? "" : "+") + imaginary + "i";
}

std::string contents(const cvArray_tag* array) {
  const auto& shape = cvGetDimensions(array);
  const std::size_t count = cvGetNumberOfElements(array);
  const bool cell = cvIsCell(array);
  if (count == 1 && !cell) return element(array, 0);
  std::string result = cell ? "{" : "[";
  if (count == 0 || shape.size() > 2) {
    for (std::size_t d = 0; d < shape.size(); ++d) result += (d == 0 ? "" : "x") + std::to_string(shape[d]);
    if (count > 0) result += ":";
  }
  for (std::size_t row = 0; row < shape[0] && count > 0; ++row) {
    if (row > 0) result += ";";
    for (std::size_t i = row; i < count; i += shape[0])
      result += (i == row ? "" : cell ? "," : " ") + element(array, i);
  }
  return result + (cell ? "}" : "]");
}

std::string structure(const cvArray_tag* array) {
  std::string result = "struct(";
  for (std::size_t i = 0; i < cvGetNumberOfElements(array); ++i) {
    if (i > 0) result += ";";
    for (const std::string& field : cvGetFieldNames(array)) {
      result += field + "=" + describe(cvGetField(array, i, field.c_str())) + " ";
    }
  }
  return result + ")";
}

/// "5 kOhm" for a value with a unit.
std::string object_text(const cvArray_tag* array) {
  if (!cvIsA(array, "kinemo.Value")) return "object " + cvGetClassName(array);
  const cvUniquePtr value(cvGetProperty(array, 0, "value"));
  const cvUniquePtr unit(cvGetProperty(array, 0, "unit"));
  return (value ? describe(value.get()) : "nothing") + " " + (unit ? kmf::cvarray_to_string(unit.get()) : "without");
}

std::string error_text(const kmf::ErrorData& error) {
  const std::string area = error.group.substr(error.group.rfind(':') + 1);
  std::string result = (area == "runtime" ? "" : area + ":") + error.id + "(";
  for (std::size_t i = 0; i < error.arguments.size(); ++i) result += (i == 0 ? "" : ", ") + error.arguments[i];
  result += ")";
  for (const kmf::ErrorData& cause : error.causes) {
    if (cause.id != "Where") result += " " + error_text(cause);
  }
  return result;
}

}  // namespace

std::string describe(const cvArray_tag* array) {
  switch (cvGetClassID(array)) {
    case cvCHAR_CLASS:
      if (cvGetDimensions(array)[0] <= 1) return "'" + kmf::cvarray_to_string(array) + "'";
      return "char" + contents(array);
    case cvSTRUCT_CLASS:
      return structure(array);
    case cvFUNCTION_CLASS:
      return cvGetFunctionText(array);
    case cvOBJECT_CLASS:
      return object_text(array);
    case cvDOUBLE_CLASS:
    case cvCELL_CLASS:
      return contents(array);
    default:
      return cvGetClassName(array) + "(" + contents(array) + ")";
  }
}

std::string RuntimeTest::value_of(const std::string& text) {
  try {
    return describe(evaluate(text, Scope(base_workspace())).get());
  } catch (const kmf::Exception& error) {
    return std::string("error: ") + error.what();
  }
}

std::string RuntimeTest::error_of(const std::string& text) {
  try {
    evaluate(text, Scope(base_workspace()));
    return "no error";
  } catch (const kmf::Exception& error) {
    return error_text(error.data());
  }
}

}  // namespace embedded::scripting_runtime
