// What names mean inside the subgraphs of a compiled model: the run-time parameters at the top, and below them the
// parameters of every subgraph around a place. One workspace holds what is visible just now. What a subgraph hides is
// put aside on the way in and back on the way out, so that a look-up costs the same at any depth.
#pragma once

#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/graph_core/graph.hpp"

#include <string>
#include <unordered_set>
#include <vector>

namespace embedded::graph_core_scripting {

/// A value told in a unit: one without a unit takes it, any other is converted. The empty unit changes nothing.
/// @throws "kinemo:units:core" "IncommensurableUnits" (from, to)
data2::core::ValueData told_in(const data2::core::ValueData& value, const units2::core::ExprString& unit);

class ValueScope {
 public:
  /// Run-time parameters bring their units along, as the variables of a model's workspace do.
  explicit ValueScope(const gl::core::RuntimeParameterInfo& top);
  ValueScope(const ValueScope&) = delete;
  ValueScope& operator=(const ValueScope&) = delete;

  /// Evaluates the parameters of a subgraph in the scope around it; from here on names mean them first. The component
  /// must outlive its stay. @throws as `value_of`, and nothing is entered then
  void enter(const gl::core::Component& subgraph);
  void leave();
  std::size_t depth() const { return levels_.size(); }

  /// A parameter of a component inside all subgraphs that were entered: text, or a value.
  /// @throws "kinemo:graph:values" "ParameterNotEvaluated" (block, parameter, expression), with the reason as its cause
  ParameterVariant value_of(const gl::core::Component& component, const kmf::VnId& parameter) const;
  /// A parameter of the subgraph that was entered last. @throws as `value_of`
  ParameterVariant own_value(const kmf::VnId& parameter) const;

 private:
  /// What a name means: an array, or no array for a text, which no expression can use.
  struct Meaning {
    std::string name;
    cvUniquePtr value;
    bool isText = false;
  };
  struct Level {
    const gl::core::Component* subgraph;
    std::vector<Meaning> hidden;  ///< what its names meant before
  };

  Meaning meaning_of(const gl::core::Component& component, const kmf::VnId& parameter) const;
  Meaning exchange(Meaning meaning);
  cvUniquePtr evaluated(const data2::core::Expr& expression) const;
  void refuse_texts(const data2::core::Expr& expression) const;

  scripting_runtime::Workspace workspace_;
  scripting_runtime::Scope scope_{workspace_};
  std::unordered_set<std::string> texts_;  ///< names that mean texts
  std::vector<Level> levels_;
};

}  // namespace embedded::graph_core_scripting
