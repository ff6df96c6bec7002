// Lines from a terminal: editing, history that stays from one run to the next, completion.
#pragma once

#include "embedded/scripting_runtime/completion.hpp"

#include <functional>
#include <memory>
#include <string>

namespace kinemo::app {

class LineEditor {
 public:
  /// What can stand at the end of a line.
  using Complete = std::function<embedded::scripting_runtime::Completion(const std::string& line)>;
  enum class Result {
    line,
    abandoned,  ///< Ctrl-C
    end         ///< Ctrl-D
  };

  /// The history is read from the user's state folder: $XDG_STATE_HOME/kinemo/history, ~/.local/state/kinemo/history.
  explicit LineEditor(Complete complete);
  /// Keeps the history, where it can be written.
  ~LineEditor();
  LineEditor(const LineEditor&) = delete;
  LineEditor& operator=(const LineEditor&) = delete;

  /// `line` comes without its end.
  Result read(const std::string& prompt, std::string& line);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace kinemo::app
