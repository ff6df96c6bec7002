// The parameters of a model under the names that they have in a netlist, and which of them is meant at each level: an
// inner one hides an outer one of its name, in the model as in the simulator.
#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/spice/write_expression.hpp"
#include "formats/spice/write_names.hpp"
#include "platform/graph_core/graph.hpp"

namespace kinemo::formats::spice {

/// One parameter of a definition or of the whole netlist.
struct WrittenParameter {
  std::string name;
  WrittenExpression value;
};

class WrittenParameters {
 public:
  /// Gives all parameters of the model their names. They are claimed in `names`, for nothing else to have them.
  WrittenParameters(const gl::core::Model& model, UniqueNames& names);

  /// The run-time parameters, in SI units; they are known from now on.
  std::vector<WrittenParameter> enter_model(const gl::core::RuntimeParameterInfo& parameters);
  /// The parameters of a subgraph, values in the terms of what is around it; they are known from now on.
  std::vector<WrittenParameter> enter(const gl::core::Component& subgraph);
  void leave(const gl::core::Component& subgraph);

  /// A parameter as it is seen from the level that was entered last.
  std::optional<ParameterName> find(const std::string& name, std::string& problem) const;
  /// Which parameters couldn't keep their names: the model's names and ours.
  const std::vector<std::pair<std::string, std::string>>& renamed() const { return m_renamed; }

 private:
  struct Binding {
    ParameterName parameter;
    std::string problem;  ///< why the netlist has no such parameter; empty where it has
  };
  struct Given {
    Binding binding;
    WrittenExpression value;
    std::set<std::string> uses;  ///< names of outer parameters
  };

  void add(const kmf::VnId& id, UniqueNames& names);
  Given given(const kmf::VnId& id, const ParameterVariant& value) const;
  /// The simulator computes the values of a call one after the other, in sight of those that it has: a value must not
  /// name what is a parameter of the definition as well. `users` counts the values that use a name.
  void keep_apart(const kmf::VnId& id, Given& one, const std::map<std::string, std::size_t>& users);

  std::unordered_map<std::string, std::vector<std::string>> m_names;  ///< of each: the name, and others for clashes
  std::unordered_map<std::string, std::vector<Binding>> m_bindings;   ///< of each, the innermost one last
  std::vector<std::pair<std::string, std::string>> m_renamed;
  UniqueNames& m_unique;
};

}  // namespace kinemo::formats::spice
