#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"

namespace gl::gti {

namespace {

/// What a core block leaves behind for execution: nothing of its own, since a domain executes the whole network.
class CoreExecBlock final : public GTExecBlock {
 public:
  ~CoreExecBlock() override = default;
};

}  // namespace

GTExecBlock* CoreBlock::createExecBlock() {
  return new CoreExecBlock();
}

}  // namespace gl::gti
