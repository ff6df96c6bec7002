#include "embedded/graph_core_scripting/model_values.hpp"

#include "embedded/graph_core/connector_type.hpp"
#include "embedded/graph_core_scripting/value_scope.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
#include "platform/foundation/exception.hpp"

#include <utility>
#include <vector>

namespace embedded::graph_core_scripting {

namespace {

using data2::core::Value;
using data2::core::ValueData;
using gl::core::Component;
using gl::core::Graph;
using gl::core::Parameter;

constexpr char group[] = "kinemo:graph:values";

[[noreturn]] void fail_unknown(const std::string& name, const std::set<kmf::VnId>& known) {
  const std::vector<std::string> names(known.begin(), known.end());
  kmf::throw_message(group, "UnknownRuntimeParameter", name, scripting_runtime::nearest_name(name, names));
}

ValueData told_as_declared(const std::string& name, const ValueData& value, const units2::core::ExprString& declared) {
  const units2::core::ExprString& own = value.unit();
  if (own.unit().id() == 0) return ValueData(value.dimensions(), value.elements(), declared);
  if (!units2::core::commensurable(own.unit(), declared.unit()))
    kmf::throw_message(group, "UnitsDiffer", name, own.text(), declared.text());
  if (declared.unit().id() != 0) return told_in(value, declared);
  const ValueData pure = told_in(value, units2::core::parse("1"));
  return ValueData(pure.dimensions(), pure.elements());
}

/// A subgraph with its inside and its parameters replaced.
Component remade(const Component& old, const Graph& inside, const std::map<kmf::VnId, Parameter>& parameters) {
  Component made(inside, parameters);
  std::map<kmf::VnId, kmf::VnId> nodes;
  for (const auto& entry : inside.nodes()) {
    if (old.isExported(entry.first)) nodes.emplace(old.mapExported(entry.first), entry.first);
  }
  for (const kmf::VnId& connector : old.connectorOrder())
    made.exportNode(nodes.at(connector), connector, kmf::VnIdPath1(graph_core::connector_type(old, connector)));
  for (const kmf::VnId& tag : old.tags()) made.tag(tag, old.tag(tag));
  return made;
}

/// What a walk through all levels tells. Leaves are told while their surroundings are entered.
class Listener {
 public:
  virtual ~Listener() = default;
  virtual void entered(const kmf::VnId& id, const Component& subgraph, const ValueScope& scope) = 0;
  virtual void leaf(const kmf::VnId& id, const Component& component, const ValueScope& scope) = 0;
  virtual void leaving(const Graph& inside) = 0;
};

class Teller final : public Listener {
 public:
  explicit Teller(const ModelValues::Visitor& visitor) : visitor_(visitor) {}
  void entered(const kmf::VnId&, const Component& subgraph, const ValueScope& scope) override {
    for (const auto& entry : subgraph.parameters()) visitor_(subgraph, entry.first, scope.own_value(entry.first));
  }
  void leaf(const kmf::VnId&, const Component& component, const ValueScope& scope) override {
    for (const auto& entry : component.parameters())
      visitor_(component, entry.first, scope.value_of(component, entry.first));
  }
  void leaving(const Graph&) override {}

 private:
  const ModelValues::Visitor& visitor_;
};

class Builder final : public Listener {
 public:
  Builder() : levels_(1) {}
  void entered(const kmf::VnId& id, const Component& subgraph, const ValueScope& scope) override {
    Level level{&subgraph, id, {}, {}};
    for (const auto& [parameter, held] : subgraph.parameters())
      level.parameters.emplace(parameter, Parameter(scope.own_value(parameter), held.type()));
    levels_.push_back(std::move(level));
  }
  void leaf(const kmf::VnId& id, const Component& component, const ValueScope& scope) override {
    Component made = component;
    for (const auto& [parameter, held] : component.parameters()) {
      if (boost::get<data2::core::Expr>(&held.get({})) != nullptr)
        made.set(parameter, scope.value_of(component, parameter));
    }
    levels_.back().graph.insert(id, std::move(made));
  }
  void leaving(const Graph& inside) override {
    finish(inside);
    const Level done = std::move(levels_.back());
    levels_.pop_back();
    levels_.back().graph.insert(done.id, remade(*done.owner, done.graph, done.parameters));
  }
  Graph result(const Graph& top) {
    finish(top);
    return std::move(levels_.back().graph);
  }

 private:
  struct Level {
    const Component* owner = nullptr;
    kmf::VnId id;
    std::map<kmf::VnId, Parameter> parameters;
    Graph graph;
  };

  /// Nodes and connections, as they were.
  void finish(const Graph& old) {
    Graph& made = levels_.back().graph;
    for (const auto& [id, node] : old.nodes()) made.insert(id, node);
    for (const gl::core::Connection& connection : old.connections(kmf::VnIdPathIterator()))
      made.insert(connection, kmf::VnIdPathIterator());
  }

  std::vector<Level> levels_;
};

}  // namespace

/// The place in the model that was looked at last, and what names mean there.
class ModelValues::Walk {
 public:
  Walk(const gl::core::Model& model, gl::core::RuntimeParameterInfo changed)
      : parameters_(std::move(changed)), graph_(model.graph()), scope_(parameters_) {}

  const gl::core::RuntimeParameterInfo& parameters() const { return parameters_; }
  const Graph& graph() const { return graph_; }

  /// Enters the subgraphs around the component, and no others. A failure leaves the place between two levels.
  const Component& go_to(const kmf::VnIdPath& address) {
    if (address.empty()) gl::core::detail::throw_type_mismatch(address);
    std::size_t same = 0;
    while (same < path_.size() && same + 1 < address.size() && path_[same].id == address[same]) ++same;
    while (path_.size() > same) leave();
    const Component* found = &step(address, same);
    while (++same < address.size()) {
      if (!found->isSubgraph()) gl::core::detail::throw_type_mismatch(address);
      enter(address[same - 1], *found);
      found = &step(address, same);
    }
    return *found;
  }

  void all(Listener& listener) {
    while (!path_.empty()) leave();
    Components::const_iterator next = graph_.components().begin();
    std::vector<Components::const_iterator> outer;
    for (;;) {
      if (next != inside().components().end()) {
        const auto& [id, component] = *next++;
        if (!component.isSubgraph()) {
          listener.leaf(id, component, scope_);
          continue;
        }
        enter(id, component);
        listener.entered(id, component, scope_);
        outer.push_back(std::exchange(next, component.graph().components().begin()));
      } else if (!outer.empty()) {
        listener.leaving(inside());
        leave();
        next = outer.back();
        outer.pop_back();
      } else {
        return;
      }
    }
  }

  const ValueScope& scope() const { return scope_; }

 private:
  using Components = std::map<kmf::VnId, Component>;
  struct Step {
    kmf::VnId id;
    const Component* subgraph;
  };

  const Graph& inside() const { return path_.empty() ? graph_ : path_.back().subgraph->graph(); }
  const Component& step(const kmf::VnIdPath& address, std::size_t position) const {
    const auto found = inside().components().find(address[position]);
    if (found == inside().components().end()) gl::core::detail::throw_entry_name_not_found(address);
    return found->second;
  }
  void enter(const kmf::VnId& id, const Component& subgraph) {
    scope_.enter(subgraph);
    path_.push_back({id, &subgraph});
  }
  void leave() {
    path_.pop_back();
    scope_.leave();
  }

  gl::core::RuntimeParameterInfo parameters_;
  Graph graph_;  ///< shared, so that no writer elsewhere moves its components
  ValueScope scope_;
  std::vector<Step> path_;
};

gl::core::RuntimeParameterInfo changed_parameters(const gl::core::Model& model, const RuntimeValues& changes) {
  const std::set<kmf::VnId> known = model.runtimeParameters().runtimeParameters();
  gl::core::RuntimeParameterInfo changed;
  for (const auto& [name, value] : changes) {
    if (!kmf::VnId::isLegal(name) || known.count(name) == 0) fail_unknown(name, known);
  }
  for (const kmf::VnId& id : known) {
    const ValueData& declared = model.runtimeParameters().value(id);
    const auto change = changes.find(id);
    changed.addParameter(id,
                         change == changes.end() ? declared : told_as_declared(id, change->second, declared.unit()));
  }
  for (const kmf::VnId& id : model.runtimeParameters().nonValueParameters()) changed.addNonValueParameter(id);
  return changed;
}

ModelValues::ModelValues(const gl::core::Model& model, const RuntimeValues& changes)
    : walk_(std::make_unique<Walk>(model, changed_parameters(model, changes))) {}

ModelValues::ModelValues(ModelValues&&) noexcept = default;

ModelValues& ModelValues::operator=(ModelValues&&) noexcept = default;

ModelValues::~ModelValues() = default;

const gl::core::RuntimeParameterInfo& ModelValues::runtimeParameters() const {
  return walk_->parameters();
}

Value ModelValues::value(const kmf::VnIdPath& component, const kmf::VnId& parameter) {
  const Component& found = walk_->go_to(component);
  if (found.parameters().count(parameter) == 0) gl::core::detail::throw_entry_name_not_found(parameter);
  const ParameterVariant value = walk_->scope().value_of(found, parameter);
  if (const Value* number = boost::get<Value>(&value)) return *number;
  kmf::throw_message(group, "ParameterIsText", gl::core::object(found), std::string(parameter));
}

void ModelValues::visit(const Visitor& visitor) {
  Teller teller(visitor);
  walk_->all(teller);
}

Graph ModelValues::evaluated() {
  Builder builder;
  walk_->all(builder);
  return builder.result(walk_->graph());
}

}  // namespace embedded::graph_core_scripting
