#include "domains/physical/opaque_factory.hpp"

#include "tests/domains/physical/physical_fixture.hpp"

namespace kinemo::physical::test {

namespace {

using gl::gti::BlockData;
using gl::gti::ParameterValue;
using kinemo::test::error_of;
using testing::ElementsAre;

class OpaqueFactory : public kinemo::test::NoLeaks {
 protected:
  void text(const char* id, const char* value) {
    const cvUniquePtr array(cvCreateString(value));
    data.addParameter(id, ParameterValue(array.get(), u""));
  }
  void number(const char* id, double value) {
    const cvUniquePtr array(cvCreateDoubleScalar(value));
    data.addParameter(id, ParameterValue(array.get(), u""));
  }
  std::vector<std::string> connectors(const gl::core::Component& component) {
    std::vector<std::string> all;
    for (const kmf::VnId& id : component.connectorOrder()) {
      const kmf::VnIdPath at(id);
      const auto found =
          component.findEntry(kmf::VnIdPathIterator(at), gl::core::detail::GraphIdTypePredicate<gl::core::Connector>());
      const auto* connector = boost::get<const gl::core::Connector*>(boost::get<gl::core::GraphEntryRef>(found));
      all.push_back(std::string(id) + ":" + std::string(connector->type()));
    }
    return all;
  }

  BlockData data;
};

}  // namespace

TEST_F(OpaqueFactory, MakesAConnectorForEachPortByName) {
  text("ComponentType", "lib.pump");
  for (const char16_t* port : {u"out", u"in", u"a b", u"a_b"}) data.addPort(port);
  const auto embedding = make_opaque_component(data);
  EXPECT_EQ(std::string(embedding.component().type()), "lib.pump");
  const auto& ids = embedding.portEmbedding();
  ASSERT_EQ(ids.size(), 4u);
  std::vector<kmf::VnId> order;
  for (const auto& row : ids) order.push_back(row.second);
  EXPECT_EQ(embedding.component().connectorOrder(), order);
  EXPECT_NE(ids.at(u"a b"), ids.at(u"a_b"));
  EXPECT_THAT(connectors(embedding.component()), testing::Contains("out:physical.electrical"));
}

TEST_F(OpaqueFactory, TakesPortTypesByNameAndForTheRest) {
  text("ComponentType", "lib.pump");
  text("PortTypes", "thermal, shaft=rotational\nin=other.domain.liquid");
  for (const char16_t* port : {u"in", u"shaft", u"wall"}) data.addPort(port);
  EXPECT_THAT(connectors(make_opaque_component(data).component()),
              ElementsAre("in:other.domain.liquid", "shaft:physical.rotational", "wall:physical.thermal"));
}

TEST_F(OpaqueFactory, TakesTheParametersOfTheMask) {
  text("ComponentType", "lib.pump");
  number("flow", 3);
  text("flow_unit", "m/s");
  text("flow_conf", "runtime");
  text("oil", "thin");
  number("port", 1);
  data.addPort(u"port");
  const auto component = make_opaque_component(data).component();
  EXPECT_EQ(component.parameters().size(), 3u);
  EXPECT_EQ(number_of(component, "flow"), std::make_pair(3.0, std::string("m/s")));
  EXPECT_EQ(text_of(component, "oil"), u"thin");
  EXPECT_EQ(component.connectorOrder().size(), 1u);
  EXPECT_NE(component.connectorOrder()[0], kmf::VnId("port"));
}

TEST_F(OpaqueFactory, SaysWhatIsMissingOrWrong) {
  const auto error = [this] { return error_of([this] { make_opaque_component(data); }); };
  EXPECT_EQ(error(), "kinemo:physical:opaque:MissingComponentType()");
  text("ComponentType", "not a type");
  EXPECT_EQ(error(), "kinemo:physical:opaque:InvalidComponentType(not a type)");
  text("ComponentType", "lib.pump");
  text("PortTypes", "in=");
  EXPECT_EQ(error(), "kinemo:physical:opaque:InvalidPortType(in=)");
  text("PortTypes", "1st");
  EXPECT_EQ(error(), "kinemo:physical:opaque:InvalidPortType(1st)");
  text("PortTypes", "");
  number("flow", 3);
  text("flow_unit", "no unit");
  EXPECT_EQ(error(), "kinemo:physical:parameters:InvalidUnit(lib.pump, flow, no unit)");
}

/// R1.n - Box.in, where Box is an opaque subsystem.
class OpaqueSubsystem : public PhysicalTest {
 protected:
  OpaqueSubsystem() : box(diagram->root().addSubsystem(u"Box")) {
    bd::contents(box)->addPort(u"in", bd::Side::Left, 1);
    bd::setParameter(box, "Opaque", u"on");
    GTBlock& resistor = place(u"R1", "physical/resistor");
    diagram->root().addLine({resistor.getGrRightConnectionPort(0), bd::subsystemPort(box, u"in")});
  }
  GTBlock& box;
};

TEST_F(OpaqueSubsystem, BecomesAComponentOfItsType) {
  bd::setProperty(box, "ComponentType", u"lib.box");
  const gl::core::Graph graph = compile().graph();
  const auto components = byPath(graph);
  EXPECT_EQ(std::string(components.at(u"m/Box").type()), "lib.box");
  EXPECT_THAT(components.at(u"m/Box").connectorOrder(), ElementsAre(kmf::VnId("in")));
  EXPECT_EQ(graph.nodes().size(), 1u);
}

TEST_F(OpaqueSubsystem, WithoutATypeIsAnErrorOnTheBlock) {
  EXPECT_THAT(errors(), ElementsAre("MissingComponentType()"));
}

}  // namespace kinemo::physical::test
