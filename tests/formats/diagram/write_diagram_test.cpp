// Writing and reading back is the identity; what a file can't hold is refused.

#include "formats/diagram/write_diagram.hpp"

#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "formats/diagram/value_text.hpp"
#include "formats/diagram/variables.hpp"
#include "formats/read_text.hpp"
#include "formats/spice/read_netlist.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/formats/diagram/diagram_account.hpp"
#include "tests/formats/diagram/random_diagram.hpp"
#include "tests/support/no_leaks.hpp"
#include "tests/support/physical_environment.hpp"
#include "tests/support/temporary_folder.hpp"
#include "views/block_ports.hpp"
#include "views/model_json.hpp"

#include <gmock/gmock.h>

#include <boost/make_shared.hpp>

#include <filesystem>
#include <functional>
#include <sstream>

namespace kinemo::formats::diagram {
namespace {

namespace host = embedded::block_diagram;
using ::testing::HasSubstr;
using ::testing::Not;

/// Ends behind the environment, whose diagrams hold values.
struct Watched {
  /// The domain keeps some constants from its first compile on.
  Watched() { leaks.allow_kept_arrays(16); }
  test::LeakGuard leaks;
};

class WriteDiagram : private Watched, public test::PhysicalEnvironment {
 protected:
  WriteDiagram() { install_dictionary_reader(); }

  std::string written(host::Diagram& diagram, const std::string& file = {}) {
    DiagnosticList problems;
    const auto text = diagram_text(diagram, file, problems);
    EXPECT_EQ("", test::all_text(problems));
    return text.value_or("");
  }

  std::string refusal(host::Diagram& diagram) {
    DiagnosticList problems;
    EXPECT_FALSE(diagram_text(diagram, {}, problems).has_value());
    return test::all_text(problems);
  }

  std::string model_text(host::Diagram& diagram) {
    std::ostringstream out;
    views::write_model_json(out, "m", "physical", compile(diagram));
    return out.str();
  }

  /// Reads what is written of the diagram, which is closed; everything must be as before.
  host::Diagram& again(host::Diagram& diagram, bool compiles = true) {
    const std::string account = test::account_of(diagram);
    const std::string model = compiles ? model_text(diagram) : "";
    const std::string text = written(diagram);
    host::Diagram::close(diagram);
    host::Diagram& copy = read(text);
    EXPECT_EQ(account, test::account_of(copy)) << text;
    EXPECT_EQ(model, compiles ? model_text(copy) : "") << text;
    EXPECT_EQ(text, written(copy));
    return copy;
  }

  host::Diagram& read_circuit(const std::string& path) {
    DiagnosticList problems;
    auto* diagram = spice::read_netlist(path, {}, problems);
    if (diagram == nullptr) throw std::runtime_error(test::all_text(problems));
    return *diagram;
  }

  host::Diagram& read_diagram_file(const std::string& path) {
    DiagnosticList problems;
    auto* diagram = read_diagram(path, problems);
    if (diagram == nullptr) throw std::runtime_error(test::all_text(problems));
    return *diagram;
  }

  test::TemporaryFolder folder;
};

TEST_F(WriteDiagram, ExamplesReadBackAsTheyWere) {
  for (const char* example : {"rc_lowpass.yaml", "motor_drive.yaml"}) {
    SCOPED_TRACE(example);
    again(read_diagram_file(KINEMO_SOURCE_DIR "/examples/" + std::string(example)));
  }
}

TEST_F(WriteDiagram, NetlistsBecomeDiagramsOfTheSameModel) {
  const std::string circuits = KINEMO_SOURCE_DIR "/tests/formats/spice/";
  for (const char* circuit :
       {"../../../examples/amplifier.cir", "circuits/adder.cir", "circuits/elements.cir", "round_trip/couplings.cir",
        "round_trip/functions.cir", "round_trip/models.cir", "round_trip/multiplied.cir",
        "round_trip/nested_parameters.cir", "round_trip/node_names.cir", "round_trip/sources.cir"}) {
    SCOPED_TRACE(circuit);
    host::Diagram& diagram = read_circuit(circuits + circuit);
    const std::string name = diagram.name();
    EXPECT_EQ(name, again(diagram).name());
  }
}

TEST_F(WriteDiagram, AModelIsWrittenAsAPersonWouldWriteIt) {
  host::Diagram& diagram = read(R"(kinemo: 1
name: plant
settings: {InitializeInteractiveRuns: "on"}
workspace: {R0: {value: 1e3, unit: Ohm, runtime: true}, k: "[1 2; 3 4]", t: "'it''s'"}
blocks:
  R 1.5: {type: physical/resistor, parameters: {R: 2*x, R_unit: kOhm}, at: [10.1, 20, 30.3, 40], rotate: 90}
  S:
    type: subsystem
    mask: {R: 2*k, name: {value: x y, kind: text, prompt: Name}}
    parameters: {R: 3*k}
    ports: {left: [in], right: [{name: out, at: [0, 0, 10, 10]}]}
    blocks: {R: {type: physical/resistor}}
    lines: [[in, R.p], [R.n, out]]
lines:
  - [[R 1.5, p], S.in]
  - {name: ground, ports: [[R 1.5, n]]}
)");
  EXPECT_EQ(R"(kinemo: 1
name: plant
settings: {InitializeInteractiveRuns: "on"}
workspace:
  R0: {value: 1000, unit: Ohm, runtime: on}
  k: "[1, 2; 3, 4]"
  t: "'it''s'"
blocks:
  R 1.5: {type: physical/resistor, parameters: {R: 2*x, R_unit: kOhm}, at: [10.1, 20, 30.3, 40], rotate: 90}
  S:
    type: subsystem
    mask:
      R: 2*k
      name: {value: x y, prompt: Name, kind: text}
    parameters: {R: 3*k}
    ports: {left: [in], right: [{name: out, at: [0, 0, 10, 10]}]}
    blocks:
      R: {type: physical/resistor}
    lines:
      - [in, R.p]
      - [R.n, out]
lines:
  - [[R 1.5, p], S.in]
  - {name: ground, ports: [[R 1.5, n]]}
)",
            written(diagram));
}

TEST_F(WriteDiagram, AMaskOfManySubsystemsIsWrittenOnceAndStaysOneMask) {
  host::Diagram& diagram = host::Diagram::create("m");
  const auto mask =
      boost::make_shared<GTMaskDefinition>(GTMaskDefinition{"amp",
                                                            "An amplifier: it amplifies.",
                                                            {{"k", "", u"1", GTPrmDesc::EDIT, "V", {}},
                                                             {"mode", "Mode", u"b", GTPrmDesc::POPUP, "", {"a", "b"}},
                                                             {"log", "log", u"on", GTPrmDesc::BOOLEAN, "", {}}}});
  for (const ustring name : {u"A", u"B", u"C"}) {
    MaskInterface::setMask(&diagram.root().addSubsystem(name), mask);
    host::setParameter(*diagram.root().find(name), "k", name);
  }
  EXPECT_THAT(written(diagram), HasSubstr("mask: *mask1\n"));
  const host::Diagram& copy = again(diagram, false);
  EXPECT_EQ(MaskInterface::mask(copy.root().find(u"A")), MaskInterface::mask(copy.root().find(u"C")));
}

TEST_F(WriteDiagram, VariantsAndFlagsAreKept) {
  again(read(R"(kinemo: 1
blocks:
  O: {type: subsystem, opaque: on, atomic: on, parameters: {ComponentType: my.part, "odd name": "on"}}
  V:
    ports: {left: [a, b]}
    variant:
      active: "1"
      choices:
        "1": {type: subsystem, ports: {left: [a]}, blocks: {R: {type: physical/resistor}}, lines: [[a, R.p]]}
        inner: {ports: {}, variant: {active: x, choices: {x: {type: subsystem}}}}
)"),
        false);
}

TEST_F(WriteDiagram, RandomDiagramsOfOddNamesReadBackAsTheyWere) {
  for (unsigned seed = 1; seed <= 40 && !HasFailure(); ++seed) {
    SCOPED_TRACE(seed);
    host::Diagram::close(again(test::RandomDiagram(seed).diagram(), false));
  }
}

TEST_F(WriteDiagram, AThousandLevelsAreWrittenAndReadAndMoreThanAFileHoldsAreRefused) {
  host::Diagram& diagram = host::Diagram::create("deep");
  host::System* system = &diagram.root();
  for (int level = 0; level < 1000; ++level) system = host::contents(system->addSubsystem(u"s"));
  system->addBlock(u"R", "physical/resistor");
  DiagnosticList problems;
  const std::string text = written(diagram);
  host::Diagram::close(diagram);
  host::Diagram& copy = read(text);
  EXPECT_EQ(1001U, copy.blockCount());
  system = host::contents(*copy.root().find(u"s"));
  for (int level = 0; level < 3100; ++level) {
    system = host::contents(system->subsystems().empty() ? system->addSubsystem(u"s") : *system->subsystems().front());
  }
  EXPECT_THAT(refusal(copy), HasSubstr("[diagram:too-deep]"));
}

TEST_F(WriteDiagram, ValuesOfVariablesAreToldInTheLanguage) {
  const char* const expressions[] = {"1",
                                     "-0.1",
                                     "1e-310",
                                     "0/0",
                                     "1/0",
                                     "-1/0",
                                     "[]",
                                     "zeros(0,3)",
                                     "[1 2;3 -4]",
                                     "reshape(1:8,[2 2 2])",
                                     "2+3i",
                                     "[1 -2i; 0 1e9]",
                                     "int8(-5)",
                                     "uint16([1 2 3])",
                                     "single(0.1)",
                                     "1==1",
                                     "[1 2]>1",
                                     "''",
                                     "'it''s \"x\"'",
                                     "['ab';'cd']",
                                     "char([10 65])",
                                     "zeros(1,0)",
                                     "char(zeros(1,0))",
                                     "{}",
                                     "cell(2,0)",
                                     "{1, 'a'; {2, {}}, [1 2]}",
                                     "struct('a', 1, 'b', {{1, 2}})",
                                     "struct('a', {1, 'x', {}})",
                                     "struct()",
                                     "kinemo.Value([1 2], 'kOhm')",
                                     "@sin",
                                     "@(x) sin(x)^2",
                                     "struct('v', {kinemo.Value(1, 'V')})",
                                     "int64(9007199254740993)"};
  const embedded::scripting_runtime::Scope none;
  for (const char* expression : expressions) {
    SCOPED_TRACE(expression);
    const cvUniquePtr value = embedded::scripting_runtime::evaluate(expression, none);
    std::string reason;
    const auto text = value_text(value.get(), reason);
    ASSERT_TRUE(text) << reason;
    const cvUniquePtr copy = embedded::scripting_runtime::evaluate(text->text, none);
    EXPECT_EQ(cvGetClassName(value.get()), cvGetClassName(copy.get())) << text->text;
    EXPECT_EQ(cvGetDimensions(value.get()), cvGetDimensions(copy.get())) << text->text;
    const bool not_comparable = std::string(expression) == "0/0" || expression[0] == '@';
    EXPECT_TRUE(not_comparable || cvAreMatricesEqual(value.get(), copy.get())) << text->text;
  }
}

TEST_F(WriteDiagram, WhatAFileCannotHoldIsRefused) {
  const auto subsystem = [](host::Diagram& m) -> GTBlock& { return m.root().addSubsystem(u"S"); };
  const struct {
    const char* expected;
    std::function<void(host::Diagram&)> make;
  } cases[] = {
      {"'Colour' has no place in a file", [&](auto& m) { host::setProperty(subsystem(m), "Colour", u"red"); }},
      {"'Rotation' can't be '45'", [&](auto& m) { host::setProperty(subsystem(m), "Rotation", u"45"); }},
      {"'Position' can't be '[1 2 3]'", [&](auto& m) { host::setProperty(subsystem(m), "Position", u"[1 2 3]"); }},
      {"'Position' can't be '[1e300 0 1 1]'",
       [&](auto& m) { host::setProperty(subsystem(m), "Position", u"[1e300 0 1 1]"); }},
      {"names none of its choices", [&](auto& m) { host::setParameter(subsystem(m), "Variant", u"on"); }},
      {"is no variant", [&](auto& m) { host::setParameter(subsystem(m), "ActiveVariant", u"x"); }},
      {"can't end with '/'", [](auto& m) { m.root().addSubsystem(u"a/"); }},
      {"half of a character", [](auto& m) { m.root().addSubsystem(ustring(1, char16_t(0xD800))); }},
      {"a choice of a variant is a subsystem",
       [&](auto& m) {
         GTBlock& variant = subsystem(m);
         host::contents(variant)->addBlock(u"R", "physical/resistor");
         host::contents(variant)->addSubsystem(u"x");
         host::setParameter(variant, "Variant", u"on");
         host::setParameter(variant, "ActiveVariant", u"x");
       }},
      {"keeps the value of 'k'",
       [](auto& m) {
         m.setVariable("k", u"1", "", false);
         m.setVariable("f", u"@(x) k*x", "", false);
       }},
      {"a variable of that name hides",
       [](auto& m) {
         m.setVariable("a", u"int8(1)", "", false);
         m.setVariable("int8", u"1", "", false);
       }},
      {"can't give a variable that name", [](auto& m) { m.setVariable("end", u"1", "", false); }},
  };
  for (const auto& row : cases) {
    SCOPED_TRACE(row.expected);
    host::Diagram& diagram = host::Diagram::create("m");
    row.make(diagram);
    const std::string told = refusal(diagram);
    EXPECT_THAT(told, HasSubstr(row.expected));
    EXPECT_THAT(told, HasSubstr("[diagram:unwritable]"));
    host::Diagram::close(diagram);
  }
}

TEST_F(WriteDiagram, DictionaryIsLinkedFromTheFolderOfTheFile) {
  folder.write("plant.dd.yaml", "kinemo: 1\nvariables: {k: 30}\n");
  const std::string file = folder.write("plant.yaml", "kinemo: 1\ndictionary: plant.dd.yaml\nworkspace: {v: k+1}\n");
  host::Diagram& diagram = read_diagram_file(file);
  EXPECT_THAT(written(diagram, file), HasSubstr("dictionary: plant.dd.yaml\nworkspace:\n  v: 31\n"));
  EXPECT_THAT(written(diagram, folder.path() / "deeper" / "x.yaml"), HasSubstr("dictionary: \"../plant.dd.yaml\"\n"));
}

TEST_F(WriteDiagram, APartStaysALinkUntilItsContentsChange) {
  folder.write("inner.yaml", "kinemo: 1\nblocks: {R: {type: physical/resistor}}\n");
  folder.write(
      "part.yaml",
      "kinemo: 1\nmask: {R: 1}\nports: {left: [a]}\nblocks: {R: {type: physical/resistor}, I: {type: ./inner.yaml}}\n");
  const std::string file = folder.write("plant.yaml", R"(kinemo: 1
blocks:
  A: {type: ./part.yaml, parameters: {R: 7}, atomic: on, at: [0, 0, 30, 40]}
  B: {type: ./part.yaml}
)");
  host::Diagram& diagram = read_diagram_file(file);
  host::setParameter(*diagram.findBlock(u"B/R"), "R", u"5");
  DiagnosticList problems;
  ASSERT_TRUE(write_diagram(diagram, file, problems)) << test::all_text(problems);
  std::string reason;
  EXPECT_EQ(R"(kinemo: 1
name: plant
blocks:
  A: {type: ./part.yaml, parameters: {R: 7}, atomic: on, at: [0, 0, 30, 40]}
  B:
    type: subsystem
    mask: &mask1
      R: 1
    ports: {left: [a]}
    blocks:
      R: {type: physical/resistor, parameters: {R: 5}}
      I: {type: ./inner.yaml}
)",
            read_text(file, reason).value_or(reason));
  const std::string account = test::account_of(diagram);
  host::Diagram::close(diagram);
  EXPECT_EQ(account, test::account_of(read_diagram_file(file)));
  EXPECT_EQ(1U, host::Diagram::open().size());
  EXPECT_THAT(written(*host::Diagram::open().front(), folder.path() / "part.yaml"), Not(HasSubstr("./part.yaml")))
      << "a file that is written can't link to itself";
}

TEST_F(WriteDiagram, AFileIsReplacedByTheWholeTextOrNotAtAll) {
  const std::string file = folder.write("plant.yaml", "as before");
  host::Diagram& diagram = host::Diagram::create("plant");
  DiagnosticList problems;
  host::setProperty(diagram.root().addSubsystem(u"S"), "Colour", u"red");
  EXPECT_FALSE(write_diagram(diagram, file, problems));
  std::string reason;
  EXPECT_EQ("as before", read_text(file, reason));
  host::removeBlock(*diagram.root().find(u"S"));
  EXPECT_FALSE(write_diagram(diagram, folder.path() / "missing" / "x.yaml", problems));
  EXPECT_THAT(test::all_text(problems), HasSubstr("[diagram:unwritable-file]"));
  EXPECT_TRUE(write_diagram(diagram, file, problems));
  EXPECT_EQ("kinemo: 1\nname: plant\n", read_text(file, reason));
  EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder.path()), {})) << "no temporary file is left";
}

}  // namespace
}  // namespace kinemo::formats::diagram
