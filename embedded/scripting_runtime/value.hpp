#pragma once

// A value during evaluation: a real number without an array around it, or an array.

#include "platform/scripting_array/scripting_array.hpp"

#include <vector>

namespace embedded::scripting_runtime {

class Value {
 public:
  Value(double number) : number_(number), is_number_(true) {}
  /// Takes over `array`; a real double scalar becomes a plain number.
  Value(cvUniquePtr array);
  /// A shared copy of a borrowed array.
  static Value of(const cvArray_tag* array);

  /// Whether it is a real double scalar.
  bool is_number() const { return is_number_; }
  double number() const { return number_; }
  /// The value as an array, which is made where there is none yet. Borrowed.
  cvArray_tag* array() const;
  cvUniquePtr release() &&;

 private:
  double number_ = 0;
  bool is_number_ = false;
  mutable cvUniquePtr array_;
};

/// The first of the values. @throws "kinemo:scripting:runtime" "NoValue" where there is none
Value single(std::vector<Value> values);
/// The value alone.
std::vector<Value> one(Value value);

/// Whether an array is an object that counts as a value in computations: one with a unit, or a parameter object. What
/// it counts as is told in quantity.hpp.
bool is_value_object(const cvArray_tag* array);
/// Whether it is an object of the class "Gantrel.Parameter".
bool is_parameter_object(const cvArray_tag* array);
/// The "Value" of a parameter object, which may be anything; any other array as it is. Shares the contents.
cvUniquePtr parameter_contents(const cvArray_tag* array);
inline bool is_value_object(const Value& value) {
  return !value.is_number() && is_value_object(value.array());
}

}  // namespace embedded::scripting_runtime
