#pragma once

// What the stages of a compile have in common: the blocks it walks, progress, and errors gathered by block.

#include "embedded/compile_layer/compile.hpp"

#include "platform/foundation/exception.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class GTBlock;

namespace embedded::block_diagram {
class System;
}

namespace embedded::compile_layer {

/// Counts what a stage has done, tells it now and then, and ends the compile when the user asks for that.
class Counter {
 public:
  Counter(const Progress& progress, const char* stage, std::size_t total)
      : progress_(progress), stage_(stage), total_(total) {}
  /// @throws "kinemo:host:compile" "Interrupted" (stage)
  void step();

 private:
  static constexpr std::size_t interval = 1024;
  const Progress& progress_;
  const char* stage_;
  std::size_t total_;
  std::size_t done_ = 0;
};

/// The errors of all blocks of a diagram as causes of one.
class BlockErrors {
 public:
  explicit BlockErrors(std::string model) : model_(std::move(model)) {}
  /// `error` as it stands, with the block as its object.
  void add(const GTBlock& block, const kmf::Exception& error);
  /// Throws what was gathered, if anything, in the order in which the blocks were placed.
  void raise();

 private:
  std::string model_;
  std::vector<std::pair<double, std::shared_ptr<const kmf::Exception>>> errors_;  ///< with the handles of the blocks
};

/// Systems inside of a block that a compile goes into: none of opaque subsystems.
const block_diagram::System* compiledContents(const GTBlock& block);

/// The two stages. Blocks whose evaluation fails aren't checked. @throws as `compile`
void evaluateMasks(block_diagram::Diagram& diagram, const Progress& progress, BlockErrors& errors);
void checkBlocks(block_diagram::Diagram& diagram, const Progress& progress, BlockErrors& errors);

}  // namespace embedded::compile_layer
