#pragma once

#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/mask_data.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"

#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace embedded::compile_layer {

/// Where the blocks of a system find names: in the masks around them, then where the top of the diagram does. One
/// is made for each subsystem with a mask and serves everything inside it, up to the next mask.
class MaskFrame {
 public:
  /// @throws what the diagram's dictionary raises when it is opened
  explicit MaskFrame(block_diagram::Diagram& diagram);
  MaskFrame(const MaskFrame& outer, const GTMask& mask);
  MaskFrame(const MaskFrame&) = delete;
  MaskFrame& operator=(const MaskFrame&) = delete;

  const scripting_runtime::Scope& scope() const { return scope_; }
  /// Whether the name would come from a mask parameter whose own evaluation failed.
  bool lacks(const std::string& name) const;

 private:
  const MaskFrame* outer_ = nullptr;
  std::unique_ptr<block_diagram::VariableScope> variables_;  ///< of the frame of the diagram
  scripting_runtime::Workspace workspace_;
  scripting_runtime::Scope scope_;
  std::set<std::string> failed_;
};

/// Evaluates masks of blocks, one compile long. Texts without names are evaluated once and their values shared.
class MaskEvaluator {
 public:
  /// Failures become causes of `errors`, one for each parameter. What only follows from another failure isn't told.
  explicit MaskEvaluator(kmf::AttributedException& errors) : errors_(&errors) {}

  /// Gives the block's mask its values. False when one of them failed.
  bool evaluate(const GTBlock& block, GTMask& mask, const MaskFrame& frame);

 private:
  cvUniquePtr valueOf(const GTMask& mask, std::size_t parameter, const MaskFrame& frame);
  cvUniquePtr literal(const block_diagram::SharedText& text);
  cvUniquePtr expression(const block_diagram::SharedText& text, const MaskFrame& frame);
  void report(const GTBlock& block, const GTMask& mask, std::size_t parameter, const MaskFrame& frame,
              const kmf::Exception& cause);

  /// A value, and the text that it is of: kept, so that no other text takes the address that is the key.
  struct Known {
    block_diagram::SharedText text;
    cvUniquePtr value;
  };
  using Values = std::unordered_map<const block_diagram::SharedText::Entry*, Known>;

  kmf::AttributedException* errors_;
  Values constants_;
  Values literals_;
};

}  // namespace embedded::compile_layer
