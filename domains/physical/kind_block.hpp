#pragma once

#include "common/gl/gti/export/core_block_info.hpp"
#include "domains/physical/prepared_kind.hpp"

#include <memory>

namespace kinemo::physical {

/// What stands behind every block of the domain's library: the kind, and the look that the block's parameters give it.
class KindBlock final : public gl::gti::CoreBlockInfo {
 public:
  explicit KindBlock(std::shared_ptr<const PreparedKind> kind);

  CoreBlockInfo* clone() const override;
  void registerParameters(gl::gti::CoreBlockFacade& block) override;
  const gl::gti::BlockDescriptor& descriptor() const override;
  void checkParameters(gl::gti::CoreBlockFacade& block) override;
  gl::core::Component component(gl::gti::CoreBlockFacade& block, const gl::gti::BlockData& data) override;
  void applyRuntimeParameters(gl::gti::ParameterSetter setter, const gl::gti::ParameterRewrites& rewrites) override;

 private:
  bool follows(const kmf::VnId& parameter) const;

  std::shared_ptr<const PreparedKind> kind_;
  std::shared_ptr<const Look> look_;
  std::vector<kmf::VnId> following_;  ///< parameters that were settings of the model in the last compile
};

}  // namespace kinemo::physical
