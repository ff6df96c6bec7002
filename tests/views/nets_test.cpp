#include "views/nets.hpp"

#include "formats/read_text.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/support/physical_environment.hpp"
#include "views/block_ports.hpp"
#include "views/flat_network.hpp"
#include "views/host_nets.hpp"

#include <nlohmann/json.hpp>

#include <set>
#include <sstream>

namespace kinemo::views {
namespace {

namespace host = embedded::block_diagram;

using Pins = std::set<std::string>;

class Nets : public test::PhysicalEnvironment {
 protected:
  std::map<std::string, Pins> nets_of(const std::string& text) {
    host::Diagram& diagram = read(text);
    std::map<std::string, Pins> result;
    for (const Net& net : make_nets(compile(diagram), diagram)) {
      Pins& pins = result[net.name];
      EXPECT_TRUE(pins.empty()) << "two nets are called " << net.name;
      for (const NetPin& pin : net.pins) pins.insert(pin.block + "." + pin.port);
    }
    return result;
  }
};

// in --- Outer( a --- Inner( b --- R --- c ) --- d ) --- G, with a plain wire through Pass
constexpr const char* nested = R"(kinemo: 1
name: m
blocks:
  V: {type: physical/voltage_source}
  Outer:
    type: subsystem
    ports: {left: [a], right: [d]}
    blocks:
      Inner:
        type: subsystem
        ports: {left: [b], right: [c]}
        blocks: {R: {type: physical/resistor}, C: {type: physical/capacitor}}
        lines:
          - {name: deep, ports: [b, R.p]}
          - {name: middle, ports: [R.n, C.p]}
          - [C.n, c]
    lines:
      - {name: shallow, ports: [a, Inner.b]}
      - [Inner.c, d]
  Pass: {type: subsystem, ports: {left: [x], right: [y]}, lines: [[x, y]]}
  G: {type: physical/electrical_reference}
lines:
  - [V.p, Pass.x]
  - [Pass.y, Outer.a]
  - {name: ground, ports: [V.n, Outer.d, G]}
)";

TEST_F(Nets, RunThroughAllLevelsAndWires) {
  const std::map<std::string, Pins> nets = nets_of(nested);
  const std::map<std::string, Pins> expected{
      {"Outer/shallow", {"V.p", "Outer/Inner/R.p"}},
      {"Outer/Inner/middle", {"Outer/Inner/R.n", "Outer/Inner/C.p"}},
      {"ground", {"V.n", "G.g", "Outer/Inner/C.n"}},
  };
  EXPECT_EQ(expected, nets);
}

TEST_F(Nets, WithoutNamedLinesAreCalledByTheirFirstPin) {
  const std::map<std::string, Pins> nets = nets_of(
      "kinemo: 1\nblocks: {R: {type: physical/resistor}, G: {type: physical/electrical_reference}}\nlines: [[R.p, "
      "G]]\n");
  EXPECT_EQ((std::map<std::string, Pins>{{"G.g", {"G.g", "R.p"}}, {"R.n", {"R.n"}}}), nets);
}

TEST_F(Nets, OfOneNameGetNumbers) {
  const std::map<std::string, Pins> nets = nets_of(R"(kinemo: 1
blocks:
  A: {type: physical/resistor}
  B: {type: physical/resistor}
lines:
  - {name: x, ports: [A.p]}
  - {name: x, ports: [A.n]}
  - {name: x_2, ports: [B.p]}
  - [B.n, B.n]
)");
  EXPECT_EQ((std::map<std::string, Pins>{{"x", {"A.p"}}, {"x_3", {"A.n"}}, {"x_2", {"B.p"}}, {"B.n", {"B.n"}}}), nets);
}

TEST_F(Nets, FollowTheActiveChoiceOfAVariant) {
  const std::string variant = R"(kinemo: 1
blocks:
  V:
    variant:
      choices:
        one: {ports: {left: [p]}, blocks: {R: {type: physical/resistor}}, lines: [[p, R.p]]}
        two: {ports: {left: [p]}, blocks: {C: {type: physical/capacitor}}, lines: [{name: inside, ports: [p, C.n]}]}
      active: two
  G: {type: physical/electrical_reference}
lines: [[V.p, G]]
)";
  EXPECT_EQ((std::map<std::string, Pins>{{"V/two/inside", {"G.g", "V/two/C.n"}}, {"V/two/C.p", {"V/two/C.p"}}}),
            nets_of(variant));
}

TEST_F(Nets, OpaqueSubsystemsAreBlocks) {
  const std::map<std::string, Pins> nets = nets_of(R"(kinemo: 1
blocks:
  O:
    type: subsystem
    opaque: on
    ports: {left: [in 1], right: [out]}
    parameters: {ComponentType: a.b}
  G: {type: physical/electrical_reference}
lines: [{name: x, ports: [[O, in 1], G]}]
)");
  EXPECT_EQ((std::map<std::string, Pins>{{"x", {"G.g", "O.in 1"}}}).begin()->second, nets.at("x"));
}

TEST_F(Nets, AsJsonAreSortedAndCountPortsFromOne) {
  host::Diagram& diagram = read(nested);
  std::ostringstream out;
  write_nets_json(out, "m", make_nets(compile(diagram), diagram));
  const nlohmann::json json = nlohmann::json::parse(out.str());
  EXPECT_EQ("m", json.at("model"));
  std::vector<std::string> names;
  for (const nlohmann::json& net : json.at("nets")) names.push_back(net.at("name"));
  EXPECT_TRUE(std::is_sorted(names.begin(), names.end()));
  const nlohmann::json expected = nlohmann::json::parse(
      R"([{"block": "G", "port": "g", "index": 1}, {"block": "Outer/Inner/C", "port": "n", "index": 2},
          {"block": "V", "port": "n", "index": 2}])");
  EXPECT_EQ(expected, json.at("nets").at(2).at("pins"));
}

/// Classes of leaf ports as the diagram's lines join them, found without the compile.
std::set<Pins> classes_of_lines(host::Diagram& diagram, const FlatNetwork& network) {
  HostNets nets;
  std::set<Pins> classes;
  for (const FlatComponent& component : network.components) {
    const GTBlock& block = *diagram.findBlock(kmf::utf8_string_to_ustring(component.block));
    for (gtPort* start : host::ports(block)) {
      Pins pins;
      nets.follow(*start, [&](const gtPort& port) {
        const GTBlock& owner = *port.getGrOwnerBlock();
        const bool leaf = !host::isIoPort(owner) && (!host::isSubsystem(owner) || host::isOpaque(owner));
        if (leaf) pins.insert(relative_path(owner) + "." + port_name(port));
      });
      if (!pins.empty()) classes.insert(pins);
    }
  }
  return classes;
}

TEST_F(Nets, OfTheCompiledGraphAreThoseOfTheDrawing) {
  for (const char* file : {"/examples/rc_lowpass.yaml", "/examples/motor_drive.yaml"}) {
    formats::DiagnosticList problems;
    auto* diagram = formats::diagram::read_diagram(std::string(KINEMO_SOURCE_DIR) + file, problems);
    ASSERT_NE(nullptr, diagram) << test::all_text(problems);
    const gl::core::Model model = compile(*diagram);
    std::set<Pins> compiled;
    for (const Net& net : make_nets(model, *diagram)) {
      Pins pins;
      for (const NetPin& pin : net.pins) pins.insert(pin.block + "." + pin.port);
      compiled.insert(pins);
    }
    EXPECT_EQ(classes_of_lines(*diagram, flatten(model)), compiled) << file;
  }
}

}  // namespace
}  // namespace kinemo::views
