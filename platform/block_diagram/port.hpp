#pragma once

#include "platform/block_diagram/object.hpp"

#include <string>

class GTBlock;
struct GTDiagnostic;
struct gtPortHostData;

/// One connection port. Owned by its block; alive until the block's port counts change or the block ends.
class KINEMO_PLATFORM_API gtPort : public GantrelObject {
 public:
  gtPort(GTBlock* owner, bool left, int position);
  gtPort(const gtPort&) = delete;
  gtPort& operator=(const gtPort&) = delete;
  ~gtPort() override;

  int getGantrelObjectType() const override;
  double getHandle() const override;
  GTBlock* getGrOwnerBlock() const { return owner_; }

  int index;  ///< position on its side, from 0

  bool isLeft() const { return left_; }
  gtPortHostData& host() const { return *host_; }

 private:
  GTBlock* owner_;
  bool left_;
  gtPortHostData* host_;
};

KINEMO_PLATFORM_API double gp_handle(const gtPort* port);

namespace gtpatch {
namespace portenum {
enum Kind { INPUT = 0, OUTPUT = 1, ENABLE = 2, TRIGGER = 3, STATE = 4, LEFT_CONNECTION = 5, RIGHT_CONNECTION = 6 };
}
KINEMO_PLATFORM_API portenum::Kind getPortKind(const gtPort* port);
}  // namespace gtpatch

/// Sets the connection type, such as "physical.electrical": lines join ports of equal types. Null, or a diagnostic for
/// an illegal text.
KINEMO_PLATFORM_API GTDiagnostic* gtSetPortDomainPortType(gtPort* port, const std::string& type);
/// Empty while none is set.
KINEMO_PLATFORM_API const std::string& gtGetPortDomainPortType(const gtPort* port);
