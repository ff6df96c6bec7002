// What the parameters of a compiled model are worth when its run-time parameters take other values: the numbers that a
// new compile with these values would give, without one.
//
// A name in an expression means a parameter of the subgraph around the component, then of the subgraphs around that,
// then a run-time parameter of the model. An expression with a unit bound to it takes or is converted to that unit.
// What was fixed by the compile stays: parameters that aren't expressions, and names that the model doesn't hold (such
// as variables that weren't marked as run-time) are errors.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace embedded::graph_core_scripting {

/// Values for run-time parameters, by name.
using RuntimeValues = std::map<std::string, data2::core::ValueData>;

/// The run-time parameters of a model with some values changed. A value without a unit is told in the declared one, any
/// other is converted to it.
/// @throws "kinemo:graph:values" "UnknownRuntimeParameter" (name, nearest or ""), and "UnitsDiffer" (name, unit,
/// declared unit)
gl::core::RuntimeParameterInfo changed_parameters(const gl::core::Model& model, const RuntimeValues& changes);

/// A model with values for its run-time parameters. It holds the model, and remembers the levels on the way to the
/// parameter that was asked for last, so that questions about neighbours cost little.
/// Errors of evaluation are "kinemo:graph:values" "ParameterNotEvaluated" (block, parameter, expression), with the
/// block's path as the object and what the scripting runtime or the units say as the cause.
class ModelValues {
 public:
  /// @throws as `changed_parameters`
  explicit ModelValues(const gl::core::Model& model, const RuntimeValues& changes = {});
  ModelValues(ModelValues&&) noexcept;
  ModelValues& operator=(ModelValues&&) noexcept;
  ~ModelValues();

  const gl::core::RuntimeParameterInfo& runtimeParameters() const;

  /// A numeric parameter of the component at an address in the model's graph.
  /// @throws "kinemo:graph:core" "EntryNameNotFound", "EntryTypeMismatch" (address) for a bad address,
  /// "kinemo:graph:values" "ParameterIsText" (block, parameter), and the errors of evaluation
  data2::core::Value value(const kmf::VnIdPath& component, const kmf::VnId& parameter);

  /// Told every parameter of every component, of a subgraph before those of what is inside.
  using Visitor =
      std::function<void(const gl::core::Component&, const kmf::VnId& parameter, const ParameterVariant& value)>;
  /// @throws the errors of evaluation
  void visit(const Visitor& visitor);

  /// The model's graph with values in place of all expressions. @throws the errors of evaluation, and what the graph
  /// core raises for a value that the type of its parameter doesn't take
  gl::core::Graph evaluated();

 private:
  class Walk;
  std::unique_ptr<Walk> walk_;
};

}  // namespace embedded::graph_core_scripting
