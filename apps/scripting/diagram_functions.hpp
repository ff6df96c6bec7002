// Functions of the scripting runtime that build, edit, compile, save and close diagrams. docs/scripting_diagrams.md
// tells each of them, and so does the runtime's help.
//
// Errors have the group "kinemo:scripting:diagram", or are the host's own. After an error everything is as it was.
#pragma once

namespace kinemo::scripting {

/// Makes the functions and their help known to the runtime. An environment must exist, and outlive the use of them.
void register_diagram_functions();
/// Takes the functions and their help back.
void unregister_diagram_functions();

/// They are known while one is alive.
class RegisteredDiagramFunctions {
 public:
  RegisteredDiagramFunctions() { register_diagram_functions(); }
  RegisteredDiagramFunctions(const RegisteredDiagramFunctions&) = delete;
  RegisteredDiagramFunctions& operator=(const RegisteredDiagramFunctions&) = delete;
  ~RegisteredDiagramFunctions() { unregister_diagram_functions(); }
};

}  // namespace kinemo::scripting
