#include "embedded/class_system/call_checks.hpp"

#include "embedded/class_system/errors.hpp"

#include <algorithm>

namespace embedded::class_system {

namespace {

bool fits(const cvArray_tag* value, const ccos::COSNameID& type) {
  static const ccos::COSNameID any("any");
  return type == any || cvIsA(value, type.text());
}

void check_count(const std::string& name, const ccos::COSMethodSignature& signature, std::size_t given,
                 std::size_t objects) {
  if (given < signature.leastInputs()) {
    throw_class_error("TooFewInputs", name, std::to_string(given - std::min(given, objects)),
                      std::to_string(signature.leastInputs() - objects));
  }
  if (given > signature.numInputs() && !signature.takesFurtherInputs()) {
    throw_class_error("TooManyInputs", name, std::to_string(given - objects),
                      std::to_string(signature.numInputs() - objects));
  }
}

}  // namespace

void check_inputs(const std::string& name, const ccos::COSMethodSignature& signature, int nIn,
                  const ccos::COSValue* inputs, std::size_t objects) {
  const auto given = static_cast<std::size_t>(nIn);
  check_count(name, signature, given, objects);
  for (std::size_t i = 0; i < given; ++i) {
    if (fits(inputs[i], signature.inputType(i))) continue;
    throw_class_error("InputType", name, std::to_string(i + 1 - std::min(i, objects)),
                      std::string(signature.inputType(i).text()), cvGetClassName(inputs[i]));
  }
}

}  // namespace embedded::class_system
