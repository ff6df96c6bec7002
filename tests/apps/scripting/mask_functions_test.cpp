// Masks, ports, parts and settings that scripts give to diagrams.

#include "tests/apps/scripting/diagram_script.hpp"

#include <gmock/gmock.h>

namespace kinemo::scripting {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class MaskFunctions : public DiagramScript {
 protected:
  /// A resistor of R in a masked subsystem, across a source.
  MaskFunctions() {
    run_all({"new_diagram('m')", "set_variable('m', 'R0', 1e3, 'Ohm', 'on')", "add_block('subsystem', 'm/S')",
             "add_ports('m/S', 'in', {'out'})", "add_block('physical/resistor', 'm/S/R1', 'R', 'R')",
             "add_line('m/S', 'in', 'R1.p')", "add_line('m/S', 'R1.n', 'out')",
             "add_block('physical/voltage_source', 'm/V')", "add_block('physical/electrical_reference', 'm/G')",
             "add_line('m', 'V.p', 'S.in')", "add_line('m', 'V.n', 'S.out', 'G')"});
  }
  /// What the resistor has after a compile.
  std::string resistance() {
    run("compile_diagram('m')");
    script("g = kinemo.gl.gt.graph('physical', 'm');");
    return shown("getfield(getfield(g.parameters('S/R1'), 'R'), 'value')");
  }
  std::string saved() {
    run("save_diagram('m', [folder '/state.yaml'])");
    return text_of_file("state.yaml");
  }
};

TEST_F(MaskFunctions, ParametersOfAMaskAreAddedChangedAndDeleted) {
  EXPECT_NE("", error_of("compile_diagram('m')")) << "nothing gives R";
  EXPECT_EQ(1, number("isempty(mask('m/S'))"));
  run("add_mask_parameter('m/S', 'R', '2*R0', 'Unit', 'Ohm')");
  EXPECT_EQ("2000\n", resistance() + "\n");
  run("set_param('m/S', 'R', '5')");
  EXPECT_EQ("5", resistance());
  run("set_mask_parameter('m/S', 'R', 'prompt', 'Resistance')");
  EXPECT_EQ("5", resistance()) << "what isn't told stays";
  run("set_mask_parameter('m/S', 'R', 'value', '7')");
  EXPECT_EQ("7", resistance()) << "the newest value counts";
  EXPECT_EQ("7", text_of("get_param('m/S', 'R')"));
  run_all({"add_mask_parameter('m/S', 'mode', 'fast', 'choices', {'slow', 'fast'})",
           "add_mask_parameter('m/S', 'loud', 'off', 'kind', 'Switch')"});
  EXPECT_THAT(saved(), HasSubstr("    mask:\n      R: {value: 7, unit: Ohm, prompt: Resistance}\n"
                                 "      mode: {value: fast, kind: choice, choices: [slow, fast]}\n"
                                 "      loud: {value: \"off\", kind: switch}\n"));
  run("delete_mask_parameter('m/S', 'R')");
  EXPECT_EQ(2, number("numel(getfield(mask('m/S'), 'parameters'))"));
  EXPECT_NE("", error_of("compile_diagram('m')"));
}

TEST_F(MaskFunctions, AMaskIsAValueThatCanBeChangedAndGivenToAnotherSubsystem) {
  script(
      "s.type = 'Filter'; s.description = 'A text.';"
      "s.parameters = struct('name', {'R', 'C'}, 'value', '1');"
      "set_mask('m/S', s); set_param('m/S', 'R', '3'); s = mask('m/S');");
  EXPECT_EQ("R", text_of("s.parameters(1).prompt"));
  EXPECT_EQ("1", text_of("s.parameters(1).value")) << "and not what set_param said";
  script(
      "s.parameters(end+1).name = 'mode'; s.parameters(end).value = 'a'; s.parameters(end).choices = {'a', 'b'};"
      "s.parameters(2) = []; set_mask('m/S', s);");
  EXPECT_EQ("3", resistance()) << "parameters that stay keep their values";
  run_all({"add_block('subsystem', 'm/T')", "set_mask('m/T', mask('m/S'))"});
  EXPECT_EQ(1, number("isequal(mask('m/T'), mask('m/S'))"));
  script("t = mask('m/T');");
  EXPECT_EQ("choice", text_of("t.parameters(2).kind"));
  const std::string text = saved();
  run_all({"close_diagram('m')", "open_diagram([folder '/state.yaml'])"});
  EXPECT_EQ(text, saved());
  EXPECT_EQ("Filter", text_of("getfield(mask('m/T'), 'type')"));
  run("set_mask('m/T', [])");
  EXPECT_EQ(1, number("isempty(mask('m/T'))"));
}

TEST_F(MaskFunctions, BlocksThatShareAMaskDoNotShareItsEdits) {
  folder.write("shared.yaml",
               "kinemo: 1\nblocks:\n  A: {type: subsystem, mask: &m {R: 1}}\n  B: {type: subsystem, mask: *m}\n");
  run_all({"open_diagram([folder '/shared.yaml'])", "set_mask_parameter('shared/A', 'R', 'value', '2')"});
  EXPECT_EQ("1", text_of("get_param('shared/B', 'R')"));
}

TEST_F(MaskFunctions, OpaqueSubsystemsHavePropertiesOfTheirComponents) {
  run_all({"add_block('subsystem', 'm/O', 'Opaque', 'on', 'ComponentType', 'a.b', 'Gain', '3')",
           "set_param('m/O', 'ComponentType', 'c.d', 'Gain', '')"});
  EXPECT_EQ("c.d", text_of("get_param('m/O', 'ComponentType')"));
  EXPECT_THAT(saved(), HasSubstr("    opaque: on\n    parameters: {ComponentType: c.d}\n"));
  for (const char* wrong : {"set_param('m/S', 'ComponentType', 'x')", "set_param('m/O', 'Position', 'x')",
                            "set_param('m/O', 'Gain', '1', 'no name', '2')", "get_param('m/O', 'Gain')",
                            "set_param('m/O', 'Opaque', 'off', 'Gain', '1')"}) {
    EXPECT_THAT(error_of(wrong), HasSubstr("UnknownParameter(")) << wrong;
  }
  run("set_param('m/O', 'Opaque', 'off', 'ComponentType', '')");
  EXPECT_THAT(saved(), HasSubstr("  O:\n    type: subsystem\nlines:")) << "it is as if it had never been opaque";
}

TEST_F(MaskFunctions, PartsStayLinksUntilTheirContentsChange) {
  folder.write("part.yaml", "mask: {R: 1}\nports: {left: [a]}\nblocks: {L: {type: physical/resistor}}\n");
  run_all({"add_block([folder '/part.yaml'], 'm/P', 'R', '2')"});
  EXPECT_THAT(saved(), HasSubstr("  P: {type: ./part.yaml, parameters: {R: 2}}\n"));
  EXPECT_EQ("a", text_of("strjoin(ports('m/P'), ' ')"));
  run("add_mask_parameter('m/P', 'Q', '3')");
  EXPECT_THAT(saved(), HasSubstr("      Q: 3\n"));
}

TEST_F(MaskFunctions, SettingsAreToldSetAndDeleted) {
  run_all({"set_param('m', 'ReferenceTemperature', '310', 'DataDictionary', 'x.dd.yaml')"});
  script("s = settings('m');");
  EXPECT_EQ("310", text_of("s.ReferenceTemperature"));
  EXPECT_THAT(saved(), HasSubstr("settings: {ReferenceTemperature: 310}\n"));
  run_all({"delete_setting('m', 'ReferenceTemperature')", "delete_setting('m', 'DataDictionary')"});
  EXPECT_EQ(0, number("isfield(settings('m'), 'ReferenceTemperature')"));
  EXPECT_EQ("", text_of("getfield(settings('m'), 'DataDictionary')"));
  EXPECT_EQ("off", text_of("getfield(settings('m'), 'InitializeInteractiveRuns')"));
}

TEST_F(MaskFunctions, CheckTellsASettingThatIsNearlyOneWhichADomainAsksFor) {
  run_all({"add_mask_parameter('m/S', 'R', '1')", "set_param('m', 'ReferenceTemprature', '310', 'Note', 'mine')"});
  script("found = check_diagram('m');");
  EXPECT_EQ(1, number("numel(found)"));
  EXPECT_THAT(text_of("found.text"), HasSubstr("did you mean 'ReferenceTemperature'?"));
  EXPECT_EQ(std::vector<std::string>{}, leaks.take_warnings());
  run("compile_diagram('m')");
  EXPECT_EQ(std::vector<std::string>{"kinemo:scripting:diagram:Finding"}, leaks.take_warnings());
}

TEST_F(MaskFunctions, ANameThatReadersOfJsonWouldNotFindTheEndOfIsRefusedThere) {
  run("add_block('subsystem', ['m/' repmat('n', 1, 1100)])");
  EXPECT_THAT(message_of("save_diagram('m', [folder '/m.json'])"), StartsWith("CannotSave(m, "));
  EXPECT_EQ("", text_of_file("m.json"));
  const std::string text = saved();
  run_all({"close_diagram('m')", "open_diagram([folder '/state.yaml'])"});
  EXPECT_EQ(text, saved());
}

TEST_F(MaskFunctions, PlacesAreToldAsTheyWereSetAndTakenAway) {
  script("place('m/V', [1.5 -2 20.25 30], 270, 'on'); [where, rotation, mirror] = place('m/V');");
  EXPECT_EQ(1, number("isequal(where, [1.5 -2 20.25 30]) && rotation == 270 && mirror"));
  script("place('m/V', [], 0); [where, rotation, mirror] = place('m/V');");
  EXPECT_EQ(1, number("isempty(where) && rotation == 0 && mirror"));
  EXPECT_EQ(1, number("isempty(place('m/S'))"));
}

TEST_F(MaskFunctions, BadInputsAreToldAndChangeNothing) {
  run_all({"add_mask_parameter('m/S', 'R', '1')", "add_mask_parameter('m/S', 'mode', 'a', 'choices', {'a', 'b'})",
           "set_param('m/S', 'R', 'off')"});
  script("two = struct('name', {'R', 'R'}, 'value', '1');");
  folder.write("part.yaml", "ports: {left: [a]}\nblocks: {R: {type: physical/resistor, parameters: {r: 1}}}\n");
  folder.write("self.yaml", "blocks: {S: {type: ./self.yaml}}\n");
  const struct {
    const char* input;
    const char* expected;
  } cases[] = {
      {"mask('m')", "NotABlock(m)"},
      {"mask('m/V')", "NoInside(m/V, GL Core Block)"},
      {"add_mask_parameter('m/S', 'R', '2')", "MaskParameterExists(R, m/S)"},
      {"add_mask_parameter('m/S', '2x', '2')", "BadMaskParameter(2x)"},
      {"add_mask_parameter('m/S', 'Opaque', '2')", "MaskParameterHides(Opaque)"},
      {"add_mask_parameter('m/S', 'C', '2', 'unit')", "NameWithoutValue(add_mask_parameter, unit)"},
      {"add_mask_parameter('m/S', 'C', '2', 'promt', 'x')", "UnknownMaskProperty(promt, prompt)"},
      {"add_mask_parameter('m/S', 'C', '2', 'kind', 'number')", "BadMaskKind(number)"},
      {"add_mask_parameter('m/S', 'C', 'a', 'kind', 'text', 'choices', {'a'})", "ChoicesOfNoChoice(C)"},
      {"add_mask_parameter('m/S', 'C', 'c', 'choices', {'a', 'b'})", "BadMaskValue(C, c, 'a', 'b')"},
      {"add_mask_parameter('m/S', 'C', '1', 'kind', 'switch')", "BadMaskValue(C, 1, 'on', 'off')"},
      {"set_mask_parameter('m/S', 'r', 'unit', 'V')", "NoMaskParameter(r, m/S, R)"},
      {"set_mask_parameter('m/S', 'mode', 'value', 'c')", "BadMaskValue(mode, c, 'a', 'b')"},
      {"set_mask_parameter('m/S', 'R', 'choices', {'1', '2'})", "BadMaskValue(R, off, '1', '2')"},
      {"delete_mask_parameter('m/S', 'modus')", "NoMaskParameter(modus, m/S, mode)"},
      {"set_mask('m/S', 5)", "NotAMask(double)"},
      {"set_mask('m/S', two)", "NotAMask(struct)"},
      {"set_mask('m/S', struct('typ', 'x'))", "UnknownMaskField(typ, type, "},
      {"set_mask('m/S', struct('parameters', 5))", "NotMaskParameters(double)"},
      {"set_mask('m/S', struct('parameters', struct('nam', 'x')))", "UnknownMaskField(nam, name, "},
      {"set_mask('m/S', struct('parameters', struct('value', 'x')))", "MaskParameterWithoutName(1)"},
      {"set_mask('m/S', struct('parameters', struct('name', 'x')))", "MaskParameterWithoutValue(x)"},
      {"set_mask('m/S', struct('parameters', two))", "MaskParameterTwice(R)"},
      {"add_ports('m', 'a')", "kinemo:host:diagram:PortAtTop(a)"},
      {"add_ports('m/V', 'a')", "NoInside(m/V, GL Core Block)"},
      {"add_ports('m/S', {'a', 'b'}, {'c', 'R1'})", "kinemo:host:diagram:DuplicateBlock(R1, m/S)"},
      {"add_ports('m/S', {'a', 5})", "NotTexts(add_ports, 2, "},
      {"add_block([folder '/none.yaml'], 'm/P')", "CannotPlacePart("},
      {"add_block([folder '/part.yaml'], 'm/P')", "CannotPlacePart("},
      {"add_block([folder '/self.yaml'], 'm/P')", "CannotPlacePart("},
      {"add_block([folder '/self.yaml'], 'm/S')", "CannotPlacePart("},
      {"add_block([folder '/self.yaml'], 'm/x////')", "SubsystemName("},
      {"delete_setting('m', 'DataDictionray')", "NoSetting(DataDictionray, m, DataDictionary)"},
      {"settings('m/S')", "NotADiagram(m/S)"},
  };
  const std::string before = saved();
  for (const auto& row : cases) {
    SCOPED_TRACE(row.input);
    EXPECT_THAT(message_of(row.input), StartsWith(row.expected));
    EXPECT_EQ(before, saved());
  }
}

}  // namespace
}  // namespace kinemo::scripting
