#pragma once

// A fixture that leaves the process as it found it, and fails on any array left alive and any unexpected warning.

#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace embedded::scripting_runtime {

class RuntimeTest : public testing::Test {
 protected:
  RuntimeTest() : alive_before_(cvLiveArrayCount()), limits_before_(limits()) {}
  ~RuntimeTest() override {
    base_workspace().clear();
    request_interrupt(false);
    limits() = limits_before_;
    EXPECT_EQ(cvLiveArrayCount(), alive_before_) << "arrays left alive";
  }

  /// The value in the base workspace, written as an expression with its class where that isn't double.
  static std::string value_of(const std::string& text);
  /// "group:id(arguments)" of the error and of its causes but the places; "no error" when there is none.
  static std::string error_of(const std::string& text);

 private:
  std::size_t alive_before_;
  Limits limits_before_;
};

/// An array as a text that shows class, shape and contents: "[1 2;3 4]", "int8(3)", "'abc'", "{1,'a'}",
/// "5 kOhm".
std::string describe(const cvArray_tag* array);

struct ValueCase {
  const char* text;
  const char* expected;
};

}  // namespace embedded::scripting_runtime
