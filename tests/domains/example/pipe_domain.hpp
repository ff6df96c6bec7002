#pragma once

// A domain of its own, as the guide for domain authors shows it: one kind of block, a pipe.

#include "common/gl/gti/export/common_block_params.hpp"
#include "common/gl/gti/export/core_block_facade.hpp"
#include "common/gl/gti/export/core_block_info.hpp"
#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/export/translation_manager.hpp"

namespace hydraulic {

// [guide: block]
class Pipe final : public gl::gti::CoreBlockInfo {
 public:
  Pipe() {
    descriptor_.blockText(u"Pipe");
    descriptor_.addLeftPort("a", u"A", "liquid", u"");
    descriptor_.addRightPort("b", u"B", "liquid", u"");
  }
  CoreBlockInfo* clone() const override { return new Pipe(*this); }
  void registerParameters(gl::gti::CoreBlockFacade& block) override {
    block.registerParameters(gl::gti::CommonBlockParams::get());
  }
  const gl::gti::BlockDescriptor& descriptor() const override { return descriptor_; }
  void checkParameters(gl::gti::CoreBlockFacade&) override {}
  gl::core::Component component(gl::gti::CoreBlockFacade&, const gl::gti::BlockData&) override {
    gl::core::Component pipe(kmf::VnIdPath1("hydraulic.pipe"));
    for (const char* port : {"a", "b"}) pipe.addConnector(port, kmf::VnIdPath1("hydraulic.liquid"));
    return pipe;
  }
  void applyRuntimeParameters(gl::gti::ParameterSetter set, const gl::gti::ParameterRewrites& rewrites) override {
    for (const auto& [id, expression] : rewrites) set(id, expression);
  }

 private:
  gl::gti::BlockDescriptor descriptor_;
};
// [guide]

}  // namespace hydraulic
