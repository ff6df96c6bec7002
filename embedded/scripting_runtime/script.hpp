#pragma once

// Running scripts: statements one after the other in a workspace, with results displayed unless a semicolon ends them.
//
// An error of a statement leaves what ran before as it is. It gets a cause "InScript" (name, line, column, excerpt) for
// each script that was running, from the innermost on; `problem_of` makes them one place and notes.

#include "embedded/scripting_runtime/statement.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

/// Runs all of a text; nothing of it where it has an error of form. `name` is how errors name it; "" for a prompt's.
/// @throws kmf::Exception, ExitRequest
void run_script(std::string_view text, const std::string& name, Workspace& workspace);
/// @throws "kinemo:scripting:runtime" "CannotReadScript" (file) and as `run_script`
void run_script_file(const std::string& file, Workspace& workspace);
/// One statement. Errors have the cause "Where", but not "InScript". Functions that it makes are those of the file,
/// which is null at a prompt.
void run_statement(const Statement& statement, Workspace& workspace,
                   const std::shared_ptr<const std::string>& file = nullptr);

/// The workspace of the innermost script that runs; the base workspace where none does.
Workspace& running_workspace();

/// What `exit` raises: the script is to end, and the program with this code. "kinemo:scripting:runtime" "ExitRequest"
/// (code)
class ExitRequest : public kmf::MessageException {
 public:
  explicit ExitRequest(int code);

  int code() const { return code_; }
  std::shared_ptr<const kmf::Exception> clone() const override { return std::make_shared<ExitRequest>(*this); }
  [[noreturn]] void raise() const override { throw ExitRequest(*this); }

 private:
  int code_;
};

/// An error of a script as people and programs read it.
struct Problem {
  std::string file;  ///< empty at a prompt
  std::size_t line = 0;
  std::size_t column = 0;
  std::string text;
  std::string rule;     ///< "group:id", or the identifier that the script's own `error` gave
  std::string excerpt;  ///< the line, and below it a caret at the place
  std::vector<std::string> notes;
};
Problem problem_of(const kmf::Exception& error);
/// `file:line:col: error: text [rule]`, below it the excerpt and the notes, indented. Ends with a line end.
std::string to_text(const Problem& problem);

}  // namespace embedded::scripting_runtime
