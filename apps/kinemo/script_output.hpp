// Where scripts write to: standard output in large pieces, which go out before anything is told on standard error.
#pragma once

#include "apps/kinemo/output.hpp"
#include "embedded/foundation/warnings.hpp"

namespace kinemo::app {

/// Takes what scripts and warnings write, from its construction to its end. There is one at a time. Writing raises
/// ClosedPipe and UsageError as `Output` does.
class ScriptOutput : public kmf::embedded::WarningHandler {
 public:
  /// `at_once`: nothing waits, since somebody reads along.
  explicit ScriptOutput(bool at_once);
  ~ScriptOutput() override;

  void handle(const kmf::Message& warning) override;
  /// Writes what waits.
  void flush() { output_.commit(); }

 private:
  void write(const std::string& text);

  Output output_;
  bool at_once_;
};

}  // namespace kinemo::app
