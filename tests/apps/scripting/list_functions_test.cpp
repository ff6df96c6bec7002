// What is in a diagram, as scripts list it, and what they copy and set by such lists.

#include "tests/apps/scripting/diagram_script.hpp"

#include <gmock/gmock.h>

namespace kinemo::scripting {
namespace {

using ::testing::StartsWith;

class ListFunctions : public DiagramScript {
 protected:
  /// A variant of a linked part and a masked subsystem, an opaque one, and lines whose ports have full stops in names.
  ListFunctions() {
    folder.write("part.yaml",
                 "kinemo: 1\nmask: {J: 1}\nports: {left: [a, b]}\nblocks:\n  I: {type: physical/resistor, parameters: "
                 "{R: J}}\nlines: [[a, I.p], [I.n, b]]\n");
    run_all({"new_diagram('m')", "add_block('subsystem', 'm/V 1.5', 'Variant', 'on', 'ActiveVariant', 'p')",
             "add_ports('m/V 1.5', {'a', 'b'})", "add_block([folder '/part.yaml'], 'm/V 1.5/p', 'J', 3)",
             "add_block('subsystem', 'm/V 1.5/q', 'TreatAsAtomicUnit', true)", "add_ports('m/V 1.5/q', {'a', 'b'})",
             "add_block('physical/resistor', 'm/R', 'R', '47', 'R_unit', 'kOhm')",
             "place('m/R', [1 2 30 40], 90, 'on')", "add_block('subsystem', 'm/O', 'Opaque', 'on', 'Gain', 0.1)",
             "add_mask_parameter('m/O', 'k', 1)", "add_block('physical/electrical_reference', 'm/G.1')",
             "add_line('m', 'R.p', {'V 1.5', 'a'})", "add_line('m', 'R.n', {'V 1.5', 'b'}, {'G.1'})",
             "name_line('m', 'R.n', 'ground')", "add_line('m', 'R.n', {'G.1'})",
             "add_block('physical/resistor', 'm/a//b')", "name_line('m', 'a/b.p', 'free')"});
  }
  std::string saved(const std::string& diagram) {
    run("save_diagram('" + diagram + "', [folder '/state.yaml'])");
    return text_of_file("state.yaml");
  }
  /// What statements print.
  static std::string printed(const std::string& text) {
    static std::string output;
    output.clear();
    sr::set_display_sink([](const std::string& more) { output += more; });
    script(text);
    sr::set_display_sink(nullptr);
    return output;
  }
};

TEST_F(ListFunctions, BlocksLinesAndParametersAreShownAsTables) {
  EXPECT_EQ(
      "  Name   Type                           Ports\n  V 1.5  subsystem                      a b\n"
      "  R      physical/resistor              p n\n  O      subsystem\n"
      "  G.1    physical/electrical_reference  g\n  a/b    physical/resistor              p n\n",
      printed("blocks('m')"));
  EXPECT_EQ(
      "  Net  Name    Ports\n  1            R.p, {'V 1.5', 'a'}\n  2    ground  R.n, {'V 1.5', 'b'}, {'G.1', 'g'}\n"
      "  2            R.n, {'G.1', 'g'}\n  3    free    a/b.p\n",
      printed("lines('m')"));
  EXPECT_THAT(printed("parameters('m/R')"),
              StartsWith("  Name               Value        Unit  Prompt\n  R                  47           kOhm  "));
  run_all({"set_variable('m', 'w', kinemo.Value([1 2], 'kOhm'), 'Ohm', true)", "set_variable('m', 'x', {'a'})"});
  EXPECT_EQ("  Name  Value        Unit\n  w     [1000 2000]  Ohm   runtime\n  x     {'a'}\n",
            printed("variables('m')"));
  EXPECT_EQ("No blocks\nNo lines\nNo variables\n",
            printed("new_diagram('empty'), blocks('empty'), lines('empty'), variables('empty')"));
  run_all({"add_block('physical/resistor', 'empty/it''s.1')", "add_line('empty', {'it''s.1', 'p'}, {'it''s.1', 'n'})"});
  EXPECT_EQ("  Net  Ports\n  1    {'it''s.1', 'p'}, {'it''s.1', 'n'}\n", printed("lines('empty')"));
}

TEST_F(ListFunctions, ListsAreStructures) {
  script("b = blocks('m', 'ALL'); p = parameters('m/O'); none = lines('m/O');");
  EXPECT_EQ(shown("{'m/V 1.5', 'm/V 1.5/a', 'm/V 1.5/b', 'm/V 1.5/p', 'm/V 1.5/p/a', 'm/V 1.5/p/b', 'm/V 1.5/p/I', "
                  "'m/V 1.5/q', 'm/V 1.5/q/a', 'm/V 1.5/q/b', 'm/R', 'm/O', 'm/G.1', 'm/a//b'}"),
            shown("{b.path}"));
  EXPECT_EQ(shown("{'port', 'subsystem', {'a'; 'b'}}"), shown("{b(2).type, b(4).type, b(4).ports}"));
  EXPECT_EQ(1, number("numel(strfind(b(4).file, '/part.yaml'))"));
  EXPECT_EQ(shown("{'k', '1', 'expression'}"), shown("{p(1).name, p(1).value, p(1).kind}"));
  EXPECT_EQ(shown("{'Gain', '0.1', 'text'}"), shown("{p(end).name, p(end).value, p(end).kind}"));
  EXPECT_EQ(1, number("isempty(none)"));
  script("set_variable('m', 'w', 5, 'Ohm', true); w = variables('m');");
  EXPECT_EQ(shown("{'w', 5, 'Ohm', true}"), shown("{w.name, w.value, w.unit, w.runtime}"));
}

TEST_F(ListFunctions, ADiagramIsCopiedByItsLists) {
  script(
      "new_diagram('c'); cellfun(@(p) copy_block(p, ['c' p(2:end)]), {blocks('m').path}); "
      "add_line('c', lines('m'));");
  std::string copy = saved("c");
  const std::size_t name = copy.find("name: c\n");
  ASSERT_NE(std::string::npos, name);
  EXPECT_EQ(saved("m"), copy.replace(name, 8, "name: m\n"));
  EXPECT_THAT(copy, testing::HasSubstr("type: ./part.yaml")) << "a part stays a link";
}

TEST_F(ListFunctions, ACopyInTheSameSystemStandsApart) {
  script(
      "h = copy_block('m/R', 'm/R2', 'R', 5); copy_block('m/V 1.5/a', 'm/V 1.5/c'); "
      "[where, rotation, mirror] = place(h);");
  EXPECT_EQ(1, number("isempty(where) && rotation == 90 && mirror"));
  EXPECT_EQ(shown("{'5', 'kOhm'}"), shown("{get_param('m/R2', 'R'), get_param('m/R2', 'R_unit')}"));
  EXPECT_EQ(shown("{'a'; 'b'; 'c'}"), shown("ports('m/V 1.5')"));
}

TEST_F(ListFunctions, NumbersAndSwitchesBecomeTextsThatSayTheSame) {
  const std::pair<const char*, const char*> numbers[] = {{"100", "100"},
                                                         {"0.1 + 0.2", "0.30000000000000004"},
                                                         {"-1e-300", "-1e-300"},
                                                         {"int8(5)", "5"},
                                                         {"true", "1"},
                                                         {"[1 -2; pi 4]", "[1 -2; 3.141592653589793 4]"},
                                                         {"[true false]", "[1 0]"},
                                                         {"-1/0", "-Inf"},
                                                         {"0/0", "NaN"},
                                                         {"'2*R'", "2*R"},
                                                         {"''", ""}};
  for (const auto& [input, expected] : numbers) {
    SCOPED_TRACE(input);
    run(std::string("set_param('m/R', 'R', ") + input + ")");
    EXPECT_EQ(expected, text_of("get_param('m/R', 'R')"));
  }
  run("set_param('m/R', 'R', kinemo.Value(4.7, 'MOhm'))");
  EXPECT_EQ(shown("{'4.7', 'MOhm'}"), shown("{get_param('m/R', 'R'), get_param('m/R', 'R_unit')}"));
  run_all({"set_param('m', 'ReferenceTemperature', 310, 'InitializeInteractiveRuns', true)",
           "set_param('m/O', 'Variant', 1, 'Gain', false)", "set_param('m/V 1.5/a', 'Port', 7)",
           "add_mask_parameter('m/O', 's', true, 'kind', 'switch')", "set_mask_parameter('m/O', 'k', 'value', [1 2])"});
  EXPECT_EQ(shown("{'310', 'on', 'on', 'off', '7', 'on', '[1 2]'}"),
            shown("{get_param('m', 'ReferenceTemperature'), get_param('m', 'InitializeInteractiveRuns'), "
                  "get_param('m/O', 'Variant'), get_param('m/O', 'Gain'), get_param('m/V 1.5/a', 'Port'), "
                  "get_param('m/O', 's'), get_param('m/O', 'k')}"));
}

TEST_F(ListFunctions, BadInputsAreToldAndChangeNothing) {
  const struct {
    const char* input;
    const char* expected;
  } cases[] = {
      {"set_param('m/R', 'R', {1})", "kinemo:host:parameters:NotAValue(set_param, 3, R, {1})"},
      {"set_param('m/R', 'R', '1', 'R_unit', 1i)", "kinemo:host:parameters:NotAValue(set_param, 5, R_unit, "},
      {"set_param({'m/R', 'm/O'}, 'R', [])", "kinemo:host:parameters:NotAValue(set_param, 3, R, [])"},
      {"set_param('m/R', 7, '1')", "kinemo:host:parameters:NotAName(set_param, 2, 7)"},
      {"get_param('m/R', 7)", "kinemo:host:parameters:NotAName(get_param, 2, 7)"},
      {"set_param('m/O', 'k', kinemo.Value(1, 'V'))", "kinemo:host:parameters:ValueWithUnit(set_param, 3, k, m/O)"},
      {"set_param('m/O', 'Opaque', 2)", "kinemo:host:diagram:InvalidValue(Opaque, "},
      {"add_mask_parameter('m/O', 'q', @sin)", "kinemo:host:parameters:NotAValue(add_mask_parameter, 3, q, "},
      {"add_mask_parameter('m/O', 'q', 1, 'unit', 2)", "NotAText(add_mask_parameter, 5, 2, )"},
      {"set_mask('m/O', struct('type', 2))", "NotAText(set_mask, 2, 2, type)"},
      {"copy_block('m/R', 'm/Q', 'nothing', 1)", "kinemo:host:diagram:UnknownParameter(nothing, m/Q, )"},
      {"copy_block('m/R', 'm/Q', 'R')", "NameWithoutValue(copy_block, R)"},
      {"copy_block('m/R', 'm/O')", "kinemo:host:diagram:DuplicateBlock(O, m)"},
      {"copy_block('m/O', 'm/x////')", "SubsystemName("},
      {"copy_block('m', 'c')", "NotABlock(m)"},
      {"copy_block('m/R', 'c/R')", "UnknownDiagram(c, )"},
      {"blocks('m/R')", "NoInside(m/R, GL Core Block)"},
      {"blocks('m', 'deep')", "NotAll(deep)"},
      {"parameters('m')", "NotABlock(m)"},
      {"variables('m/R')", "NotADiagram(m/R)"},
      {"add_line('m', 'R.p')", "LineJoinsNothing(R.p)"},
      {"add_line('m', struct('net', 1))", "NotLines(2, "},
      {"add_line('m', struct('ports', {{'R.p'; 'O.q'}}))", "UnknownPort(m/O, "},
      {"add_line('m', [lines('m'); struct('name', '', 'ports', {{'R.p'}}, 'net', 1)])", "LineJoinsNothing(R.p)"},
  };
  const std::string before = saved("m");
  for (const auto& row : cases) {
    SCOPED_TRACE(row.input);
    EXPECT_THAT(message_of(row.input), StartsWith(row.expected));
  }
  EXPECT_EQ(before, saved("m"));
}

}  // namespace
}  // namespace kinemo::scripting
