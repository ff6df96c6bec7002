// Diagrams of netlists: what they connect must be what the names of the netlist say, through all levels.

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <set>

#include "formats/spice/netlist_reader.hpp"
#include "formats/spice/text_file.hpp"
#include "platform/block_diagram/mask.hpp"
#include "tests/formats/spice/circuit_fixture.hpp"
#include "tests/formats/spice/flatten.hpp"
#include "views/flat_network.hpp"
#include "views/nets.hpp"

namespace kinemo::formats::spice {
namespace {

namespace host = embedded::block_diagram;

/// Which pins ("x1/r1.2") share a node, and which of them are at ground.
using Partition = std::set<std::set<std::string>>;

class ReadNetlist : public CircuitFixture {
 protected:
  Partition partition_of(Diagram& diagram) {
    Partition partition;
    for (const views::Net& net : views::make_nets(compile(diagram), diagram)) {
      std::set<std::string> pins;
      for (const views::NetPin& pin : net.pins) {
        pins.insert(pin.port == "g" ? "ground" : pin.block + "." + std::to_string(pin.index));
      }
      partition.insert(pins);
    }
    return partition;
  }

  static Partition partition_by_names(const std::string& text) {
    DiagnosticList problems;
    const Netlist netlist = read_cards_and_resolve(make_text_file("t", "t", "title\n" + text), problems);
    std::map<std::string, std::set<std::string>> nodes;
    for (const auto& [path, element] : flatten(netlist, problems)) {
      std::string block = path;
      std::replace(block.begin(), block.end(), '.', '/');
      for (std::size_t i = 0; i < element.nodes.size(); ++i) {
        nodes[element.nodes[i]].insert(block + "." + std::to_string(i + 1));
      }
    }
    if (nodes.count("0") != 0) {
      nodes["0"].insert("ground");
    }
    Partition partition;
    for (const auto& [name, pins] : nodes) {
      partition.insert(pins);
    }
    return partition;
  }

  /// The parameter "value" of the component that stands for the block.
  static double value_of(const gl::core::Model& model, const std::string& block) {
    const views::FlatNetwork network = views::flatten(model);
    for (const views::FlatComponent& component : network.components) {
      if (component.block == block) {
        const auto value = component.component->parameters().at("value").get({});
        return boost::get<data2::core::Value>(value).data().elements().at(0);
      }
    }
    throw std::runtime_error("no component of " + block);
  }
};

TEST_F(ReadNetlist, ConnectsWhatItsNamesConnect) {
  const char* const circuits[] = {
      "r1 a b 1\nr2 b 0 1\nv1 a gnd 1",
      // through levels, with nodes given twice, left open, and swapped
      "x1 a b s\nx2 a a s\nx3 b 0 s\n.subckt s p q\nr1 p n 1\nxi n q t\n.ends\n.subckt t q p\nr1 p q 1\nr2 p open "
      "1\n.ends",
      // ground and globals from deep inside only
      ".global vdd\nx1 a s\nr0 vdd a 1\n.subckt s p\nx1 p t\n.ends\n.subckt t p\nr1 p vdd 1\nr2 p 0 1\n.ends",
      "x1 a c s\n.global vdd\n.subckt s b vdd\nr1 b vdd 1\nx1 vdd b t\n.ends\n.subckt t vdd gnd\nr1 vdd gnd 1\n.ends",
      // inner nodes named from outside, at the top and on the way
      "x3 p q t\nr4 x3.x2.n x3.x2.a 1\nr5 x3.m 0 1\n.subckt s a b\nr1 a n 1\nr2 n b 1\n.ends\n"
      ".subckt t a b\nx2 a b s\nr3 x2.n m 1\n.ends",
      // names of nodes that are names of elements and calls as well
      "r1 r1 x1 1\nx1 r1 r2 s\n.subckt s r1 x1\nr1 r1 x1 1\nx1 x1 r1 t\n.ends\n.subckt t 0a r1\nr1 0a r1 1\nr0 r1 0 "
      "1\n.ends",
      // conditions by instance
      "x1 a b s k=1\nx2 a b s k=2\n.subckt s p q k=0\n.if (k==1)\nr1 p q 1\n.else\nr1 q q 1\nr2 p 0 1\n.endif\n.ends",
      "e1 a b poly(2) c 0 d 0 0 1\nq1 c b e s qm\nd1 a b dm\nk1 l1 l2 1\nl1 a b 1\nl2 c d 1\n.model qm npn\n.model dm "
      "d",
  };
  for (const char* const circuit : circuits) {
    Diagram& diagram = read_circuit(circuit);
    EXPECT_EQ(partition_of(diagram), partition_by_names(circuit)) << circuit;
    Diagram::close(diagram);
  }
}

TEST_F(ReadNetlist, CallsAreMaskedSubsystemsWithTheNamesOfTheirNodes) {
  Diagram& diagram = read_circuit(
      "X1 n1 n2 Amp gain={2*g}\n.param g=3\n.subckt amp in out gain=1 twice={gain*2}\nr1 in out {twice*g}\nr2 out 0 "
      "1\n.ends");
  GTBlock& call = *diagram.findBlock(u"x1");
  EXPECT_NE(nullptr, host::subsystemPort(call, u"in"));
  EXPECT_NE(nullptr, host::subsystemPort(call, u"out"));
  EXPECT_NE(nullptr, host::subsystemPort(call, u"0"));
  EXPECT_EQ("amp", MaskInterface::mask(&call)->type);
  EXPECT_EQ("2*g", parameter(diagram, u"x1", "gain"));
  EXPECT_EQ("2*g*2", parameter(diagram, u"x1", "twice"));
  EXPECT_EQ("twice*g", parameter(diagram, u"x1/r1", "value"));
  EXPECT_EQ("runtime", parameter(diagram, u"x1/r1", "value_conf"));
  EXPECT_EQ("in", kmf::ustring_to_utf8_string(host::contents(call)->lines().front()->name));
}

TEST_F(ReadNetlist, ElementsKeepWhatTheirCardsSay) {
  const Diagram& diagram = read_circuit(
      ".model qm npn(is={2*1e-15} bf=100)\nq1 c b e qm 3 off\nv1 a 0 dc 5 sin(0 2 1k)\nf1 a 0 v1 2\n"
      "k1 l1 l2 0.5\nl1 a b 1u\nl2 b c 2u");
  EXPECT_EQ("3", parameter(diagram, u"q1", "terminals"));
  EXPECT_EQ("3", parameter(diagram, u"q1", "value"));
  EXPECT_EQ("qm", parameter(diagram, u"q1", "model"));
  EXPECT_EQ("npn(is=2e-15 bf=100)", parameter(diagram, u"q1", "model_card"));
  EXPECT_EQ("[]", parameter(diagram, u"q1", "model_values"));
  EXPECT_EQ("off", parameter(diagram, u"q1", "text"));
  EXPECT_EQ("5", parameter(diagram, u"v1", "value"));
  EXPECT_EQ("sin(0 2 1k)", parameter(diagram, u"v1", "text"));
  EXPECT_EQ("[]", parameter(diagram, u"v1", "text_values"));
  EXPECT_EQ("v1", parameter(diagram, u"f1", "elements"));
  EXPECT_EQ("l1 l2", parameter(diagram, u"k1", "elements"));
}

TEST_F(ReadNetlist, ValuesComeOutOfTheCompile) {
  Diagram& diagram = read_circuit(
      "x1 a s w='b>1 ? 10 : 20'\n.param b=2 pi=3 end=4\n.subckt s p w=1 l={w+1}\n.param area={w*l+pi+end}\n"
      "xi p t v={area**2}\n.ends\n.subckt t p v=1\nr1 p 0 {v+b}\n.ends");
  const gl::core::Model model = compile(diagram);
  EXPECT_THAT(model.runtimeParameters().runtimeParameters(),
              testing::ElementsAre(kmf::VnId("b"), kmf::VnId("p_end"), kmf::VnId("p_pi")));
  EXPECT_EQ((10 * 11 + 7) * (10 * 11 + 7) + 2, value_of(model, "x1/xi/r1"));
}

TEST_F(ReadNetlist, WhatWaitsForTheCircuitIsATextOfTheElement) {
  Diagram& diagram = read_circuit(
      ".param t={temper+1}\nr1 a 0 {2*t} tc1=1\nv1 a 0 {2*t} ac 1\nx1 a s\n"
      ".subckt s p w={temper*2}\nr1 p 0 {w+1}\nr2 p 0 'v(p)*w'\n.ends");
  EXPECT_EQ("r={2*(temper+1)} tc1=1", parameter(diagram, u"r1", "text"));
  EXPECT_EQ("{2*(temper+1)} ac 1", parameter(diagram, u"v1", "text"));
  EXPECT_EQ("0", parameter(diagram, u"x1", "w"));
  EXPECT_EQ("r={temper*2+1}", parameter(diagram, u"x1/r1", "text"));
  EXPECT_EQ("r={v(p)*(temper*2)}", parameter(diagram, u"x1/r2", "text"));
  compile(diagram);
}

TEST_F(ReadNetlist, NothingIsOpenAfterAMistake) {
  EXPECT_EQ(nullptr, read_netlist_text("title\nr1 a b {nope}\nr2 a\n", "broken.cir", {}, problems));
  EXPECT_EQ(1U, problems.error_count());
  DiagnosticList later;
  EXPECT_EQ(nullptr, read_netlist_text("title\nr1 a b {nope}\n", "broken.cir", {}, later));
  EXPECT_THAT(test::all_text(later), testing::HasSubstr("broken.cir:2:1: error: there is no parameter 'nope'"));
  EXPECT_TRUE(Diagram::open().empty());
  EXPECT_EQ(nullptr, read_netlist("no/such/file.cir", {}, later));
}

TEST_F(ReadNetlist, TheModelIsNamedByItsFileOrAsAsked) {
  EXPECT_EQ("x1_rc_2", read_netlist_text("title\n", "some/1 rc-2.cir", {}, problems)->name());
  EXPECT_EQ("mine", read_netlist_text("title\n", "some/1 rc-2.cir", {"mine"}, problems)->name());
}

}  // namespace
}  // namespace kinemo::formats::spice
