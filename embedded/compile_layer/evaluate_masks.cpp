// The first stage of a compile: mask parameters get values, from the outermost mask inward.

#include "embedded/compile_layer/mask_evaluator.hpp"
#include "embedded/compile_layer/stages.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "embedded/scripting_runtime/workspace.hpp"

#include <memory>
#include <vector>

namespace embedded::compile_layer {

using namespace block_diagram;

namespace {

/// A system that is still to be gone through, and what its blocks see.
struct Pending {
  const System* system;
  std::shared_ptr<const Surroundings> surroundings;
};

class Walk {
 public:
  Walk(Diagram& diagram, const Progress& progress, BlockErrors& errors)
      : counter_(progress, "parameters", diagram.blockCount()),
        errors_(errors),
        base_(plainWorkspace(scripting_runtime::base_workspace())),
        model_(plainWorkspace(diagram.workspace())),
        top_(std::make_shared<Surroundings>(std::vector<const scripting_runtime::Workspace*>{&model_, &base_})) {}

  void run(const System& root) {
    pending_.push_back({&root, top_});
    while (!pending_.empty()) {
      const Pending next = std::move(pending_.back());
      pending_.pop_back();
      for (GTBlock* block : activeBlocks(*next.system)) visit(*block, next.surroundings);
    }
  }

 private:
  void visit(GTBlock& block, const std::shared_ptr<const Surroundings>& around) {
    counter_.step();
    checkVariant(block);
    std::shared_ptr<const Surroundings> inside = around;
    if (GTMask* mask = block.host().mask.get()) {
      const std::vector<std::string> failed = evaluator_.evaluate(*mask, *around, errors_);
      if (isSubsystem(block)) inside = std::make_shared<Surroundings>(*mask, failed, around);
    }
    if (const System* system = compiledContents(block)) pending_.push_back({system, inside});
  }

  void checkVariant(const GTBlock& block) {
    if (!isVariant(block) || activeChoice(block)) return;
    try {
      throwNoActiveChoice(block);
    } catch (const kmf::Exception& error) {
      errors_.add(block, error);
    }
  }

  Counter counter_;
  BlockErrors& errors_;
  MaskEvaluator evaluator_;
  scripting_runtime::Workspace base_;
  scripting_runtime::Workspace model_;
  std::shared_ptr<const Surroundings> top_;
  std::vector<Pending> pending_;
};

}  // namespace

void evaluateMasks(Diagram& diagram, const Progress& progress, BlockErrors& errors) {
  Walk(diagram, progress, errors).run(diagram.root());
}

}  // namespace embedded::compile_layer
