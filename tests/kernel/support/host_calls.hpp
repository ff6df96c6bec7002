#pragma once

#include "embedded/block_diagram/host_functions.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace kinemo::test {

/// Writes down what is asked of the host while it lives: "PortHandles" for a "get_param" of several objects, "1
/// PortHandles" for one object, "find SubSystem" for a "find_system".
class HostCalls {
 public:
  HostCalls() {
    kmf::register_corvane_function("get_param", [this](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
      const bool isOne = cvIsChar(inputs[0]) || cvGetNumberOfElements(inputs[0]) == 1;
      const std::string name = kmf::cvarray_to_string(inputs[1]);
      calls_.push_back((isOne ? "1 " : "") + name);
      const auto answer = answers_.find(name);
      if (answer == answers_.end()) return embedded::block_diagram::getParam(nOut, outputs, nIn, inputs);
      outputs[0] = cvDuplicateArray(answer->second.get());
    });
    kmf::register_corvane_function("find_system",
                                   [this](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
                                     calls_.push_back("find " + kmf::cvarray_to_string(inputs[nIn - 1]));
                                     embedded::block_diagram::findSystem(nOut, outputs, nIn, inputs);
                                   });
  }
  HostCalls(const HostCalls&) = delete;
  HostCalls& operator=(const HostCalls&) = delete;
  ~HostCalls() { embedded::block_diagram::registerHostFunctions(); }

  /// From now on a parameter reads like this, whatever the host would say. Takes over the array.
  void answer(const std::string& parameter, cvArray_tag* array) { answers_[parameter].reset(array); }
  void answer(const std::string& parameter, const std::vector<ustring>& texts) {
    answer(parameter, kmf::string_vector_to_cvarray(texts, 1));
  }
  /// The calls since the last `take`.
  std::vector<std::string> take() { return std::exchange(calls_, {}); }

 private:
  std::vector<std::string> calls_;
  std::map<std::string, cvUniquePtr> answers_;
};

}  // namespace kinemo::test
