#include "formats/diagram/read_diagram.hpp"

#include "formats/diagram/variables.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/support/physical_environment.hpp"
#include "tests/support/temporary_folder.hpp"
#include "views/block_ports.hpp"

#include <filesystem>

namespace kinemo::formats::diagram {
namespace {

namespace host = embedded::block_diagram;

class ReadDiagram : public test::PhysicalEnvironment {
 protected:
  ReadDiagram() { install_dictionary_reader(); }

  void write(const std::string& name, const std::string& text) { folder.write(name, text); }

  host::Diagram& read_file(const std::string& name) {
    DiagnosticList problems;
    host::Diagram* diagram = read_diagram((folder.path() / name).string(), problems);
    if (diagram == nullptr) throw std::runtime_error(test::all_text(problems));
    return *diagram;
  }

  static gtPort& port(const host::Diagram& diagram, const ustring& path, const char* name) {
    return *views::find_port(*diagram.findBlock(path), name);
  }

  static bool joined(const gtPort& a, const gtPort& b) {
    const std::vector<gtPort*>& net = host::netOf(a);
    return std::find(net.begin(), net.end(), &b) != net.end();
  }

  test::TemporaryFolder folder;
};

TEST_F(ReadDiagram, BlocksHaveTheirParametersAndPlaces) {
  const host::Diagram& diagram = read(R"(kinemo: 1
name: plant
settings: {InitializeInteractiveRuns: "on"}
blocks:
  "R / 1.5":
    type: physical/resistor
    parameters: {R: 2*x, R_unit: kOhm}
    at: [10, 20, 30.5, 40]
    rotate: 90
)");
  EXPECT_EQ("plant", diagram.name());
  EXPECT_EQ(u"on", diagram.parameters().at("InitializeInteractiveRuns"));
  const GTBlock* block = diagram.root().find(u"R / 1.5");
  ASSERT_NE(nullptr, block);
  EXPECT_EQ("physical/resistor", host::libraryName(*block));
  EXPECT_EQ(u"2*x", host::parameter(*block, "R"));
  EXPECT_EQ(u"kOhm", host::parameter(*block, "R_unit"));
  EXPECT_EQ(5, host::sourcePlace(*block).line);
  EXPECT_EQ("model.yaml", *host::sourcePlace(*block).file);
}

TEST_F(ReadDiagram, NameOfTheModelIsTheStemOfTheFile) {
  write("2nd plant.yaml", "kinemo: 1\n");
  EXPECT_TRUE(kmf::VnId::isLegal(read_file("2nd plant.yaml").name()));
  EXPECT_EQ("plain", read("kinemo: 1\n", "some/where/plain.json").name());
}

TEST_F(ReadDiagram, VariablesOfALinkedDictionaryAreSeenByTheModelAndItsBlocks) {
  write("plant.dd.yaml", "kinemo: 1\nvariables:\n  k: 3\n  R0: {value: 2*k, unit: Ohm, runtime: on}\n");
  write("plant.yaml", R"(kinemo: 1
dictionary: plant.dd.yaml
workspace: {R1: k+1}
blocks:
  A: {type: physical/resistor, parameters: {R: R0+1}}
  B: {type: physical/resistor, parameters: {R: R1}}
)");
  host::Diagram& diagram = read_file("plant.yaml");
  const gl::core::Model model = compile(diagram);
  const auto resistance = [&](const char* block) {
    const auto& parameter = model.graph().components().at(kmf::VnId(block)).parameters().at(kmf::VnId("R"));
    return boost::get<data2::core::Value>(parameter.get({})).data().elements().at(0);
  };
  EXPECT_EQ(7, resistance("A"));
  EXPECT_EQ(4, resistance("B"));
  EXPECT_EQ(6, model.runtimeParameters().value("R0").elements().at(0));

  write("plant.dd.yaml", "kinemo: 1\nvariables: {k: 30}\n");
  const std::filesystem::path file = folder.path() / "plant.dd.yaml";
  std::filesystem::last_write_time(file, std::filesystem::last_write_time(file) + std::chrono::seconds(5));
  EXPECT_EQ(30, host::openDictionary(file.string())->size() == 1
                    ? cvGetScalar(host::openDictionary(file.string())->get("k"))
                    : 0)
      << "a file that has changed is read again";
}

TEST_F(ReadDiagram, LinesJoinPortsInAllForms) {
  const host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  a.b: {type: physical/resistor}
  R: {type: physical/resistor}
  G: {type: physical/electrical_reference}
  S:
    type: subsystem
    ports: {left: [in], right: [in.2]}
    blocks: {R: {type: physical/resistor}}
    lines: [[in, R.p], [[in.2], [R, n]]]
lines:
  - [[a.b, p], R.p, S.in]
  - {name: ground, ports: [R.n, G, [S, in.2]]}
)");
  EXPECT_TRUE(joined(port(diagram, u"a.b", "p"), port(diagram, u"S", "in")));
  EXPECT_TRUE(joined(port(diagram, u"G", "g"), port(diagram, u"S", "in.2")));
  EXPECT_FALSE(joined(port(diagram, u"a.b", "p"), port(diagram, u"R", "n")));
  EXPECT_EQ(u"ground", host::linesAt(port(diagram, u"G", "g")).front()->name);
  const GTBlock& inner = *diagram.findBlock(u"S/in.2");
  EXPECT_TRUE(joined(*host::ports(inner).front(), port(diagram, u"S/R", "n")));
}

TEST_F(ReadDiagram, PortsStandOnTheirSidesInTheirOrder) {
  const host::Diagram& diagram =
      read("kinemo: 1\nblocks: {S: {type: subsystem, ports: {left: [z, a], right: [m, b]}}}\n");
  EXPECT_EQ((std::vector<std::string>{"z", "a", "m", "b"}), views::port_names(*diagram.findBlock(u"S")));
  EXPECT_FALSE(port(diagram, u"S", "m").isLeft());
}

TEST_F(ReadDiagram, SubsystemsHaveMasksAndFlags) {
  const host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  A: {type: subsystem, atomic: on, mask: {R: 2*k, name: {value: x y, kind: text, unit: m, prompt: Name}}}
  O: {type: subsystem, opaque: yes, parameters: {ComponentType: my.part}}
)");
  const GTBlock& atomic = *diagram.findBlock(u"A");
  EXPECT_EQ(u"on", host::parameter(atomic, "TreatAsAtomicUnit"));
  const auto mask = MaskInterface::mask(&atomic);
  ASSERT_EQ(2U, mask->parameters.size());
  EXPECT_EQ(u"2*k", host::parameter(atomic, "R"));
  EXPECT_EQ(GTPrmDesc::STRING, mask->parameters[1].type);
  EXPECT_EQ("Name", mask->parameters[1].prompt);
  EXPECT_TRUE(host::isOpaque(*diagram.findBlock(u"O")));
}

TEST_F(ReadDiagram, VariantHasThePortsOfItsChoices) {
  const host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  V:
    variant:
      choices:
        one: {ports: {left: [p], right: [n]}}
        two: {ports: {left: [p, q]}}
      active: two
)");
  const GTBlock& variant = *diagram.findBlock(u"V");
  EXPECT_TRUE(host::isVariant(variant));
  EXPECT_EQ((std::vector<std::string>{"p", "q", "n"}), views::port_names(variant));
  EXPECT_EQ(diagram.findBlock(u"V/two"), host::activeChoice(variant));
}

TEST_F(ReadDiagram, LinkedPartTakesValuesFromItsPlaceOfUse) {
  write("parts/rc.yaml", R"(kinemo: 1
atomic: off
mask: {R: 1, C: 2}
ports: {left: [a], right: [b]}
blocks: {R: {type: physical/resistor, parameters: {R: R}}, In: {type: ./inner.yaml}}
lines: [[a, R.p], [R.n, b]]
)");
  write("parts/inner.yaml", "blocks: {G: {type: physical/electrical_reference}}\n");
  write("top.yaml", R"(kinemo: 1
blocks:
  X: {type: parts/rc.yaml, parameters: {R: 10}}
  Y: {type: ./parts/rc.yaml, mask: {C: 20}, atomic: on}
lines: [[X.b, Y.a]]
)");
  const host::Diagram& diagram = read_file("top.yaml");
  EXPECT_EQ(u"10", host::parameter(*diagram.findBlock(u"X"), "R"));
  EXPECT_EQ(u"2", host::parameter(*diagram.findBlock(u"X"), "C"));
  EXPECT_EQ(u"1", host::parameter(*diagram.findBlock(u"Y"), "R"));
  EXPECT_EQ(u"20", host::parameter(*diagram.findBlock(u"Y"), "C"));
  EXPECT_EQ(u"on", host::parameter(*diagram.findBlock(u"Y"), "TreatAsAtomicUnit"));
  EXPECT_EQ(MaskInterface::mask(diagram.findBlock(u"X")), MaskInterface::mask(diagram.findBlock(u"Y")));
  ASSERT_NE(nullptr, diagram.findBlock(u"Y/In/G"));
  EXPECT_EQ((folder.path() / "parts/inner.yaml").string(), *host::sourcePlace(*diagram.findBlock(u"Y/In/G")).file);
}

TEST_F(ReadDiagram, JsonIsReadAsWell) {
  const host::Diagram& diagram = read(
      R"({"kinemo": 1, "blocks": {"R": {"type": "physical/resistor", "parameters": {"R": 5}}}, "lines": [["R.p", "R.n"]]})",
      "m.json");
  EXPECT_EQ(u"5", host::parameter(*diagram.findBlock(u"R"), "R"));
}

// A tree whose definitions are shared: every level is two copies of the one below, so 2^10 leaves of 11 definitions.
TEST_F(ReadDiagram, AnchorsShareDefinitions) {
  std::string text =
      "kinemo: 1\nblocks:\n  L0: &l0 {type: subsystem, blocks: {G: {type: physical/electrical_reference}}}\n";
  for (int level = 1; level <= 10; ++level) {
    const std::string inner = "*l" + std::to_string(level - 1);
    text += "  L" + std::to_string(level) + ": &l" + std::to_string(level) + " {type: subsystem, blocks: {a: " + inner +
            ", b: " + inner + "}}\n";
  }
  const host::Diagram& diagram = read(text);
  EXPECT_NE(nullptr, diagram.findBlock(u"L10/a/b/a/b/a/b/a/b/a/b/G"));
}

TEST_F(ReadDiagram, FilesNestAThousandLevels) {
  constexpr int levels = 1000;
  for (int i = 0; i < levels; ++i) {
    const std::string next = i + 1 < levels ? "./p" + std::to_string(i + 1) + ".yaml" : "physical/resistor";
    write("p" + std::to_string(i) + ".yaml", "kinemo: 1\n" + std::string(i == 0 ? "" : "ports: {left: [p]}\n") +
                                                 "blocks: {x: {type: " + next + "}}\n" +
                                                 (i == 0 ? "" : "lines: [[p, x.p]]\n"));
  }
  EXPECT_EQ(2U * levels - 1, read_file("p0.yaml").blockCount());
}

/// S holds R and S, which holds R and S, ...; each R ends at a port of its S.
std::string nested_subsystems(int levels) {
  std::string text = "{kinemo: 1, blocks: {";
  for (int i = 0; i < levels; ++i) {
    text += "S: {type: subsystem, ports: {left: [a], right: [b]}, lines: [[a, R.p], [R.n, " +
            std::string(i + 1 < levels ? "S.a], [S.b, b]]" : "b]]") + ", blocks: {R: {type: physical/resistor}, ";
  }
  for (int i = 0; i < levels; ++i) text += "}}";
  return text + "}}\n";
}

TEST_F(ReadDiagram, OneFileNestsAThousandLevels) {
  constexpr int levels = 1000;
  host::Diagram& diagram = read(nested_subsystems(levels));
  EXPECT_EQ(4U * levels, diagram.blockCount());
  ustring innermost = u"S";
  for (int i = 1; i < levels; ++i) innermost += u"/S";
  EXPECT_TRUE(joined(port(diagram, innermost + u"/R", "n"), port(diagram, innermost + u"/b", "b")));
  compile(diagram);
}

TEST_F(ReadDiagram, TooDeepAFileIsRefused) {
  DiagnosticList problems;
  EXPECT_EQ(nullptr, read_diagram_text(nested_subsystems(3001), "model.yaml", problems));
  ASSERT_EQ(1U, problems.all().size()) << test::all_text(problems);
  EXPECT_EQ("diagram:too-deep", problems.all().front().rule);
}

TEST_F(ReadDiagram, TakesManyBlocksAndALongLine) {
  constexpr std::size_t count = 20'000;
  std::string text = "kinemo: 1\nblocks:\n";
  std::string line = "lines:\n  - [";
  for (std::size_t i = 0; i < count; ++i) {
    text += "  G" + std::to_string(i) + ": {type: physical/electrical_reference}\n";
    line += "G" + std::to_string(i) + ".g, ";
  }
  const host::Diagram& diagram = read(text + line + "]\n");
  EXPECT_EQ(count, diagram.blockCount());
  EXPECT_EQ(count, host::netOf(port(diagram, u"G7", "g")).size());
}

}  // namespace
}  // namespace kinemo::formats::diagram
