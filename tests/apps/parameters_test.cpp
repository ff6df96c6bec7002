// Parameters, settings and run-time parameters of models as users of the program meet them.

#include "tests/apps/program.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace kinemo::test {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class Parameters : public ProgramTest {
 protected:
  /// A resistor with the parameters `parameters`, in a subsystem.
  void writeResistor(const std::string& parameters) {
    write("m.yaml",
          "kinemo: 1\n"
          "workspace: {x: {value: 2, unit: kOhm, runtime: true}, v: {value: 1, unit: V}}\n"
          "blocks:\n"
          "  S:\n"
          "    blocks:\n"
          "      R1: {type: physical/resistor, parameters: {" +
              parameters + "}}\n");
  }
  /// A diode in a model with the settings `settings`.
  void writeDiode(const std::string& settings) {
    write("m.yaml", "kinemo: 1\nsettings: {" + settings +
                        "}\n"
                        "workspace: {T0: {value: 85, unit: degC, runtime: true}}\n"
                        "blocks: {D: {type: physical/exponential_diode, parameters: {T_conf: runtime}}}\n");
  }
};

TEST_F(Parameters, ThatAreBadAreToldWithPlaceBlockParameterAndWhatIsValid) {
  struct Case {
    const char* parameters;
    std::vector<const char*> texts;
  };
  for (const Case& c : std::vector<Case>{
           {"R: NaN", {"'NaN'", "parameters:NotANumber"}},
           {"R: 1e400", {"'1e400'", "finite", "parameters:Infinite"}},
           {"R: '[]'", {"'[]'", "0x0", "parameters:NotScalar"}},
           {"R: '[1 2; 3 4]'", {"2x2", "single number", "parameters:NotScalar"}},
           {"R: 1+2i", {"complex double", "real numbers", "parameters:NotNumeric"}},
           {"R: \"'1k'\"", {"'1k'", "char", "parameters:NotNumeric"}},
           {"R: v", {"'V'", "'Ohm'", "parameters:ValueUnitNotOfKind"}},
           {"R: 1, R_unit: V", {"'V'", "'Ohm'", "parameters:UnitNotOfKind"}},
           {"R: 1, R_unit: '1'", {"'1'", "'Ohm'", "parameters:UnitNotOfKind"}},
           {"R: 1, R_unit: Ohms per", {"'Ohms per'", "parameters:InvalidUnit"}},
           {"R: 1, R_conf: runtme", {"'runtme'", "'compiletime', 'runtime'", "parameters:InvalidChoice"}},
           {"R: 1 + nix", {"'1 + nix'", "Line 1, column 5", "    1 + nix\n        ^", "compile:ParameterError"}},
           {"R: 2*(", {"'2*('", "Line 1, column 4", "    2*(\n       ^", "compile:ParameterError"}},
       }) {
    writeResistor(c.parameters);
    const ProgramRun run = this->run({"compile", "m.yaml"});
    EXPECT_EQ(run.exit_code, 1) << c.parameters;
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, AllOf(HasSubstr("m.yaml:6:7: error: "), HasSubstr("m/S/R1")));
    for (const char* text : c.texts) EXPECT_THAT(run.errors, HasSubstr(text));
  }
}

TEST_F(Parameters, TakeTheUnitsOfVariables) {
  writeResistor("R: x, R_unit: Ohm");
  EXPECT_THAT(run({"compile", "m.yaml"}).output, HasSubstr("R = 2000 Ohm"));
  writeResistor("R: x, R_unit: ''");
  EXPECT_THAT(run({"compile", "m.yaml"}).output, HasSubstr("R = 2000 Ohm"));
  writeResistor("R: 5, R_unit: ''");
  EXPECT_THAT(run({"compile", "m.yaml"}).output, HasSubstr("R = 5 Ohm"));
}

TEST_F(Parameters, StayExpressionsByOptionOrSetting) {
  struct Case {
    const char* setting;
    std::vector<std::string> option;
    bool expression;
  };
  for (const Case& c : std::vector<Case>{{"", {}, false},
                                         {"PropagateRuntimeParameters: 'off'", {}, false},
                                         {"PropagateRuntimeParameters: 'on'", {}, true},
                                         {"", {"--runtime-parameters", "on"}, true},
                                         {"PropagateRuntimeParameters: 'off'", {"--runtime-parameters", "on"}, true},
                                         {"PropagateRuntimeParameters: 'on'", {"--runtime-parameters=off"}, false}}) {
    write("m.yaml", "kinemo: 1\nsettings: {" + std::string(c.setting) +
                        "}\n"
                        "workspace: {x: {value: 2, unit: kOhm, runtime: true}, idle: {value: 1, runtime: true}}\n"
                        "blocks:\n"
                        "  A: {type: physical/resistor, parameters: {R: 2*x, R_conf: runtime}}\n"
                        "  B: {type: physical/resistor, parameters: {R: 2*x}}\n");
    std::vector<std::string> arguments{"compile", "m.yaml", "--format", "json"};
    arguments.insert(arguments.end(), c.option.begin(), c.option.end());
    const ProgramRun run = this->run(arguments);
    ASSERT_EQ(run.exit_code, 0) << run.errors;
    const nlohmann::json json = nlohmann::json::parse(run.output);
    const nlohmann::json& components = json.at("graph").at("components");
    const nlohmann::json number = {{"value", 4000.0}, {"unit", "Ohm"}};
    const nlohmann::json expression = {{"expression", "2*x"}, {"unit", "Ohm"}};
    EXPECT_EQ(components.at("A").at("parameters").at("R"), c.expression ? expression : number);
    EXPECT_EQ(components.at("B").at("parameters").at("R"), number) << "it may not be tuned";
    EXPECT_EQ(json.at("runtimeParameters").size(), c.expression ? 1u : 2u);
    EXPECT_EQ(json.at("runtimeParameters").at("x"), (nlohmann::json{{"value", 2.0}, {"unit", "kOhm"}}));
  }
}

TEST_F(Parameters, RuntimeOptionTakesOnAndOffAlone) {
  writeDiode("");
  for (const char* word : {"yes", "On", ""}) {
    const ProgramRun run = this->run({"compile", "m.yaml", "--runtime-parameters", word});
    EXPECT_EQ(run.exit_code, 2) << word;
    EXPECT_THAT(run.errors, HasSubstr("--runtime-parameters"));
  }
}

TEST_F(Parameters, FollowSettingsOfTheModel) {
  writeDiode("");
  EXPECT_THAT(run({"compile", "m.yaml"}).output, HasSubstr("T = 300.15 K"));
  writeDiode("ReferenceTemperature: T0");
  EXPECT_THAT(run({"compile", "m.yaml"}).output, HasSubstr("T = 358.15 K"));
  EXPECT_THAT(run({"compile", "m.yaml", "--runtime-parameters", "on"}).output,
              AllOf(HasSubstr("T = T0 K"), HasSubstr("T0 = 85 degC")));
}

TEST_F(Parameters, OfSettingsThatAreBadAreToldWithSettingTextAndModel) {
  struct Case {
    const char* settings;
    std::vector<const char*> texts;
  };
  for (const Case& c : std::vector<Case>{
           {"ReferenceTemperature: 20 +", {"'20 +'", "'ReferenceTemperature'", "'m'", "Line 1, column", "^"}},
           {"ReferenceTemperature: nix", {"'nix'", "'ReferenceTemperature'", "'m'", "Line 1, column", "^"}},
           {"InitialTemperature: \"'hot'\"", {"'InitialTemperature'", "text", "'auto'"}},
           {"InitialTemperature: '[1 2]'", {"'InitialTemperature'", "1x2"}},
           {"ReferenceTemperature: -1", {"'-1'", "from 0 K"}},
           {"ReferenceTemperature: \"kinemo.Value(1, 'V')\"", {"'V'", "'degC'"}},
           {"PropagateRuntimeParameters: maybe", {"'maybe'", "'on' and 'off'"}},
       }) {
    writeDiode(c.settings);
    const ProgramRun run = this->run({"compile", "m.yaml"});
    EXPECT_EQ(run.exit_code, 1) << c.settings;
    EXPECT_THAT(run.errors, HasSubstr("compile:ConfigSetEvalErr"));
    for (const char* text : c.texts) EXPECT_THAT(run.errors, HasSubstr(text));
  }
}

TEST_F(Parameters, OfSettingsAreToldAtTheirPlace) {
  write("m.yaml",
        "kinemo: 1\n"
        "settings:\n"
        "  RefrenceTemperature: 300\n"
        "  Solver: fast\n"
        "  ReferenceTemperature: T0 + nix\n"
        "workspace: {T0: 300}\n"
        "blocks: {D: {type: physical/exponential_diode}}\n");
  EXPECT_THAT(run({"compile", "m.yaml"}).errors,
              AllOf(HasSubstr("m.yaml:5:25: error:"), HasSubstr("Line 1, column 6")));
  const ProgramRun good = run({"compile", "m.yaml", "-D", "nix=1"});
  EXPECT_EQ(good.exit_code, 0);
  EXPECT_THAT(good.errors, AllOf(HasSubstr("m.yaml:3:24: warning:"), HasSubstr("did you mean 'ReferenceTemperature'?"),
                                 Not(HasSubstr("Solver"))));
}

TEST_F(Parameters, ThatHaveNoEffectAreAWarning) {
  write("m.yaml", "kinemo: 1\nblocks: {D: {type: physical/exponential_diode, parameters: {T: 350}}}\n");
  const ProgramRun run = this->run({"compile", "m.yaml"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, AllOf(HasSubstr("warning"), HasSubstr("'T_from'")));
  write("m.yaml", "kinemo: 1\nblocks: {D: {type: physical/exponential_diode, parameters: {T: 350, T_from: own}}}\n");
  const ProgramRun own = this->run({"compile", "m.yaml"});
  EXPECT_THAT(own.errors, Not(HasSubstr("warning")));
  EXPECT_THAT(own.output, HasSubstr("T = 350 K"));
}

}  // namespace
}  // namespace kinemo::test
