#pragma once

// Where warnings go. Handlers form a stack for the process: the one made last gets all warnings. Where there is none,
// a warning is one line on standard error.

#include "platform/foundation/export.hpp"
#include "platform/foundation/message.hpp"

#include <utility>
#include <vector>

namespace kmf::embedded {

/// Receives warnings from its construction to its end.
class KINEMO_PLATFORM_API WarningHandler {
 public:
  WarningHandler();
  virtual ~WarningHandler();
  WarningHandler(const WarningHandler&) = delete;
  WarningHandler& operator=(const WarningHandler&) = delete;

  virtual void handle(const Message& warning) = 0;
};

/// Collects the warnings that are issued while it lives.
class KINEMO_PLATFORM_API WarningCapture : public WarningHandler {
 public:
  void handle(const Message& warning) override { warnings_.push_back(warning); }

  const std::vector<Message>& warnings() const { return warnings_; }
  /// The warnings up to now, which are forgotten here.
  std::vector<Message> take() { return std::exchange(warnings_, {}); }

 private:
  std::vector<Message> warnings_;
};

}  // namespace kmf::embedded
