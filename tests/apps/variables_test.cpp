// Variables from the command line and from data dictionaries.

#include "tests/apps/program.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace kinemo::test {
namespace {

using ::testing::HasSubstr;

class Variables : public ProgramTest {
 protected:
  Variables() {
    write("m.yaml",
          "kinemo: 1\n"
          "dictionary: plant.dd.yaml\n"
          "workspace: {R0: {value: 2, unit: kOhm, runtime: on}, gain: 3}\n"
          "blocks:\n"
          "  A: {type: physical/resistor, parameters: {R: R0, R_unit: kOhm, R_conf: runtime}}\n"
          "  B: {type: physical/resistor, parameters: {R: gain*scale}}\n");
    write("plant.dd.yaml", "kinemo: 1\nvariables: {scale: 10, dead: {value: 1, unit: s}}\n");
  }

  /// Parameter R of a block as JSON.
  nlohmann::json resistance(const char* block, std::vector<std::string> arguments) const {
    std::vector<std::string> all{"compile", "m.yaml", "--format", "json"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const ProgramRun compiled = run(all);
    EXPECT_EQ(0, compiled.exit_code) << compiled.errors;
    if (compiled.exit_code != 0) return {};
    model = nlohmann::json::parse(compiled.output);
    return model.at("graph").at("components").at(block).at("parameters").at("R");
  }

  mutable nlohmann::json model;  ///< of the last compile
};

TEST_F(Variables, DefinitionsTakeThePlaceOfTheModelsOwn) {
  EXPECT_EQ(30, resistance("B", {}).at("value"));
  EXPECT_EQ(50, resistance("B", {"-D", "gain=5"}).at("value"));
  EXPECT_EQ(12, resistance("B", {"-Dscale=gain+1", "-D", "gain=3"}).at("value")) << "over the variables before it";
  EXPECT_EQ(49, resistance("B", {"-D", "gain=7", "-D", "scale=gain"}).at("value")) << "one after the other";
}

TEST_F(Variables, ADefinedVariableKeepsItsUnitAndItsMark) {
  EXPECT_EQ("R0", resistance("A", {"--runtime-parameters", "on", "-D", "R0=2*gain"}).at("expression"));
  EXPECT_EQ(6, model.at("runtimeParameters").at("R0").at("value"));
  EXPECT_EQ("kOhm", model.at("runtimeParameters").at("R0").at("unit"));
}

TEST_F(Variables, WrongDefinitionsAreToldWithTheirText) {
  struct Case {
    const char* definition;
    int exit_code;
    const char* text;
  };
  for (const Case& wrong :
       {Case{"R0", 2, "NAME=VALUE"}, Case{"2R=1", 2, "'2R'"}, Case{"=1", 2, "name of a variable"},
        Case{"R0=2*", 1, "-D R0=2*"}, Case{"R0=nothing", 1, "nothing"}, Case{"gainn=1", 0, "did you mean 'gain'?"}}) {
    const ProgramRun checked = run({"compile", "m.yaml", "-D", wrong.definition});
    EXPECT_EQ(wrong.exit_code, checked.exit_code) << wrong.definition;
    EXPECT_THAT(checked.errors, HasSubstr(wrong.text)) << wrong.definition;
  }
}

TEST_F(Variables, FaultsOfADictionaryAreToldAtTheirPlace) {
  write("plant.dd.yaml", "kinemo: 1\nvariables:\n  scale: 2*oops\n");
  EXPECT_THAT(run({"compile", "m.yaml"}).errors, HasSubstr("plant.dd.yaml:3:10: error:"));
}

}  // namespace
}  // namespace kinemo::test
