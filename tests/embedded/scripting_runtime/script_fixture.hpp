#pragma once

// Scripts run in a workspace of their own, with all that they write kept.

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/script.hpp"
#include "tests/embedded/scripting_runtime/runtime_fixture.hpp"

#include <string>

namespace embedded::scripting_runtime {

class ScriptTest : public RuntimeTest {
 protected:
  ScriptTest() : limits_before_(display_limits()) {
    output().clear();
    set_display_sink([](const std::string& text) { output() += text; });
    set_error_sink([](const std::string& text) { output() += text; });
  }
  ~ScriptTest() override { display_limits() = limits_before_; }

  static std::string& output() {
    static std::string text;
    return text;
  }

  /// What the script writes, and below it its error as people read it.
  std::string shown(const std::string& script, const std::string& name = "s") {
    output().clear();
    try {
      run_script(script, name, workspace);
    } catch (const kmf::Exception& error) {
      output() += to_text(problem_of(error));
    }
    return output();
  }

  /// The value of an expression in the script's workspace.
  std::string value(const std::string& text) { return describe(evaluate(text, Scope(workspace)).get()); }

  /// Id and arguments of the error that the script raises; "" when it raises none.
  std::string fault(const std::string& script) {
    try {
      run_script(script, "s", workspace);
    } catch (const kmf::Exception& error) {
      const kmf::ErrorData data = error.data();
      std::string text = data.id + "(";
      for (std::size_t i = 0; i < data.arguments.size(); ++i) text += (i > 0 ? ", " : "") + data.arguments[i];
      return text + ")";
    }
    return {};
  }

  Workspace workspace;

 private:
  DisplayLimits limits_before_;
};

}  // namespace embedded::scripting_runtime
