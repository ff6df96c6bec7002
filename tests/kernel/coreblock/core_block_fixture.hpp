#pragma once

// A diagram "m" with blocks of the kind "test/part", whose behaviour a test sets while they stand there.

#include "common/gl/gti/export/common_block_params.hpp"
#include "common/gl/gti/export/core_block_facade.hpp"
#include "common/gl/gti/export/core_block_info.hpp"
#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/environment/environment.hpp"
#include "platform/block_diagram/library.hpp"
#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace gl::gti::test {

/// What all blocks of the kind do.
struct Behaviour {
  BlockDescriptor descriptor;
  std::function<void()> describe;  ///< before the descriptor is told; may throw
  std::function<void(CoreBlockFacade&)> check;
  gl::core::Component component;
  int registrations = 0;
};

/// The client's object of one block; `checks` counts in each block by itself.
class PartInfo final : public CoreBlockInfo {
 public:
  explicit PartInfo(std::shared_ptr<Behaviour> behaviour) : behaviour_(std::move(behaviour)) {}

  CoreBlockInfo* clone() const override { return new PartInfo(*this); }
  void registerParameters(CoreBlockFacade& block) override {
    block.registerParameters(CommonBlockParams::get());
    ++behaviour_->registrations;
  }
  const BlockDescriptor& descriptor() const override {
    if (behaviour_->describe) behaviour_->describe();
    return behaviour_->descriptor;
  }
  void checkParameters(CoreBlockFacade& block) override {
    ++checks_;
    behaviour_->descriptor.description(u"checked " + ustring(1, static_cast<char16_t>(u'0' + checks_)));
    if (behaviour_->check) behaviour_->check(block);
  }
  gl::core::Component component(CoreBlockFacade&, const BlockData&) override { return behaviour_->component; }
  void applyRuntimeParameters(ParameterSetter setter, const ParameterRewrites& rewrites) override {
    for (const auto& rewrite : rewrites) setter(rewrite.first, rewrite.second);
    setter(kmf::VnIdPath1("done"), ustring());
  }

 private:
  std::shared_ptr<Behaviour> behaviour_;
  int checks_ = 0;
};

/// Remembers the calls of mask generators; may answer with a diagnostic, or fail.
class RecordingContext final : public GtBlockContext {
 public:
  GTDiagnostic* runMaskGenerator(GTBlock* block, const std::string& function, cvArray_tag* input, cvArray_tag** room,
                                 int, const ustring&, bool flag1, bool flag2, bool flag3) override {
    EXPECT_EQ(cvGetScalar(input), block->getHandle());
    calls.push_back(function + (flag1 ? " 1" : "") + (flag2 ? " 2" : "") + (flag3 ? " 3" : ""));
    scopes.push_back(cvGetArrayScope(input));
    *room = cvCreateDoubleScalar(1);
    if (fail) throw std::runtime_error("generator failed");
    return refuse ? new GTDiagnostic{"kinemo:test", "Refused", "no mask"} : nullptr;
  }

  std::vector<std::string> calls;
  std::vector<int> scopes;  ///< of the inputs
  bool refuse = false;
  bool fail = false;
};

class CoreBlockTest : public kinemo::test::NoLeaks {
 protected:
  CoreBlockTest() : diagram(embedded::block_diagram::Diagram::create("m")) {}
  ~CoreBlockTest() override {
    embedded::block_diagram::Diagram::close(diagram);
    gt_unregister_prototypes("test/");
  }

  /// The prototype with the behaviour as it is now, in the host's library.
  CoreBlock& addPrototype(const std::string& name = "part", const std::string& domain = "test") {
    GTBlock* block = create_core_block_prototype(PartInfo(behaviour), domain, &context);
    gt_register_prototype("test/" + name, block);
    return dynamic_cast<CoreBlock&>(*block);
  }
  CoreBlock& place(const ustring& name, const std::string& type = "test/part") {
    return dynamic_cast<CoreBlock&>(diagram.root().addBlock(name, type));
  }
  BlockDescriptor& descriptor() { return behaviour->descriptor; }
  std::string check(CoreBlock& block, int mode = 1) {
    return kinemo::test::error_of([&] { block.checkDialogParameters(mode); });
  }

  embedded::Environment environment;
  embedded::block_diagram::Diagram& diagram;
  RecordingContext context;
  std::shared_ptr<Behaviour> behaviour = std::make_shared<Behaviour>();
};

}  // namespace gl::gti::test
