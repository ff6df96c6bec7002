#pragma once

// The scripting runtime as its callers see it: functions called by name, workspaces reached through them, and helpers
// that move values between C++ and arrays.
//
// Functions that the kernel calls by name and an implementation provides:
//   get_param(handle(s) or path(s), name)      one array for one object, a cell array for several
//   find_system(root, 13 arguments in all)     handles as a column of doubles
//   ones, evalin, feval, data
//   imread(file)                               true colour: rows x columns x 3 of uint8; gray: rows x columns
//   verdane.internal.enableIconStyling()       logical: vector icons take line and colour of their ports
//   gl.gti.runtimeParameters(model)            the model's names that are marked as run-time
//   gl.gti.resolveRuntimeParameters(model, r)  structure with "Map" (Name, Value) and "NonValue"
//   gl.gti.internal.recursiveMaskNames(block)  cell array of names
// Script errors are kmf::Exceptions and pass through every call.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <functional>
#include <string>
#include <vector>

namespace kmf {

/// Shape of every function that the runtime can call: it writes at most `nOut` (at least one when there is one) new
/// arrays to `outputs`, which the caller owns; inputs are borrowed.
using CvFunction = std::function<void(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs)>;

/// Calls a function of the runtime by name. The outputs are new arrays that the caller releases; on an exception there
/// are none. @throws "kinemo:scripting:runtime" "UndefinedFunction" (name) and whatever the function raises.
KINEMO_PLATFORM_API void call_internal_corvane(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs,
                                               const char* name);
/// The same for code that users can see; `interruptible` lets the user's interrupt end it.
KINEMO_PLATFORM_API void call_corvane(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs, const char* name,
                                      bool interruptible);

/// Makes a function known to the runtime by name, in place of an earlier one. Modules call it when they are loaded.
KINEMO_PLATFORM_API void register_corvane_function(const std::string& name, CvFunction function);
KINEMO_PLATFORM_API void unregister_corvane_function(const std::string& name);

/// Owner of arrays for the length of a scope: releases what it holds at its end, on success and on exception alike.
class KINEMO_PLATFORM_API CvCleaner {
 public:
  CvCleaner() = default;
  CvCleaner(const CvCleaner&) = delete;
  CvCleaner& operator=(const CvCleaner&) = delete;

  cvArray_tag* createString(const std::string& utf8) { return addCvArray(cvCreateString(utf8)); }
  cvArray_tag* createString(const ustring& text) { return addCvArray(cvCreateUString(text)); }
  cvArray_tag* createScalarDouble(double value) { return addCvArray(cvCreateDoubleScalar(value)); }
  /// Takes over `array` and returns it.
  cvArray_tag* addCvArray(cvArray_tag* array) {
    cvUniquePtr owned(array);
    held_.push_back(std::move(owned));
    return array;
  }

 private:
  std::vector<cvUniquePtr> held_;
};

/// @throws "kinemo:scripting:array" "NotText" for anything but characters; UTF-8
KINEMO_PLATFORM_API std::string cvarray_to_string(const cvArray_tag* array);
KINEMO_PLATFORM_API ustring cvarray_to_ustring(const cvArray_tag* array);
/// From a cell array of texts, or from one text.
KINEMO_PLATFORM_API std::vector<std::string> cvarray_to_string_vector(const cvArray_tag* array);
KINEMO_PLATFORM_API std::vector<ustring> cvarray_to_ustring_vector(const cvArray_tag* array);
/// A cell array, one column when `dimension` is 1 and one row when it is 2.
KINEMO_PLATFORM_API cvArray_tag* string_vector_to_cvarray(const std::vector<ustring>& texts, int dimension);
/// Borrowed. @throws "kinemo:scripting:array" "NoSuchField" (field)
KINEMO_PLATFORM_API const cvArray_tag* cvarray_get_field(const cvArray_tag* array, std::size_t index,
                                                         const char* field);
/// Rows and columns of a vector of `count` elements: a column when `dimension` is 1, a row otherwise.
KINEMO_PLATFORM_API std::pair<std::size_t, std::size_t> compute_matrix_dimension(std::size_t count, int dimension);
/// @throws "kinemo:scripting:runtime" "TooFewInputs" or "TooManyInputs"
KINEMO_PLATFORM_API void check_num_inputs(int minimum, int maximum, int count);

/// True once the user has asked the running command to stop; a long call of ours looks at it now and then.
KINEMO_PLATFORM_API bool interrupt_requested();

}  // namespace kmf
