#pragma once

// Evaluation of the parameters of one mask in what lies around its block.

#include "embedded/block_diagram/mask_data.hpp"
#include "embedded/compile_layer/stages.hpp"
#include "embedded/scripting_runtime/workspace.hpp"

#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace embedded::compile_layer {

/// What expressions inside of a masked subsystem see: the mask's variables, then what lies around it. Lives as long as
/// something inside is still to be evaluated.
class Surroundings {
 public:
  /// The outermost: the model's and the base workspace.
  explicit Surroundings(std::vector<const scripting_runtime::Workspace*> workspaces);
  /// `failed` are variables without a value, whose error has been reported.
  Surroundings(const GTMask& mask, const std::vector<std::string>& failed, std::shared_ptr<const Surroundings> outer);
  ~Surroundings();

  const scripting_runtime::Scope& scope() const { return scope_; }
  /// Whether the name leads to a variable that failed: what uses it fails for that reason alone.
  bool isFailed(const std::string& name) const;

 private:
  scripting_runtime::Workspace own_;
  std::unordered_set<std::string> failed_;
  std::shared_ptr<const Surroundings> outer_;
  scripting_runtime::Scope scope_;
};

/// Serves one compile. Texts without names are evaluated once, and their values shared by all that have them.
class MaskEvaluator {
 public:
  /// Gives every parameter of the mask its value; one that has none is reported, unless it fails on account of a
  /// variable around that failed before. Returns the names of those without a value.
  std::vector<std::string> evaluate(GTMask& mask, const Surroundings& around, BlockErrors& errors);

 private:
  cvUniquePtr value(const GTMask& mask, std::size_t i, const Surroundings& around);
  cvUniquePtr expressionValue(const block_diagram::SharedText& text, const Surroundings& around);

  /// Value of a text without names. The text is kept too, since its address is the key.
  struct Constant {
    block_diagram::SharedText text;
    cvUniquePtr value;
  };
  std::unordered_map<const void*, Constant> constants_;
};

}  // namespace embedded::compile_layer
