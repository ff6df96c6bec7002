// The second stage of a compile: every block checks its parameters.

#include "embedded/compile_layer/stages.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/system_data.hpp"

#include <algorithm>
#include <vector>

namespace embedded::compile_layer {

using namespace block_diagram;

namespace {

/// A block without all its values has had its error already.
bool isEvaluated(const GTBlock& block) {
  const GTMask* mask = block.host().mask.get();
  return !mask ||
         std::all_of(mask->values.begin(), mask->values.end(), [](const cvUniquePtr& v) { return v != nullptr; });
}

void checkBlock(GTBlock& block, BlockErrors& errors) {
  if (!isEvaluated(block)) return;
  try {
    block.checkDialogParameters(1);
  } catch (const kmf::Exception& error) {
    errors.add(block, error);
  }
}

}  // namespace

void checkBlocks(Diagram& diagram, const Progress& progress, BlockErrors& errors) {
  Counter counter(progress, "check", diagram.blockCount());
  std::vector<const System*> pending{&diagram.root()};
  while (!pending.empty()) {
    const System& system = *pending.back();
    pending.pop_back();
    for (GTBlock* block : activeBlocks(system)) {
      counter.step();
      checkBlock(*block, errors);
      if (const System* inside = compiledContents(*block)) pending.push_back(inside);
    }
  }
}

}  // namespace embedded::compile_layer
