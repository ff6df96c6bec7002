#pragma once

#include "platform/foundation/export.hpp"

/// Switches the handling of the user's interrupt on or off for a scope; the innermost one counts. While it is off no call
/// is ended by an interrupt and `kmf::interrupt_requested` is false. A request that came meanwhile counts afterwards.
class KINEMO_PLATFORM_API utInterruptMode {
 public:
  enum Mode { OFF, ON };

  explicit utInterruptMode(Mode mode);
  ~utInterruptMode();
  utInterruptMode(const utInterruptMode&) = delete;
  utInterruptMode& operator=(const utInterruptMode&) = delete;

 private:
  Mode before_;
};
