#include "formats/diagram/value_text.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/expression/print.hpp"
#include "embedded/expression/walk.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <cmath>
#include <functional>
#include <vector>

namespace kinemo::formats::diagram {

namespace {

namespace sr = embedded::scripting_runtime;

/// What the language can't say about a value.
struct Unsayable {
  std::string reason;
};

constexpr std::size_t deepest = 100;  ///< containers in containers

class ValueWriter {
 public:
  std::string text(const cvArray_tag* array);
  std::set<std::string> functions;

 private:
  std::string numbers(const cvArray_tag* array);
  std::string characters(const cvArray_tag* array);
  std::string cells(const cvArray_tag* array);
  std::string structure(const cvArray_tag* array);
  std::string quantity(const cvArray_tag* array);
  std::string function(const cvArray_tag* array);
  std::string number(const cvArray_tag* array, std::size_t i) const;
  /// Elements by rows between brackets; an array of another shape is one row that is reshaped.
  std::string shaped(const cvArray_tag* array, const std::string& open, const std::string& close,
                     const std::function<std::string(std::size_t)>& element);
  std::string call(const std::string& function, const std::string& arguments) {
    functions.insert(function);
    return function + "(" + arguments + ")";
  }

  std::size_t depth_ = 0;
};

bool is_matrix(const cvArray_tag* array) {
  return cvGetDimensions(array).size() == 2 && !cvIsEmpty(array);
}

/// Texts of one line without characters that only escapes could show.
bool is_simple_text(const cvArray_tag* array) {
  const std::vector<std::size_t>& shape = cvGetDimensions(array);
  const bool row = shape.size() == 2 && (shape[0] == 1 || cvIsEmpty(array));
  const bool plain = row && (shape[0] == 0 ? shape[1] == 0 : shape[1] != 0);
  const ustring& text = cvGetCharacters(array);
  return plain && std::all_of(text.begin(), text.end(),
                              [](char16_t c) { return c >= 0x20 && c != 0x7F && (c < 0xD800 || c > 0xDFFF); });
}

std::string sizes(const cvArray_tag* array) {
  std::string text;
  for (const std::size_t size : cvGetDimensions(array)) text += (text.empty() ? "" : ", ") + std::to_string(size);
  return text;
}

std::string in_quotes(const ustring& text) {
  return embedded::expression::print_text(kmf::ustring_to_utf8_string(text));
}

std::string finite_or_not(double value) {
  // Names can be taken by variables, so that not even NaN is told by one.
  return std::isnan(value) ? "(1e999-1e999)" : embedded::expression::print_number(value);
}

std::string ValueWriter::number(const cvArray_tag* array, std::size_t i) const {
  if (!cvIsComplex(array)) return finite_or_not(cvGetElement(array, i));
  const std::complex<double> value = cvGetComplexElement(array, i);
  if (std::isnan(value.imag()) || std::isinf(value.imag())) {
    throw Unsayable{"a complex number without a finite imaginary part"};
  }
  const std::string imaginary = embedded::expression::print_number(value.imag());
  return finite_or_not(value.real()) + (imaginary[0] == '-' ? "" : "+") + imaginary + "i";
}

std::string ValueWriter::shaped(const cvArray_tag* array, const std::string& open, const std::string& close,
                                const std::function<std::string(std::size_t)>& element) {
  const bool matrix = is_matrix(array);
  const std::size_t rows = matrix ? cvGetDimensions(array)[0] : 1;
  const std::size_t columns = cvGetNumberOfElements(array) / rows;
  std::string text = open;
  for (std::size_t row = 0; row < rows; ++row) {
    if (row != 0) text += "; ";
    for (std::size_t column = 0; column < columns; ++column) {
      if (column != 0) text += ", ";
      text += element(column * rows + row);
    }
  }
  text += close;
  return matrix ? text : call("reshape", text + ", [" + sizes(array) + "]");
}

std::string ValueWriter::numbers(const cvArray_tag* array) {
  const cvClassID id = cvGetClassID(array);
  const bool scalar = cvGetNumberOfElements(array) == 1 && cvGetDimensions(array).size() == 2;
  std::string text;
  if (scalar) {
    text = number(array, 0);
  } else if (cvGetDimensions(array) == std::vector<std::size_t>{0, 0}) {
    text = "[]";
  } else {
    text = shaped(array, "[", "]", [&](std::size_t i) { return number(array, i); });
  }
  return id == cvDOUBLE_CLASS ? text : call(cvGetClassName(array), text);
}

std::string ValueWriter::characters(const cvArray_tag* array) {
  if (is_simple_text(array)) return in_quotes(cvGetCharacters(array));
  const ustring& text = cvGetCharacters(array);
  return call("char", shaped(array, "[", "]", [&](std::size_t i) { return std::to_string(text[i]); }));
}

std::string ValueWriter::cells(const cvArray_tag* array) {
  if (cvGetDimensions(array) == std::vector<std::size_t>{0, 0}) return "{}";
  if (cvIsEmpty(array) && cvGetDimensions(array).size() == 2) return call("cell", sizes(array));
  return shaped(array, "{", "}", [&](std::size_t i) { return text(cvGetCell(array, i)); });
}

std::string ValueWriter::structure(const cvArray_tag* array) {
  const std::vector<std::string> fields = cvGetFieldNames(array);
  const std::vector<std::size_t>& shape = cvGetDimensions(array);
  if (shape.size() > 2) throw Unsayable{"a structure array of more than two dimensions"};
  if (fields.empty() && shape != std::vector<std::size_t>{1, 1}) throw Unsayable{"a structure array without fields"};
  std::string arguments;
  for (std::size_t field = 0; field < fields.size(); ++field) {
    // Values stand in cells, so that a value that is a cell array itself isn't spread over elements.
    std::string values;
    if (cvIsEmpty(array)) {
      values = shape == std::vector<std::size_t>{0, 0} ? "{}" : call("cell", sizes(array));
    } else {
      const int number = static_cast<int>(field);
      values = shaped(array, "{", "}", [&](std::size_t i) { return text(cvGetFieldByNumber(array, i, number)); });
    }
    arguments += (field == 0 ? "'" : ", '") + fields[field] + "', " + values;
  }
  return call("struct", arguments);
}

std::string ValueWriter::quantity(const cvArray_tag* array) {
  const sr::Quantity value = sr::quantity_of(array);
  if (!value.has_unit() || !cvIsA(array, "kinemo.Value")) {
    throw Unsayable{"an object of the class '" + cvGetClassName(array) + "'"};
  }
  const std::string numbers = text(value.numbers.array());
  return call("kinemo.Value", numbers + ", " + in_quotes(kmf::utf8_string_to_ustring(sr::unit_text(value.unit))));
}

/// A function keeps what its free names were when it was made; only names of functions mean the same later.
std::string ValueWriter::function(const cvArray_tag* array) {
  const std::string text = cvGetFunctionText(array);
  const embedded::expression::ParseResult parsed = embedded::expression::parse_cached(text);
  if (!parsed) throw Unsayable{"the function " + text};
  for (const std::string& name : embedded::expression::used_names(*parsed.tree, true)) {
    const std::string first = name.substr(0, name.find('.'));
    if (!sr::find_function(first)) throw Unsayable{"a function that keeps the value of '" + name + "': " + text};
    functions.insert(first);
  }
  return text;
}

std::string ValueWriter::text(const cvArray_tag* array) {
  struct Depth {
    std::size_t& value;
    explicit Depth(std::size_t& depth) : value(depth) {
      if (++value > deepest) throw Unsayable{"containers more than " + std::to_string(deepest) + " levels deep"};
    }
    ~Depth() { --value; }
  } const depth(depth_);
  switch (cvGetClassID(array)) {
    case cvCELL_CLASS:
      return cells(array);
    case cvSTRUCT_CLASS:
      return structure(array);
    case cvCHAR_CLASS:
      return characters(array);
    case cvFUNCTION_CLASS:
      return function(array);
    case cvOBJECT_CLASS:
    case cvUNKNOWN_CLASS:
      return quantity(array);
    default:
      return numbers(array);
  }
}

}  // namespace

std::optional<ValueText> value_text(const cvArray_tag* array, std::string& reason) {
  ValueWriter writer;
  try {
    std::string text = writer.text(array);
    return ValueText{std::move(text), std::move(writer.functions)};
  } catch (const Unsayable& fault) {
    reason = fault.reason;
    return std::nullopt;
  }
}

}  // namespace kinemo::formats::diagram
