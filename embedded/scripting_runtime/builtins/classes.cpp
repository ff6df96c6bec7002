// Classes: conversions and questions.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <cmath>

namespace embedded::scripting_runtime {

namespace {

template <cvClassID ClassId>
void convert(Call& call) {
  Numbers x = numbers_of(call[0]);
  x.class_id = ClassId;
  call.give(array_of(std::move(x)));
}

void to_logical(Call& call) {
  Numbers x = numbers_of(call[0]);
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (std::isnan(x.re[i])) throw_runtime_error("NanAsLogical");
    x.re[i] = x.at(i) == 0.0 ? 0 : 1;
  }
  x.im.clear();
  x.class_id = cvLOGICAL_CLASS;
  call.give(array_of(std::move(x)));
}

void to_characters(Call& call) {
  if (cvIsCell(call[0])) {  // a row of text for each, filled with blanks
    const std::vector<ustring> texts = kmf::cvarray_to_ustring_vector(call[0]);
    std::size_t width = 0;
    for (const ustring& text : texts) width = std::max(width, text.size());
    Numbers result = Numbers::zeros({texts.size(), width}, cvCHAR_CLASS);
    for (std::size_t row = 0; row < texts.size(); ++row) {
      for (std::size_t i = 0; i < width; ++i) {
        result.re[i * texts.size() + row] = i < texts[row].size() ? texts[row][i] : u' ';
      }
    }
    return call.give(array_of(std::move(result)));
  }
  Numbers x = numbers_of(call[0]);
  x.im.clear();
  x.class_id = cvCHAR_CLASS;
  call.give(array_of(std::move(x)));
}

template <bool (*Test)(const cvArray_tag*)>
void ask(Call& call) {
  call.give(Test(call[0]));
}

bool is_real(const cvArray_tag* array) {
  return holds_numbers(array) && !cvIsComplex(array);
}
bool is_handle(const cvArray_tag* array) {
  return cvGetClassID(array) == cvFUNCTION_CLASS;
}
bool is_object(const cvArray_tag* array) {
  return cvGetClassID(array) == cvOBJECT_CLASS;
}
bool is_scalar(const cvArray_tag* array) {
  return cvGetNumberOfElements(array) == 1;
}
bool is_float(const cvArray_tag* array) {
  return cvGetClassID(array) == cvDOUBLE_CLASS || cvGetClassID(array) == cvSINGLE_CLASS;
}

void class_of(Call& call) {
  call.give(cvGetClassName(call[0]));
}

void is_a(Call& call) {
  const std::string wanted = call.text(1);
  bool result = cvIsA(call[0], wanted.c_str());
  if (wanted == "numeric") result = cvIsNumeric(call[0]);
  if (wanted == "float") result = is_float(call[0]);
  if (wanted == "integer") result = is_integer_class(cvGetClassID(call[0]));
  call.give(result);
}

void is_equal(Call& call) {
  bool result = true;
  for (std::size_t i = 1; i < call.size() && result; ++i) {
    if (!holds_numbers(call[0]) || !holds_numbers(call[i])) {
      result = cvAreMatricesEqual(call[0], call[i]);
      continue;
    }
    Numbers x = numbers_of(call[0]);  // numbers of any classes are compared by value
    Numbers y = numbers_of(call[i]);
    result = x.shape == y.shape;
    for (std::size_t k = 0; k < x.size() && result; ++k) result = x.at(k) == y.at(k);
  }
  call.give(result);
}

}  // namespace

std::vector<Builtin> class_builtins() {
  return {{"double", 1, 1, convert<cvDOUBLE_CLASS>},
          {"single", 1, 1, convert<cvSINGLE_CLASS>},
          {"int8", 1, 1, convert<cvINT8_CLASS>},
          {"uint8", 1, 1, convert<cvUINT8_CLASS>},
          {"int16", 1, 1, convert<cvINT16_CLASS>},
          {"uint16", 1, 1, convert<cvUINT16_CLASS>},
          {"int32", 1, 1, convert<cvINT32_CLASS>},
          {"uint32", 1, 1, convert<cvUINT32_CLASS>},
          {"int64", 1, 1, convert<cvINT64_CLASS>},
          {"uint64", 1, 1, convert<cvUINT64_CLASS>},
          {"logical", 1, 1, to_logical},
          {"char", 1, 1, to_characters},
          {"isreal", 1, 1, ask<is_real>},
          {"iscell", 1, 1, ask<cvIsCell>},
          {"ischar", 1, 1, ask<cvIsChar>},
          {"isnumeric", 1, 1, ask<cvIsNumeric>},
          {"islogical", 1, 1, ask<cvIsLogical>},
          {"isstruct", 1, 1, ask<cvIsStruct>},
          {"isobject", 1, 1, ask<is_object>},
          {"isscalar", 1, 1, ask<is_scalar>},
          {"isfloat", 1, 1, ask<is_float>},
          {"is_function_handle", 1, 1, ask<is_handle>},
          {"class", 1, 1, class_of},
          {"isa", 2, 2, is_a},
          {"isequal", 2, any_number, is_equal}};
}

}  // namespace embedded::scripting_runtime
