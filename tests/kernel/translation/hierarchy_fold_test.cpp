// From a drawing to nested graphs. Graphs are told by `describe`: components with their insides in brackets, then nodes
// with their connectors, then exports.

#include "common/gl/gti/src/kernel/translation/hierarchy_fold.hpp"

#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "common/gl/gti/src/kernel/translation/level_graph.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/gantrel_id.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <boost/make_shared.hpp>

#include <algorithm>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace gl::gti {
namespace {

using embedded::block_diagram::Side;
using gl::core::ConnectorSpec;
using kinemo::test::error_of;
using kinemo::test::Listing;
using ::testing::ElementsAre;

class HierarchyFold : public kinemo::test::NetworkTest {
 protected:
  /// A and a subsystem S with B in it, joined through the port "in":  A.n -- in [ B.p ]
  void drawSubsystem() {
    draw.block("A");
    draw.subsystem("S", {"in"}, {});
    draw.block("S/B");
    draw.wire("", {"A.n", "S.in"});
    draw.wire("S", {"in", "B.p"});
  }

  void maskSubsystem(const std::string& path, const std::string& variable, const ustring& value) {
    auto mask = boost::make_shared<GTMaskDefinition>();
    GTMaskParameter parameter;
    parameter.name = variable;
    parameter.value = value;
    mask->parameters.push_back(parameter);
    MaskInterface::setMask(&draw.at(path), mask);
    embedded::compile_layer::evaluateParameters(diagram);
  }
};

TEST_F(HierarchyFold, ConnectedPortsShareANodeNamedAfterTheSmallestConnector) {
  draw.blocks("test/two", {"C", "A", "B"});
  draw.wire("", {"C.p", "B.p", "A.n"});
  EXPECT_EQ(compiled(), "A B C; A_n:A.n,B.p,C.p");
}

TEST_F(HierarchyFold, TwoPortsOfOneBlockMayShareANode) {
  draw.block("A");
  draw.wire("", {"A.p", "A.n"});
  EXPECT_EQ(compiled(), "A; A_n:A.n,A.p");
}

TEST_F(HierarchyFold, TheConfigurationsPrecedenceNamesNodes) {
  configuration.connectorPrecedenceFcn(
      [](const kmf::VnIdPath1& typeA, const ConnectorSpec& a, const kmf::VnIdPath1& typeB, const ConnectorSpec& b) {
        EXPECT_EQ(std::string(typeA) + std::string(typeB), "test.linetest.line");
        return b < a;
      });
  drawSubsystem();
  draw.block("S/C");
  draw.wire("S", {"C.n", "in"});
  EXPECT_EQ(compiled(), "A S[B C; C_n:B.p,C.n; in=C_n]; S_in:A.n,S.in");
}

TEST_F(HierarchyFold, PortOfInnerBlockIsReplacedByPortOfSubsystem) {
  drawSubsystem();
  EXPECT_EQ(compiled(), "A S[B; B_p:B.p; in=B_p]; A_n:A.n,S.in");
}

TEST_F(HierarchyFold, EveryAncestorOfABlockBecomesAGraph) {
  draw.blocks("test/two", {"A", "Z"});
  draw.subsystem("S", {"in"}, {"out"});
  draw.subsystem("S/T", {"in"}, {"out"});
  draw.block("S/T/B");
  draw.wire("", {"A.n", "S.in"});
  draw.wire("", {"Z.p", "S.out"});
  draw.wire("S", {"in", "T.in"});
  draw.wire("S", {"out", "T.out"});
  draw.wire("S/T", {"in", "B.p"});
  draw.wire("S/T", {"out", "B.n"});
  EXPECT_EQ(compiled(),
            "A S[T[B; B_n:B.n; B_p:B.p; out=B_n; in=B_p]; T_in:T.in; T_out:T.out; in=T_in; out=T_out] Z; "
            "A_n:A.n,S.in; S_out:S.out,Z.p");
}

TEST_F(HierarchyFold, SubsystemsOfPlainWiresLeaveNoTrace) {
  draw.blocks("test/two", {"A", "B"});
  draw.subsystem("S", {"in"}, {"out"});
  draw.subsystem("S/T", {"a", "b"}, {});
  draw.wire("", {"A.n", "S.in"});
  draw.wire("", {"B.p", "S.out"});
  draw.wire("S", {"in", "T.a"});
  draw.wire("S", {"out", "T.b"});
  draw.wire("S/T", {"a", "b"});
  EXPECT_EQ(compiled(), "A B; A_n:A.n,B.p");
}

TEST_F(HierarchyFold, NodeWithTwoPortsIsExportedUnderTheFirstInOrder) {
  drawSubsystem();
  draw.port("S/early", Side::Right, 0);
  draw.block("Z");
  draw.wire("", {"Z.p", "S.early"});
  draw.wire("S", {"early", "B.p"});
  EXPECT_EQ(compiled(), "A S[B; B_p:B.p; early=B_p] Z; A_n:A.n,S.early,Z.p");
}

TEST_F(HierarchyFold, NetThroughTwoSubsystemsIsOneNodeOutside) {
  for (const char* name : {"S", "T"}) {
    draw.subsystem(name, {"in"}, {});
    draw.block(std::string(name) + "/B");
    draw.wire(name, {"in", "B.p"});
  }
  draw.wire("", {"S.in", "T.in"});
  EXPECT_EQ(compiled(), "S[B; B_p:B.p; in=B_p] T[B; B_p:B.p; in=B_p]; S_in:S.in,T.in");
}

TEST_F(HierarchyFold, ActiveChoiceOfAVariantMeetsItsFrameByName) {
  draw.block("A");
  draw.subsystem("V", {"in"}, {});
  for (const char* name : {"light", "heavy"}) {
    draw.subsystem(std::string("V/") + name, {"in"}, {});
    draw.block(std::string("V/") + name + "/B");
    draw.wire(std::string("V/") + name, {"in", "B.p"});
  }
  draw.wire("", {"A.n", "V.in"});
  draw.set("V", "Variant", u"on");
  draw.set("V", "ActiveVariant", u"heavy");
  EXPECT_EQ(compiled(), "A V[heavy[B; B_p:B.p; in=B_p]; heavy_in:heavy.in; in=heavy_in]; A_n:A.n,V.in");
}

TEST_F(HierarchyFold, OpaqueSubsystemIsALeafWithItsPorts) {
  drawSubsystem();
  draw.set("S", "Opaque", u"on");
  EXPECT_EQ(compiled(), "A S; A_n:A.n,S.in");
}

TEST_F(HierarchyFold, IdsKeepClearOfReservedNamesAndMaskVariables) {
  drawSubsystem();
  maskSubsystem("S", "B", u"3");
  configuration.addReserved("A");
  configuration.addReserved("A_n");
  const std::string text = compiled();
  const auto graph = this->graph();
  EXPECT_EQ(graph.components().count("A"), 0u) << text;
  const gl::core::Component& subsystem = graph.components().at("S");
  EXPECT_EQ(subsystem.graph().components().count("B"), 0u) << "the mask keeps the name";
  EXPECT_EQ(subsystem.parameters().count("B"), 1u);
  EXPECT_EQ(gl::core::object(subsystem.graph().components().begin()->second), u"m/S/B");
}

TEST_F(HierarchyFold, ExportsKeepClearOfInnerNamesAndMaskVariables) {
  draw.block("A");
  draw.subsystem("S", {"B_p", "R", "a b", "a_b"}, {});
  draw.block("S/B");
  draw.block("S/C");
  const std::pair<const char*, const char*> wires[] = {{"B_p", "B.p"}, {"R", "B.n"}, {"a b", "C.p"}, {"a_b", "C.n"}};
  for (const auto& [port, inner] : wires) {
    draw.wire("S", {port, inner});
    draw.block(std::string("X") + inner[0] + inner[2]);
    draw.wire("", {std::string("X") + inner[0] + inner[2] + ".p", std::string("S.") + port});
  }
  maskSubsystem("S", "R", u"1");
  intake();
  const auto graph = this->graph();
  const gl::core::Component& subsystem = graph.components().at("S");
  const std::vector<kmf::VnId>& exported = subsystem.connectorOrder();
  const std::set<kmf::VnId> distinct(exported.begin(), exported.end());
  EXPECT_EQ(distinct.size(), 4u);
  EXPECT_EQ(distinct.count("B_p") + distinct.count("R"), 0u) << "taken by a node and a mask variable";
  EXPECT_EQ(distinct.count("a_b"), 1u);
}

TEST_F(HierarchyFold, AnyBlockNameGivesALegalId) {
  const ustring longName(200, u'x');
  for (const ustring& name : {ustring(u"1 / \n \u00e4"), longName, longName + u"y"}) {
    diagram.root().addBlock(name, "test/two");
  }
  intake();
  const auto graph = this->graph();
  EXPECT_EQ(graph.components().size(), 3u);
  for (const auto& [id, component] : graph.components()) EXPECT_LE(id.size(), 64u);
}

TEST_F(HierarchyFold, ComponentsAndNodesCarryTheirBlocks) {
  drawSubsystem();
  intake();
  const auto graph = this->graph();
  EXPECT_EQ(gl::core::object(graph.components().at("S")), u"m/S");
  EXPECT_EQ(gl::core::object(graph.nodes().at("A_n")), u"m/A");
  EXPECT_EQ(kmf::GantrelId::object("m", kmf::VnIdPath("S.B")), u"m/S/B");
}

TEST_F(HierarchyFold, SubsystemParametersAreItsMaskVariables) {
  drawSubsystem();
  maskSubsystem("S", "k", u"[1 2]*2");
  intake();
  const auto graph = this->graph();
  const ParameterVariant value = graph.components().at("S").parameters().at("k").get("");
  EXPECT_EQ(boost::get<data2::core::Value>(value).data().elements(), (std::vector<double>{2, 4}));
}

/// S with B in it, where S is handed over as a leaf, too. Full paths of what is in the graph that S becomes.
class Namesake : public HierarchyFold {
 protected:
  Namesake() {
    draw.subsystem("S", {"in"}, {});
    draw.block("S/B");
  }
  std::vector<ustring> contentsOf(const char* component) {
    manager().registerModel(key(), "m", configuration);
    std::vector<GTBlock*> blocks;
    for (const std::string& path : handedOver) blocks.push_back(&draw.at(path));
    manager().addConnectivity(key(), "m", {}, blocks);
    const auto graph = this->graph();
    std::vector<ustring> paths;
    const gl::core::Component& found = graph.components().at(component);
    if (!found.isSubgraph()) return paths;
    for (const auto& [id, inner] : found.graph().components()) paths.push_back(gl::core::object(inner));
    std::sort(paths.begin(), paths.end());
    return paths;
  }

  std::vector<std::string> handedOver{"S", "S/B"};
};

TEST_F(Namesake, LeafWithThePathOfASystemJoinsItWhenItWaitsRightBehindIt) {
  EXPECT_THAT(contentsOf("S"), ElementsAre(u"m/S", u"m/S/B"));
  draw.block("Z");
  handedOver.push_back("Z");
  EXPECT_THAT(contentsOf("S"), ElementsAre(u"m/S", u"m/S/B"));
}

TEST_F(Namesake, LeafWithThePathOfASystemStaysWhenAnotherBlockWaitsBeforeIt) {
  draw.block("A");
  handedOver.push_back("A");
  EXPECT_THAT(contentsOf("S"), ElementsAre()) << "of two with one path the leaf stays";
}

TEST_F(Namesake, LeafWithThePathOfASystemStaysWhenAnotherSystemIsAsDeep) {
  draw.subsystem("T", {}, {});
  draw.block("T/B");
  handedOver.push_back("T/B");
  EXPECT_THAT(contentsOf("S"), ElementsAre());
  EXPECT_THAT(contentsOf("T"), ElementsAre(u"m/T/B"));
}

TEST_F(HierarchyFold, ConnectorsAreComparedBeforeLaterPortsAreLookedAt) {
  draw.blocks("test/two", {"A", "B"});
  draw.subsystem("S", {"in"}, {});
  draw.set("S", "Opaque", u"on");
  draw.wire("", {"A.n", "B.p", "S.in"});
  configuration.factory(BlockType::OPAQUE, [](const BlockData&) { return ComponentEmbedding(gl::core::Component()); });
  configuration.connectorPrecedenceFcn(
      [](const kmf::VnIdPath1&, const ConnectorSpec&, const kmf::VnIdPath1&, const ConnectorSpec&) -> bool {
        kmf::throw_message("kinemo:test", "Incomparable");
      });
  EXPECT_EQ(error_of([this] { compiled(); }), "kinemo:test:Incomparable()");
}

TEST_F(HierarchyFold, ModelWithoutANameHasPathsWithoutASeparatorInFront) {
  draw.subsystem("S");
  ModelConnectivity connectivity("m", {}, {&draw.block("S/B")});
  KmIoPortCache ioPorts;
  const auto entry = makeBlockEntry(ioPorts, draw.at("S/B").getHandle(), connectivity);
  LevelTree pending;
  pending.add(entry, entry->embedding(configuration));
  std::vector<boost::shared_ptr<BlockEntryData>> entries;
  EXPECT_EQ(error_of([&] { foldHierarchy(pending, u"", configuration, {}, entries); }),
            "kinemo:host:parameters:UnknownObject(S)");
}

/// A block whose only port has a handle that is no number.
class UnsoundEntry final : public BlockEntryData {
 public:
  UnsoundEntry() {
    PortRecord& port = ports_[std::nan("")];
    port.setName(u"p");
    for (int i = 40; i > 0; --i) port.addConnected(i);
  }
  void collectSubstitutions(std::map<double, double>&) override {}
  ComponentEmbedding embedding(const TranslationConfiguration&) const override {
    gl::core::Component component;
    component.addConnector("p", "test.line");
    ComponentEmbedding made(component);
    made.addPortEmbedding(u"p", "p");
    return made;
  }
  boost::shared_ptr<BlockEntryData> clone() const override { return boost::make_shared<UnsoundEntry>(*this); }
};

TEST_F(HierarchyFold, PortWhoseHandleIsNoNumberIsAnError) {
  const auto entry = boost::make_shared<UnsoundEntry>();
  std::vector<std::unique_ptr<PendingBlock>> group;
  group.push_back(std::make_unique<PendingBlock>(PendingBlock{entry, entry->embedding(configuration), u"A"}));
  PortSubstitutions substitutions;
  ExternalEnds externalEnds;
  EXPECT_THROW(buildGraph(group, substitutions, configuration, externalEnds, {}), std::out_of_range);
}

TEST_F(HierarchyFold, AThousandNestedSystemsFold) {
  using namespace embedded::block_diagram;
  System* system = &diagram.root();
  gtPort* outside = ports(system->addBlock(u"A", "test/two")).back();
  for (int i = 0; i < 999; ++i) {
    GTBlock& subsystem = system->addSubsystem(u"S");
    GTBlock& port = contents(subsystem)->addPort(u"in", Side::Left, 1);
    system->addLine({outside, ports(subsystem).front()});
    system = contents(subsystem);
    outside = ports(port).front();
  }
  system->addLine({outside, ports(system->addBlock(u"B", "test/two")).front()});
  intake();
  const auto graph = this->graph();
  EXPECT_EQ(kinemo::test::flatNets(graph).size(), 1u);
  EXPECT_EQ(graph.nodes().size(), 1u);
}

}  // namespace
}  // namespace gl::gti
