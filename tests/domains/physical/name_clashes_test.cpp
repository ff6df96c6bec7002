// Names that are the same at every level of a model, and long ones: what refers to what in the graph.

#include "platform/foundation/strings.hpp"
#include "tests/domains/physical/expressions.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

#include <set>

namespace kinemo::physical::test {
namespace {

/// Nested subsystems, in the innermost a resistor. N is the name of the run-time variable at the top (3), of the
/// parameter of each mask (2*N), of the nets, of every other subsystem, of the ports of the others, and of the
/// resistor. Its R is N+1. In each system stands a resistor B of N beside, at the same net.
class NameClashes : public PhysicalTest, public testing::WithParamInterface<std::string> {
 protected:
  NameClashes() {
    diagram->setVariable(name, u"3", "", true);
    bd::System* system = &diagram->root();
    for (int level = 0; level < levels; ++level) {
      const bool odd = level % 2 != 0;
      GTBlock& inner = masked(*system, odd ? u"S" : wide, {maskParameter(name.c_str(), u"2*" + wide)});
      GTBlock& port = bd::contents(inner)->addPort(odd ? u"q" : wide, bd::Side::Left, 1);
      join(*system, bd::subsystemPort(inner, odd ? u"q" : wide));
      system = bd::contents(inner);
      outside = bd::ports(port).at(0);
    }
    GTBlock& resistor = system->addBlock(wide, "physical/resistor");
    bd::setParameter(resistor, "R", wide + u"+1");
    bd::setParameter(resistor, "R_conf", u"runtime");
    join(*system, resistor.getGrLeftConnectionPort(0));
  }
  /// A net named N of `port`, the system's own port and B.
  void join(bd::System& system, gtPort* port) {
    GTBlock& beside = system.addBlock(u"B", "physical/resistor");
    bd::setParameter(beside, "R", wide);
    bd::setParameter(beside, "R_conf", u"runtime");
    std::vector<gtPort*> ports{port, beside.getGrLeftConnectionPort(0)};
    if (outside) ports.push_back(outside);
    system.addLine(ports, wide);
  }
  gl::core::Model compiled(const ustring& setting) {
    diagram->setParameter("PropagateRuntimeParameters", setting);
    return compile();
  }
  static const gl::core::Component& only(const gl::core::Graph& graph, bool subgraph) {
    for (const auto& [id, component] : graph.components())
      if (component.isSubgraph() == subgraph && std::string(id) != "B") return component;
    throw std::runtime_error("no such component");
  }
  void expectNoClash(const gl::core::Graph& graph, const gl::core::Component* owner) const {
    std::set<kmf::VnId> names{kmf::VnId(name)};
    if (owner) {
      names.clear();
      for (const auto& parameter : owner->parameters()) names.insert(parameter.first);
      for (const kmf::VnId& connector : owner->connectorOrder()) EXPECT_EQ(names.count(connector), 0u) << connector;
    }
    for (const auto& entry : graph.components()) EXPECT_EQ(names.count(entry.first), 0u) << entry.first;
    for (const auto& entry : graph.nodes()) EXPECT_EQ(names.count(entry.first), 0u) << entry.first;
  }

  static constexpr int levels = 4;
  const std::string name = GetParam();
  const ustring wide = kmf::utf8_string_to_ustring(name);
  gtPort* outside = nullptr;
};

TEST_P(NameClashes, EndInAGraphWhereEachNameMeansOneThing) {
  const gl::core::Model model = compiled(u"on");
  EXPECT_EQ(model.runtimeParameters().runtimeParameters(), (std::set<kmf::VnId>{kmf::VnId(name)}));
  const gl::core::Component* owner = nullptr;
  const gl::core::Graph* graph = &model.graph();
  double value = 3;
  for (int level = 0; level <= levels; ++level) {
    SCOPED_TRACE(level);
    expectNoClash(*graph, owner);
    ASSERT_EQ(graph->nodes().size(), 1u);
    const kmf::VnId& node = graph->nodes().begin()->first;
    EXPECT_EQ(graph->connections({}).size(), 2u);
    EXPECT_EQ(owner && owner->isExported(node), level > 0);
    const Names names{{name, value}};
    EXPECT_EQ(valueOf(graph->components().at("B").parameters().at("R").get({}), names), value);
    if (level == levels) {
      EXPECT_EQ(valueOf(only(*graph, false).parameters().at("R").get({}), names), value + 1);
      break;
    }
    owner = &only(*graph, true);
    value = valueOf(owner->parameters().at(name).get({}), names);
    graph = &owner->graph();
  }
  EXPECT_EQ(value, 3 * 16);
}

TEST_P(NameClashes, AreNoErrorWhereParametersAreNumbers) {
  const gl::core::Model model = compiled(u"off");
  const gl::core::Graph* graph = &model.graph();
  for (int level = 0; level < levels; ++level) graph = &only(*graph, true).graph();
  EXPECT_EQ(number_of(only(*graph, false), "R").first, 49);
}

INSTANTIATE_TEST_SUITE_P(Names, NameClashes,
                         testing::Values("x", "R", "p", "B2", std::string(63, 'a'), std::string(64, 'a'),
                                         std::string(65, 'a'), std::string(300, 'a')),
                         [](const auto& name) { return name.param.substr(0, 2) + std::to_string(name.param.size()); });

}  // namespace
}  // namespace kinemo::physical::test
