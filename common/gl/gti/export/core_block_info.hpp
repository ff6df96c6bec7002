#pragma once

#include "common/gl/gti/export/api.hpp"
#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/block_descriptor.hpp"
#include "common/gl/gti/export/parameter_rewrites.hpp"
#include "platform/graph_core/graph.hpp"

#include <string>

class GTBlock;
class GtBlockContext;

namespace gl::gti {

class CoreBlockFacade;

/// What a client supplies for one kind of core block: its look, its parameters, and the component it turns into. Every
/// block owns a clone of its own, so an object may keep what the last check of its block found.
class KINEMO_GTI_API CoreBlockInfo {
 public:
  CoreBlockInfo();
  CoreBlockInfo(const CoreBlockInfo& other);
  CoreBlockInfo& operator=(const CoreBlockInfo& other);

  virtual ~CoreBlockInfo();
  /// A new object that the caller owns.
  virtual CoreBlockInfo* clone() const = 0;
  /// Called once, on the prototype: declares the dialog parameters through `CoreBlockFacade::registerParameters`.
  virtual void registerParameters(CoreBlockFacade& block) = 0;
  /// Read afresh at each use, so it may depend on the last check.
  virtual const BlockDescriptor& descriptor() const = 0;
  /// Called whenever parameters are processed. May update what `descriptor` returns; a bad value is reported by
  /// throwing.
  virtual void checkParameters(CoreBlockFacade& block) = 0;
  /// The block's factory: its connectors are named as `ComponentEmbedding` expects, by the ports' identifiers.
  virtual gl::core::Component component(CoreBlockFacade& block, const BlockData& data) = 0;
  /// Receives the parameters that become expressions; calls the setter for those that concern it.
  virtual void applyRuntimeParameters(ParameterSetter setter, const ParameterRewrites& rewrites) = 0;
};

/// Makes the prototype of a block kind, which the caller owns or hands to the host's library. A domain without a
/// manager gets one that does nothing, so that it exists in the host before any real manager comes.
KINEMO_GTI_API GTBlock* create_core_block_prototype(const CoreBlockInfo& info, const std::string& domain,
                                                    GtBlockContext* context);

}  // namespace gl::gti
