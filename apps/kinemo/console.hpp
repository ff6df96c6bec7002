// What the program says on standard error: messages, progress, times. One for the run of the program.
#pragma once

#include "apps/kinemo/options.hpp"
#include "formats/diagnostics.hpp"

#include <chrono>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kinemo::app {

class Console {
 public:
  explicit Console(const Options& options);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// Whether to colour what goes to a descriptor: the option, else NO_COLOR, else whether a terminal is there.
  bool color(int descriptor) const;
  void error(const std::string& text);
  void info(const std::string& text);     ///< not when quiet
  void verbose(const std::string& text);  ///< only when verbose
  /// Warnings and notes are left out when quiet.
  void diagnostics(const formats::DiagnosticList& list);

  /// Redraws the progress line now and then. `total` is 0 where it isn't known.
  void progress(const char* stage, std::size_t done, std::size_t total);
  /// Takes the time of what went before under a name.
  void end_stage(const std::string& name);

 private:
  using Clock = std::chrono::steady_clock;
  void clear_progress();

  const Options& options_;
  bool show_progress_;
  bool progress_drawn_ = false;
  Clock::time_point started_;
  Clock::time_point stage_started_;
  Clock::time_point progress_time_;
  std::vector<std::pair<std::string, double>> times_;
};

}  // namespace kinemo::app
