#include "embedded/block_diagram/parameter_values.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::block_diagram {

namespace {

constexpr const char* group = "kinemo:host:parameters";
constexpr std::size_t shown_width = 40;  ///< of a wrong value in a message
constexpr const char* quantity_class = "kinemo.Value";

std::string numberText(double number) {
  if (std::isnan(number)) return "NaN";
  if (std::isinf(number)) return number > 0 ? "Inf" : "-Inf";
  return expression::print_number(number);
}

std::string matrixText(const cvArray_tag* array) {
  if (cvGetNumberOfElements(array) == 1) return numberText(cvGetElement(array, 0));
  const std::size_t rows = cvGetDimensions(array)[0];
  const std::size_t columns = cvGetDimensions(array)[1];
  std::string text = "[";
  for (std::size_t row = 0; row < rows; ++row) {
    for (std::size_t column = 0; column < columns; ++column) {
      if (column != 0) text += " ";
      text += numberText(cvGetElement(array, column * rows + row));
    }
    text += row + 1 == rows ? "]" : "; ";
  }
  return text;
}

bool isWritable(const cvArray_tag* array) {
  const bool real = (cvIsNumeric(array) || cvIsLogical(array)) && !cvIsComplex(array);
  return real && !cvIsEmpty(array) && cvGetDimensions(array).size() == 2;
}

[[noreturn]] void throwWithUnit(const ParameterValue& value, const ustring& object) {
  kmf::throw_message(group, "ValueWithUnit", value.function, std::to_string(value.input), value.name, object);
}

[[noreturn]] void throwNotAValue(const ParameterValue& value) {
  if (cvIsA(value.array, quantity_class)) throwWithUnit(value, {});
  kmf::throw_message(group, "NotAValue", value.function, std::to_string(value.input), value.name,
                     scripting_runtime::inline_text(value.array, shown_width));
}

bool isRow(const cvArray_tag* characters) {
  return cvIsEmpty(characters) || cvGetDimensions(characters)[0] == 1;
}

bool hasParameter(const GTBlock& block, const std::string& name) {
  const std::vector<std::string> names = parameterNames(block);
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Number and unit of a value with a unit, for a block that has a parameter for each.
void addQuantity(ParameterTexts& texts, const GTBlock& block, const ParameterValue& value) {
  const std::string unit = value.name + "_unit";
  if (!hasParameter(block, unit)) throwWithUnit(value, block.getFullPath(true));
  const scripting_runtime::Quantity quantity = scripting_runtime::quantity_of(value.array);
  ParameterValue numbers = value;
  numbers.array = quantity.numbers.array();
  texts.emplace_back(value.name, parameterText(numbers, sortOf(block, value.name)));
  texts.emplace_back(unit, kmf::utf8_string_to_ustring(scripting_runtime::unit_text(quantity.unit)));
}

}  // namespace

ParameterSort sortOf(const GTBlock& block, const std::string& name) {
  const auto sort = [](GTPrmDesc::Type type) {
    return type == GTPrmDesc::BOOLEAN ? ParameterSort::switched : ParameterSort::expression;
  };
  const GTMask* const mask = block.host().mask.get();
  const int inMask = mask != nullptr ? mask->kind->find(name) : -1;
  if (inMask >= 0) return sort(mask->kind->parameters()[static_cast<std::size_t>(inMask)].type);
  const GTDialogInfo& dialog = block.host().dialog;
  const int inDialog = dialog.find(name);
  if (inDialog >= 0) return sort(dialog.descriptor(inDialog)->type());
  const bool flag = name == "Opaque" || name == "TreatAsAtomicUnit" || name == "Variant";
  if (flag && isSubsystem(block)) return ParameterSort::switched;
  return isIoPort(block) ? ParameterSort::expression : ParameterSort::free;
}

std::string parameterName(const cvArray_tag* array, const std::string& function, std::size_t input) {
  if (cvIsChar(array) && isRow(array)) return kmf::cvarray_to_string(array);
  kmf::throw_message(group, "NotAName", function, std::to_string(input),
                     scripting_runtime::inline_text(array, shown_width));
}

ustring parameterText(const ParameterValue& value, ParameterSort sort) {
  const cvArray_tag* const array = value.array;
  if (cvIsChar(array) && isRow(array)) return kmf::cvarray_to_ustring(array);
  if (!isWritable(array)) throwNotAValue(value);
  if (cvGetNumberOfElements(array) == 1) {
    const double number = cvGetElement(array, 0);
    const bool is_switch = sort == ParameterSort::switched && (number == 0 || number == 1);
    if (is_switch || (sort == ParameterSort::free && cvIsLogical(array))) return number != 0 ? u"on" : u"off";
  }
  return kmf::utf8_string_to_ustring(matrixText(array));
}

ParameterTexts textsFor(const GTBlock& block, const ParameterValues& values) {
  ParameterTexts texts;
  for (const ParameterValue& value : values) {
    if (cvIsA(value.array, quantity_class)) {
      addQuantity(texts, block, value);
    } else {
      texts.emplace_back(value.name, parameterText(value, sortOf(block, value.name)));
    }
  }
  return texts;
}

ParameterTexts textsForSettings(const ParameterValues& values) {
  ParameterTexts texts;
  for (const ParameterValue& value : values) {
    texts.emplace_back(value.name, parameterText(value, ParameterSort::free));
  }
  return texts;
}

}  // namespace embedded::block_diagram
