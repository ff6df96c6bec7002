#include "embedded/scripting_runtime/builtin.hpp"

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/unit_functions.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

double Call::number(std::size_t i) const {
  const cvArray_tag* value = inputs_[i];
  const bool numeric = cvIsNumeric(value) || cvIsLogical(value) || cvIsChar(value);
  if (!numeric || cvGetNumberOfElements(value) != 1) {
    throw_runtime_error("NotScalar", std::string(name), std::to_string(i + 1));
  }
  return cvGetScalar(value);
}

cvUniquePtr text_column(const std::vector<std::string>& texts) {
  cvUniquePtr cells(cvCreateCellMatrix(texts.size(), 1));
  for (std::size_t i = 0; i < texts.size(); ++i) cvSetCell(cells.get(), i, cvCreateString(texts[i]));
  return cells;
}

std::vector<Builtin> builtins() {
  std::vector<Builtin> result;
  for (const auto list : {array_builtins, mathematics_builtins, reduction_builtins, class_builtins, text_builtins,
                          number_text_builtins, container_builtins, call_builtins, value_builtins, vector_builtins,
                          special_function_builtins, interpolation_builtins, image_builtins, set_builtins,
                          search_builtins, arrangement_builtins, session_builtins, help_builtins}) {
    const std::vector<Builtin> rows = list();
    result.insert(result.end(), rows.begin(), rows.end());
  }
  return result;
}

kmf::CvFunction function_of(const Builtin& builtin) {
  return [builtin](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
    kmf::check_num_inputs(builtin.least_inputs, builtin.most_inputs, nIn);
    Call call(builtin.name, nOut, nIn, inputs);
    const bool with_units =
        std::any_of(inputs, inputs + nIn, [](const cvArray_tag* input) { return is_value_object(input); });
    (with_units ? run_with_units(builtin, call) : builtin.run(call));
    const std::size_t slots = static_cast<std::size_t>(nOut < 1 ? 1 : nOut);
    for (std::size_t i = 0; i < std::min(slots, call.outputs.size()); ++i) outputs[i] = call.outputs[i].release();
  };
}

}  // namespace embedded::scripting_runtime
