#pragma once

// The function table of the runtime, and what function handles call.

#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

/// Null when there is no such function, in the table or in a package. The function lives as long as the pointer, also
/// when its name is taken away.
std::shared_ptr<const kmf::CvFunction> find_function(std::string_view name);
/// The same for a call: a method of the first input's class comes before functions.
std::shared_ptr<const kmf::CvFunction> find_function(std::string_view name, int nIn, const cvArray_tag* const* inputs);
/// Those of the table; sorted.
std::vector<std::string> function_names();

using Outputs = std::vector<cvUniquePtr>;

/// Gives `nOut` outputs, or none or one when `nOut` is 0.
/// @throws "kinemo:scripting:runtime" "TooManyOutputs" (name, count) when the function gives fewer
Outputs call_function(const kmf::CvFunction& function, std::string_view name, int nOut, int nIn, cvArray_tag** inputs);
/// @throws "kinemo:scripting:runtime" "UndefinedFunction" (name)
Outputs call_named(const std::string& name, int nOut, int nIn, cvArray_tag** inputs);

/// What the native data of a function handle is.
class Callable {
 public:
  virtual ~Callable() = default;
  /// As `call_function`.
  virtual Outputs call(int nOut, int nIn, cvArray_tag** inputs) const = 0;
};

/// A handle of a function that is looked up by name at each call.
cvUniquePtr make_named_handle(const std::string& name);
/// Calls a function handle, or the function whose name a text gives.
/// @throws "kinemo:scripting:runtime" "NotCallable" (class name) for anything else
Outputs call_value(const cvArray_tag* function, int nOut, int nIn, cvArray_tag** inputs);

}  // namespace embedded::scripting_runtime
