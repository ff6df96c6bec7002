// A model that keeps run-time parameters is worth what a new compile gives: for diagrams made by chance, the values of
// its parameters after a change equal those of a new compile with the changed variables and without propagation.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/foundation/warnings.hpp"
#include "embedded/graph_core_scripting/model_values.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "runtime_property_diagram.hpp"
#include "tests/support/physical_environment.hpp"
#include "views/flat_network.hpp"

#include <set>

namespace kinemo::views::test {
namespace {

namespace host = embedded::block_diagram;
using embedded::graph_core_scripting::ModelValues;
using embedded::graph_core_scripting::RuntimeValues;
using gl::core::Component;
using gl::core::Graph;
using Numbers = std::map<std::string, double>;

constexpr unsigned diagrams = 150;

/// Components of all levels by the paths of their blocks.
std::map<ustring, Component> by_path(const Graph& graph) {
  std::map<ustring, Component> found;
  std::vector<Graph> pending{graph};
  while (!pending.empty()) {
    const Graph level = pending.back();
    pending.pop_back();
    for (const auto& entry : level.components()) {
      EXPECT_TRUE(found.emplace(gl::core::object(entry.second), entry.second).second);
      if (entry.second.isSubgraph()) pending.push_back(entry.second.graph());
    }
  }
  return found;
}

/// The blocks whose leaves differ, or whose remaining mask parameters do.
std::set<std::string> differences(const Graph& evaluated, const Graph& fresh) {
  std::set<std::string> found;
  const std::map<ustring, Component> wanted = by_path(fresh);
  const std::map<ustring, Component> made = by_path(evaluated);
  EXPECT_EQ(wanted.size(), made.size());
  for (const auto& [path, component] : made) {
    const Component& other = wanted.at(path);
    if (!component.isSubgraph() && component != other) found.insert(kmf::ustring_to_utf8_string(path));
    for (const auto& [id, parameter] : component.parameters()) {
      if (!(parameter == other.parameters().at(id)))
        found.insert(kmf::ustring_to_utf8_string(path) + ":" + std::string(id));
    }
  }
  return found;
}

bool same_leaves(const Graph& a, const Graph& b) {
  const std::map<ustring, Component> others = by_path(b);
  for (const auto& [path, component] : by_path(a)) {
    if (!component.isSubgraph() && component != others.at(path)) return false;
  }
  return true;
}

std::size_t count_expressions(const Graph& graph) {
  std::size_t count = 0;
  for (const auto& entry : by_path(graph)) {
    for (const auto& parameter : entry.second.parameters())
      count += boost::get<data2::core::Expr>(&parameter.second.get({})) != nullptr ? 1 : 0;
  }
  return count;
}

void expect_isomorphic(const gl::core::Model& a, const gl::core::Model& b) {
  const FlatNetwork one = flatten(a);
  const FlatNetwork two = flatten(b);
  ASSERT_EQ(one.components.size(), two.components.size());
  for (std::size_t i = 0; i < one.components.size(); ++i) {
    EXPECT_EQ(one.components[i].block, two.components[i].block);
    EXPECT_EQ(one.components[i].nets, two.components[i].nets) << one.components[i].block;
    EXPECT_EQ(one.components[i].component->connectorOrder(), two.components[i].component->connectorOrder());
  }
}

class RuntimeProperty : public kinemo::test::PhysicalEnvironment {
 protected:
  RuntimeProperty() {
    std::vector<std::string> names;
    for (const std::string& name : gt_prototype_names()) {
      if (name.rfind("physical/", 0) == 0 && name.rfind("physical/spice/", 0) != 0) names.push_back(name);
    }
    kinds_ = describe_blocks(names);
  }

  gl::core::Model compiled(host::Diagram& diagram, const Numbers& values, bool propagate) {
    RuntimePropertyDiagram::setVariables(diagram, values);
    diagram.setParameter("PropagateRuntimeParameters", propagate ? u"on" : u"off");
    try {
      return compile(diagram);
    } catch (const kmf::Exception& error) {
      ADD_FAILURE() << kmf::render_error(error);
      throw;
    }
  }

  /// Puts the numbers of the last compile in the place of what a compile fixes.
  static void freeze(const RuntimePropertyDiagram& made) {
    for (const FrozenText& frozen : made.frozen()) {
      const GTMask& mask = *frozen.block->host().mask;
      const auto value = embedded::scripting_runtime::quantity_of(
          mask.values.at(static_cast<std::size_t>(mask.kind->find(frozen.parameter))).get());
      std::string text = "[";
      for (std::size_t i = 0; i < cvGetNumberOfElements(value.numbers.array()); ++i) {
        char number[64];
        std::snprintf(number, sizeof number, " %.17g", cvGetElement(value.numbers.array(), i));
        text += number;
      }
      text += "]";
      if (value.has_unit()) text = "kinemo.Value(" + text + ", '" + units2::core::ExprString(value.unit).text() + "')";
      host::setParameter(*frozen.block, frozen.parameter, kmf::utf8_string_to_ustring(text));
    }
  }

  Numbers numbers(RuntimePropertyDiagram& made) {
    Numbers values;
    for (const RuntimeVariable& variable : RuntimePropertyDiagram::variables()) values[variable.name] = made.number();
    return values;
  }

  /// The changes as a user tells them: some in another unit than the declared one.
  static RuntimeValues told(RuntimePropertyDiagram& made, const gl::core::Model& model, Numbers& values) {
    RuntimeValues changes;
    for (const RuntimeVariable& variable : RuntimePropertyDiagram::variables()) {
      if (model.runtimeParameters().runtimeParameters().count(variable.name) == 0) continue;
      double& value = values.at(variable.name);
      if (variable.vector) {
        changes[variable.name] = data2::core::ValueData({1, 3}, {value, 2, 3});
      } else if (!variable.otherUnit.empty() && made.chance(50)) {
        const units2::core::ExprString unit = units2::core::parse(variable.otherUnit);
        changes[variable.name] = data2::core::ValueData(value, unit);
        value = units2::core::convert(value, unit.unit(), units2::core::parse(variable.unit));
        EXPECT_DOUBLE_EQ(value, variable.factor * changes[variable.name].elements().front());
      } else {
        changes[variable.name] = value;
      }
    }
    return changes;
  }

  /// The only warnings: texts without effect.
  void TearDown() override {
    for (const kmf::Message& warning : warnings_.take())
      EXPECT_EQ(warning.identifier().id, "ValueWithoutEffect") << warning.text();
  }

  std::vector<LibraryBlock> kinds_;
  kmf::embedded::WarningCapture warnings_;
};

TEST_F(RuntimeProperty, EvaluatedModelsEqualFreshCompiles) {
  std::size_t expressions = 0;
  std::size_t changes = 0;
  for (unsigned seed = 1; seed <= diagrams && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    host::Diagram& diagram = host::Diagram::create("m");
    RuntimePropertyDiagram made(seed, kinds_);
    made.fill(diagram);
    const Numbers before = numbers(made);
    const gl::core::Model plain = compiled(diagram, before, false);
    const gl::core::Model kept = compiled(diagram, before, true);
    expect_isomorphic(plain, kept);
    EXPECT_EQ(differences(ModelValues(kept).evaluated(), plain.graph()), std::set<std::string>());

    Numbers after = numbers(made);
    ModelValues values(kept, told(made, kept, after));
    const Graph evaluated = values.evaluated();
    EXPECT_EQ(count_expressions(evaluated), 0u);
    expect_isomorphic(gl::core::Model(evaluated, {}), plain);
    freeze(made);
    EXPECT_EQ(differences(evaluated, compiled(diagram, after, false).graph()), std::set<std::string>());
    expressions += count_expressions(kept.graph());
    changes += differences(evaluated, plain.graph()).size();
    host::Diagram::close(diagram);
  }
  EXPECT_GT(expressions, 8 * diagrams);
  EXPECT_GT(changes, 4 * diagrams);
}

TEST_F(RuntimeProperty, ModelsListTheVariablesThatChangeSomething) {
  for (unsigned seed = 1; seed <= diagrams && !HasFailure(); seed += 6) {
    SCOPED_TRACE(seed);
    host::Diagram& diagram = host::Diagram::create("m");
    RuntimePropertyDiagram made(seed, kinds_);
    made.fill(diagram);
    const Numbers before = numbers(made);
    const gl::core::Model kept = compiled(diagram, before, true);
    freeze(made);
    const Graph plain = compiled(diagram, before, false).graph();
    std::set<kmf::VnId> changing;
    for (const RuntimeVariable& variable : RuntimePropertyDiagram::variables()) {
      Numbers after = before;
      after.at(variable.name) *= 1.5;
      const Graph changed = compiled(diagram, after, false).graph();
      if (!same_leaves(changed, plain)) changing.insert(kmf::VnId(variable.name));
    }
    EXPECT_EQ(kept.runtimeParameters().runtimeParameters(), changing);
    host::Diagram::close(diagram);
  }
}

}  // namespace
}  // namespace kinemo::views::test
