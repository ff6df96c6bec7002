// The examples of docs/scripting_graphs.md, run on the model that they are written for.

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "tests/support/physical_environment.hpp"

#include <fstream>
#include <iostream>
#include <sstream>

namespace kinemo::tests {
namespace {

using embedded::scripting_runtime::base_workspace;
using embedded::scripting_runtime::Scope;

std::string& shown() {
  static std::string text;
  return text;
}

std::string contents_of(const std::string& file) {
  std::ifstream in(std::string(KINEMO_SOURCE_DIR "/") + file);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

/// Runs "name = expression;" or an expression.
void run(const std::string& line) {
  const std::size_t equals = line.find(" = ");
  if (line.back() == ';' && equals != std::string::npos) {
    const std::string text = line.substr(equals + 3, line.size() - equals - 4);
    base_workspace().set(line.substr(0, equals), embedded::scripting_runtime::evaluate(text, Scope(base_workspace())));
  } else {
    embedded::scripting_runtime::evaluate_outputs(line, Scope(base_workspace()), 0);
  }
}

/// The document with the outputs that its inputs give now.
std::string with_outputs(const std::string& document) {
  std::istringstream lines(document);
  std::string result;
  bool example = false;
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind("```", 0) == 0) example = line == "```text";
    if (example && line.rfind("```", 0) != 0 && line.rfind(">> ", 0) != 0) continue;
    result += line + '\n';
    if (line.rfind(">> ", 0) != 0) continue;
    shown().clear();
    run(line.substr(3));
    result += shown();
  }
  return result;
}

class ScriptingGraphs : public PhysicalEnvironment {
 protected:
  ScriptingGraphs() {
    embedded::scripting_runtime::set_display_sink([](const std::string& text) { shown() += text + '\n'; });
  }
  ~ScriptingGraphs() override {
    base_workspace().clear();
    embedded::scripting_runtime::set_display_sink([](const std::string& text) { std::cout << text << '\n'; });
  }
};

TEST_F(ScriptingGraphs, ExamplesGiveWhatTheDocumentSays) {
  std::string model = contents_of("examples/rc_lowpass.yaml");
  model.replace(model.find("{InitializeInteractiveRuns"), 1, "{PropagateRuntimeParameters: \"on\", ");
  compile(read(model, "rc_lowpass.yaml"));
  const std::string document = contents_of("docs/scripting_graphs.md");
  EXPECT_EQ(with_outputs(document), document);
}

}  // namespace
}  // namespace kinemo::tests
