#pragma once

// A value during evaluation: a real number without an array around it, or an array.

#include "platform/scripting_array/scripting_array.hpp"

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

/// What an array counts as in computations: the value of a parameter object or of a value with a unit, a shared copy of
/// anything else.
cvUniquePtr plain_value(const cvArray_tag* array);
/// Whether `plain_value` gives something else than the array itself.
bool is_value_object(const cvArray_tag* array);

}  // namespace embedded::scripting_runtime
