#include "tests/apps/program.hpp"

#include <gmock/gmock.h>

#include <regex>

namespace kinemo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::IsEmpty;

struct BadInput {
  const char* name;
  std::map<std::string, std::string> files;        ///< the first one, "m.*", is the model
  std::vector<std::vector<std::string>> messages;  ///< for each error, texts that one line of standard error holds
};

std::string diagram(const std::string& rest) {
  return "kinemo: 1\n" + rest;
}

std::vector<BadInput> diagram_inputs() {
  return {
      {"unknown key", {{"m.yaml", diagram("blcks: {}\n")}}, {{"m.yaml:2:1: error:", "did you mean 'blocks'?"}}},
      {"unknown type",
       {{"m.yaml", diagram("blocks: {R: {type: physical/rezistor}}\n")}},
       {{"m.yaml:2:", "did you mean 'physical/resistor'?"}}},
      {"unknown block",
       {{"m.yaml", diagram("blocks: {Res: {type: physical/resistor}}\nlines: [[Rez.p, Res.n]]\n")}},
       {{"m.yaml:3:", "did you mean 'Res'?"}}},
      {"unknown port",
       {{"m.yaml", diagram("blocks: {S: {type: physical/switch}}\nlines: [[S.cpp, S.n]]\n")}},
       {{"m.yaml:3:", "did you mean 'cp'?"}}},
      {"duplicate names",
       {{"m.yaml", diagram("blocks:\n  R: {type: physical/resistor}\n  R: {type: physical/resistor}\n")}},
       {{"m.yaml:4:3: error:", "'R' is here twice"}}},
      {"recursion of files",
       {{"m.yaml", diagram("blocks: {A: {type: ./a.yaml}}\n")}, {"a.yaml", "blocks:\n  B: {type: ./a.yaml}\n"}},
       {{"a.yaml:2:", "would hold itself"}}},
      {"missing file",
       {{"m.yaml", diagram("blocks: {A: {type: ./none.yaml}}\n")}},
       {{"m.yaml:2:", "'./none.yaml' can't be read"}}},
      {"variant without the choice",
       {{"m.yaml", diagram("blocks: {V: {variant: {choices: {one: {}}, active: two}}}\n")}},
       {{"m.yaml:2:", "no choice 'two'"}}},
      {"truncated", {{"m.yaml", diagram("blocks: {R: {type: physical/res")}}, {{"m.yaml:", "error:"}}},
      {"binary",
       {{"m.yaml", std::string("\x7F"
                               "ELF\0\1\2",
                               7)}},
       {{"m.yaml:1:1: error:"}}},
      {"empty", {{"m.yaml", ""}}, {{"m.yaml:1:1: error:", "empty"}}},
      {"expression that doesn't parse",
       {{"m.yaml", diagram("blocks:\n  R: {type: physical/resistor, parameters: {R: 2*(}}\n")}},
       {{"m.yaml:3:", "error:"}}},
      {"unknown variables, all blocks in one run",
       {{"m.yaml", diagram("blocks:\n  A: {type: physical/resistor, parameters: {R: nix}}\n"
                           "  B: {type: physical/resistor, parameters: {R: 1}}\n"
                           "  C: {type: physical/resistor, parameters: {R: nada}}\nlines: [[A.p, B.p, C.p]]\n")}},
       {{"m.yaml:3:", "error:"}, {"m.yaml:5:", "error:"}}},
      {"factories that fail, all blocks in one run",
       {{"m.yaml", diagram("blocks:\n"
                           "  A: {type: subsystem, opaque: on, ports: {left: [p]}}\n"
                           "  B: {type: subsystem, opaque: on, ports: {left: [p]}, parameters: {ComponentType: 1x}}\n"
                           "  C: {type: physical/electrical_reference}\nlines: [[A.p, B.p, C]]\n")}},
       {{"m.yaml:3:", "error:", "kinemo:physical:opaque:MissingComponentType"},
        {"m.yaml:4:", "kinemo:physical:opaque:InvalidComponentType"}}},
      {"mask that names an unknown variable",
       {{"m.yaml", diagram("blocks:\n  S: {type: subsystem, mask: {a: zilch}, blocks: {G: {type: "
                           "physical/electrical_reference}}}\n")}},
       {{"m.yaml:3:", "error:"}}},
      {"network across an atomic subsystem",
       {{"m.yaml", diagram("blocks:\n  S: {type: subsystem, atomic: on, ports: {left: [p]}, blocks: {R: {type: "
                           "physical/resistor}}, lines: [[p, R.p]]}\n"
                           "  G: {type: physical/electrical_reference}\nlines: [[S.p, G]]\n")}},
       {{"m.yaml:", "error:"}}},
  };
}

std::vector<BadInput> netlist_inputs() {
  return {
      {"recursion of definitions", {{"m.cir", "t\nx1 a s\n.subckt s a\nx2 a s\n.ends\n"}}, {{"m.cir:", "error:"}}},
      {"wrong count of nodes", {{"m.cir", "t\nx1 a b s\n.subckt s a\nr1 a 0 1\n.ends\n"}}, {{"m.cir:2:", "error:"}}},
      {"unknown definition", {{"m.cir", "t\nx1 a b amp\n"}}, {{"m.cir:2:", "error:", "amp"}}},
      {"missing include", {{"m.cir", "t\n.include none.inc\nr1 a 0 1\n"}}, {{"m.cir:2:", "error:", "none.inc"}}},
      {"unknown variable", {{"m.cir", "t\nr1 a 0 {nix*2}\n"}}, {{"m.cir:2:", "error:"}}},
      {"unbalanced expression", {{"m.cir", "t\nr1 a 0 {2*(}\n"}}, {{"m.cir:2:", "error:"}}},
      {"duplicate element", {{"m.cir", "t\nr1 a 0 1\nr1 a 0 2\n"}}, {{"m.cir:3:", "error:", "r1"}}},
      {"binary", {{"m.cir", std::string("t\nr1\0\1\2", 7)}}, {{"m.cir", "error:"}}},
  };
}

class BadInputs : public ProgramTest {
 protected:
  static bool has_line(const std::string& text, const std::vector<std::string>& parts) {
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      if (std::all_of(parts.begin(), parts.end(),
                      [&](const std::string& part) { return line.find(part) != std::string::npos; })) {
        return true;
      }
    }
    return false;
  }

  void expect_errors(const BadInput& input) {
    SCOPED_TRACE(input.name);
    std::string model;
    for (const auto& [name, text] : input.files) {
      write(name, text);
      if (name[0] == 'm') model = name;
    }
    const std::vector<std::string> before = files();
    const ProgramRun compile = run({"compile", model, "--format", "json", "-o", "out.json"});
    EXPECT_EQ(1, compile.exit_code) << compile.errors;
    EXPECT_THAT(compile.output, IsEmpty());
    EXPECT_EQ(before, files()) << "something is left behind";
    const ProgramRun check = run({"check", model});
    EXPECT_EQ(1, check.exit_code) << check.output << check.errors;
    for (const std::vector<std::string>& parts : input.messages) {
      EXPECT_TRUE(has_line(compile.errors, parts)) << parts.front() << " isn't in:\n" << compile.errors;
      EXPECT_TRUE(has_line(check.output, parts)) << parts.front() << " isn't in:\n" << check.output;
    }
    for (const std::string& name : files()) std::filesystem::remove_all(folder() / name);
  }
};

TEST_F(BadInputs, OfDiagramsEndInErrorsWithTheirPlaces) {
  for (const BadInput& input : diagram_inputs()) expect_errors(input);
}

TEST_F(BadInputs, OfNetlistsEndInErrorsWithTheirPlaces) {
  for (const BadInput& input : netlist_inputs()) expect_errors(input);
}

TEST_F(BadInputs, OfDomainModulesNameTheFile) {
  write("m.yaml", "kinemo: 1\n");
  write("empty.so", "");
  for (const std::string& module : {std::string("empty.so"), std::string("/none.so"), std::string(KINEMO_PROGRAM)}) {
    const ProgramRun result = run({"compile", "m.yaml", "--domain", module});
    EXPECT_EQ(2, result.exit_code) << module;
    EXPECT_THAT(result.errors, HasSubstr(module));
    EXPECT_THAT(result.errors, HasSubstr("kinemo:host:modules:"));
  }
}

}  // namespace
}  // namespace kinemo::test
