#pragma once

// A prompt without its terminal: lines go in, and what they begin is run once it is whole. An error is told and never
// ends the prompt.

#include "embedded/scripting_runtime/statement.hpp"
#include "embedded/scripting_runtime/workspace.hpp"

#include <optional>
#include <string>

namespace embedded::scripting_runtime {

class Prompt {
 public:
  /// The workspace must outlive the prompt.
  explicit Prompt(Workspace& workspace) : workspace_(workspace) {}

  /// What to show before the next line: ">> ", or ".. " where it continues the ones before.
  const char* text() const { return pending_.empty() ? ">> " : ".. "; }
  /// Whether lines wait for more.
  bool waits() const { return !pending_.empty(); }
  /// Takes a line without its end. The user's interrupt ends what it runs.
  void enter(const std::string& line);
  /// No more lines: runs what isn't whole, which tells what is missing.
  void finish();
  /// Forgets lines that wait for more.
  void abandon();

  /// The code with which `exit` asked to end.
  const std::optional<int>& exit_code() const { return exit_code_; }
  /// Whether any input up to now had an error.
  bool failed() const { return failed_; }
  const Workspace& workspace() const { return workspace_; }

 private:
  void run(const std::string& text);
  void tell(const std::string& error);

  Workspace& workspace_;
  std::string pending_;        ///< lines that wait for more
  IncompleteText incomplete_;  ///< what they leave open
  std::optional<int> exit_code_;
  bool failed_ = false;
};

}  // namespace embedded::scripting_runtime
