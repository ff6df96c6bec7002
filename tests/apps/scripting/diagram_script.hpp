// The functions of diagrams in the test's own process, with a physical domain and a folder.
#pragma once

#include "apps/scripting/diagram_functions.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/script.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"
#include "tests/support/physical_environment.hpp"
#include "tests/support/temporary_folder.hpp"

#include <fstream>
#include <string>
#include <vector>

namespace kinemo::scripting {

namespace host = embedded::block_diagram;
namespace sr = embedded::scripting_runtime;

/// Ends behind the environment, whose diagrams hold values.
struct Watched {
  /// The domain keeps some constants from its first compile on.
  Watched() { leaks.allow_kept_arrays(16); }
  test::LeakGuard leaks;
};

class DiagramScript : protected Watched, public test::PhysicalEnvironment {
 protected:
  DiagramScript() {
    register_diagram_functions();
    sr::base_workspace().set("folder", folder.path().string());
  }
  ~DiagramScript() override { unregister_diagram_functions(); }

  static void run(const std::string& text) { sr::evaluate_outputs(text, sr::Scope(sr::base_workspace()), 0); }
  /// Statements, which may assign.
  static void script(const std::string& text) { sr::run_script(text, "test", sr::base_workspace()); }
  static void run_all(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) run(text);
  }
  static cvUniquePtr value(const std::string& text) { return sr::evaluate(text, sr::Scope(sr::base_workspace())); }
  static std::string shown(const std::string& text) { return sr::display_text(value(text).get()); }
  static double number(const std::string& text) { return cvGetScalar(value(text).get()); }
  static std::string text_of(const std::string& text) { return kmf::cvarray_to_string(value(text).get()); }
  static std::string error_of(const std::string& text) {
    return test::error_of([&] { run(text); });
  }
  /// The message, without its group.
  static std::string message_of(const std::string& text) {
    const std::string told = error_of(text);
    const std::string group = "kinemo:scripting:diagram:";
    return told.compare(0, group.size(), group) == 0 ? told.substr(group.size()) : told;
  }
  std::string text_of_file(const std::string& name) const {
    std::ifstream file(folder.path() / name);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }

  test::TemporaryFolder folder;
};

}  // namespace kinemo::scripting
