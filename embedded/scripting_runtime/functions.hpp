#pragma once

// The function table of the runtime, and what function handles call.

#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

/// Null when there is no such function. The function lives as long as the pointer, also when its name is taken away.
std::shared_ptr<const kmf::CvFunction> find_function(std::string_view name);
/// Sorted.
std::vector<std::string> function_names();

/// Calls with the rules of `kmf::call_internal_corvane`: the outputs are all there, or there is an exception and none.
/// @throws "kinemo:scripting:runtime" "TooManyOutputs" (name, count) when the function gives fewer than `nOut`
void call_checked(const kmf::CvFunction& function, std::string_view name, int nOut, cvArray_tag** outputs, int nIn,
                  cvArray_tag** inputs);

/// What the native data of a function handle is.
class Callable {
 public:
  virtual ~Callable() = default;
  /// As a `kmf::CvFunction`.
  virtual void call(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) const = 0;
};

/// A handle of a function that is looked up by name at each call.
cvUniquePtr make_named_handle(const std::string& name);
/// Calls a function handle, or the function whose name a text gives.
/// @throws "kinemo:scripting:runtime" "NotCallable" (class name) for anything else
void call_value(const cvArray_tag* function, int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs);

}  // namespace embedded::scripting_runtime
