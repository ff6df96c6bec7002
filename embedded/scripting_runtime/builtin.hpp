#pragma once

// How the built-in functions are declared: rows of name, numbers of inputs and body, listed by area.

#include "embedded/scripting_runtime/value.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace embedded::scripting_runtime {

/// One call of a built-in function. Inputs are borrowed, outputs are owned until the call's end.
class Call {
 public:
  Call(const char* its_name, int nOut, int nIn, cvArray_tag** inputs)
      : name(its_name), wanted(nOut), inputs_(inputs), count_(static_cast<std::size_t>(nIn)) {}

  std::size_t size() const { return count_; }
  const cvArray_tag* operator[](std::size_t i) const { return inputs_[i]; }
  cvArray_tag** inputs() const { return inputs_; }
  /// A single number. @throws "NotScalar" (function, input)
  double number(std::size_t i) const;
  /// @throws "kinemo:scripting:array" "NotText"
  std::string text(std::size_t i) const { return kmf::cvarray_to_string(inputs_[i]); }

  void give(cvUniquePtr output) { outputs.push_back(std::move(output)); }
  void give(double number) { give(cvUniquePtr(cvCreateDoubleScalar(number))); }
  void give(bool value) { give(cvUniquePtr(cvCreateLogicalScalar(value))); }
  void give(const std::string& utf8) { give(cvUniquePtr(cvCreateString(utf8))); }

  const char* name;
  int wanted;  ///< number of outputs that the caller takes
  std::vector<cvUniquePtr> outputs;

 private:
  cvArray_tag** inputs_;
  std::size_t count_;
};

/// A cell array of one column.
cvUniquePtr text_column(const std::vector<std::string>& texts);

constexpr int any_number = 1 << 20;

struct Builtin {
  const char* name;
  int least_inputs;
  int most_inputs;
  void (*run)(Call&);
};

/// All of them.
std::vector<Builtin> builtins();
kmf::CvFunction function_of(const Builtin& builtin);

// One list for each area, in a file of its own.
std::vector<Builtin> array_builtins();             // ones zeros eye size numel reshape repmat linspace …
std::vector<Builtin> mathematics_builtins();       // sin sqrt floor mod power …
std::vector<Builtin> reduction_builtins();         // sum max any find sort unique …
std::vector<Builtin> class_builtins();             // double int8 class isa isreal …
std::vector<Builtin> text_builtins();              // strcat strrep disp …
std::vector<Builtin> number_text_builtins();       // num2str mat2str
std::vector<Builtin> container_builtins();         // struct cell fieldnames …
std::vector<Builtin> call_builtins();              // feval evalin cellfun error …
std::vector<Builtin> value_builtins();             // kinemo.Value
std::vector<Builtin> vector_builtins();            // diag diff dot cross det inv norm
std::vector<Builtin> special_function_builtins();  // sind expm1 factorial …
std::vector<Builtin> interpolation_builtins();     // interp1
std::vector<Builtin> image_builtins();             // imread
std::vector<Builtin> set_builtins();               // ismember union …
std::vector<Builtin> search_builtins();            // strfind startsWith str2double …
std::vector<Builtin> arrangement_builtins();       // horzcat fliplr isrow …
std::vector<Builtin> session_builtins();           // clear who run exit tic assert …
std::vector<Builtin> help_builtins();              // help methods

}  // namespace embedded::scripting_runtime
