#pragma once

#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"

namespace gl::gti {

class CoreBlock;

/// The entry of a leaf block of our own block class: the block tells the names of its ports, makes its component
/// itself, and takes run-time parameters.
class CoreBlockEntryData final : public FactoryBlockEntryData {
 public:
  /// `handle` must name a core block.
  CoreBlockEntryData(double handle, ModelConnectivity& connectivity);

  BlockType::Value blockType() const override { return BlockType::CORE; }
  ComponentEmbedding makeEmbedding(const TranslationConfiguration& config, const BlockData& data) const override;
  /// Hands the block those rewrites whose parameter isn't fixed at compile time: the partner with "_conf" behind the
  /// name is missing, or its text is "runtime" in small or capital letters.
  void applyRuntimeParameters(ParameterSetter setter, const ParameterRewrites& rewrites) override;
  boost::shared_ptr<BlockEntryData> clone() const override;

 private:
  bool staysTunable(const kmf::VnId& parameter) const;

  CoreBlock* coreBlock_;  ///< not owned
};

}  // namespace gl::gti
