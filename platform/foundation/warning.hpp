#pragma once

#include "platform/foundation/export.hpp"
#include "platform/foundation/message.hpp"

namespace kmf {

/// The process's warning channel. Where warnings go is the implementation's business.
class KINEMO_PLATFORM_API Warning {
 public:
  static const Warning& get();
  void issueWarning(const Message& message) const;

 private:
  Warning() = default;
};

}  // namespace kmf
