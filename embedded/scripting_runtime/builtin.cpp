#include "embedded/scripting_runtime/builtin.hpp"

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

namespace embedded::scripting_runtime {

double Call::number(std::size_t i) const {
  const cvUniquePtr value = plain_value(inputs_[i]);
  const bool numeric = cvIsNumeric(value.get()) || cvIsLogical(value.get()) || cvIsChar(value.get());
  if (!numeric || cvGetNumberOfElements(value.get()) != 1) {
    throw_runtime_error("NotScalar", std::string(name), std::to_string(i + 1));
  }
  return cvGetScalar(value.get());
}

std::vector<Builtin> builtins() {
  std::vector<Builtin> result;
  for (const auto list : {array_builtins, mathematics_builtins, reduction_builtins, class_builtins, text_builtins,
                          container_builtins, call_builtins}) {
    const std::vector<Builtin> rows = list();
    result.insert(result.end(), rows.begin(), rows.end());
  }
  return result;
}

kmf::CvFunction function_of(const Builtin& builtin) {
  return [builtin](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
    kmf::check_num_inputs(builtin.least_inputs, builtin.most_inputs, nIn);
    Call call(builtin.name, nOut, nIn, inputs);
    builtin.run(call);
    const std::size_t slots = static_cast<std::size_t>(nOut < 1 ? 1 : nOut);
    for (std::size_t i = 0; i < std::min(slots, call.outputs.size()); ++i) outputs[i] = call.outputs[i].release();
  };
}

}  // namespace embedded::scripting_runtime
