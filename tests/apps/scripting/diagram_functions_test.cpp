// Diagrams that scripts build, edit, compile, save and close.

#include "common/gl/gti/export/translation_manager.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "tests/apps/scripting/diagram_script.hpp"

#include <gmock/gmock.h>

#include <algorithm>

namespace kinemo::scripting {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

class DiagramFunctions : public DiagramScript {
 protected:
  static std::string nets_of(const std::string& model) {
    std::string all;
    const cvUniquePtr nets = value("nets('" + model + "')");
    for (std::size_t i = 0; i < cvGetNumberOfElements(nets.get()); ++i) {
      const cvArray_tag* pins = cvGetField(nets.get(), i, "pins");
      all += kmf::cvarray_to_string(cvGetField(nets.get(), i, "name")) + ":";
      for (std::size_t pin = 0; pin < cvGetNumberOfElements(pins); ++pin) {
        all += " " + kmf::cvarray_to_string(cvGetField(pins, pin, "block")) + "." +
               kmf::cvarray_to_string(cvGetField(pins, pin, "port"));
      }
      all += "\n";
    }
    return all;
  }

  /// Source and load around a masked filter.
  static void build() {
    run_all({"new_diagram('rc')", "set_variable('rc', 'R0', 1e3, 'Ohm', 'on')",
             "add_block('physical/voltage_source', 'rc/Source', 'v', '5')", "add_block('subsystem', 'rc/Filter 1.5')",
             "add_block('port', 'rc/Filter 1.5/in')", "add_block('port', 'rc/Filter 1.5/out', 'Side', 'right')",
             "add_block('port', 'rc/Filter 1.5/ref')",
             "add_block('physical/resistor', 'rc/Filter 1.5/R1', 'R', 'R0', 'R_conf', 'runtime')",
             "add_block('physical/capacitor', 'rc/Filter 1.5/C1')",
             "add_block('physical/electrical_reference', 'rc/Ground')", "add_line('rc/Filter 1.5', 'in', 'R1.p')",
             "add_line('rc/Filter 1.5', 'R1.n', 'C1.p', 'out')", "add_line('rc/Filter 1.5', 'C1.n', 'ref')",
             "add_line('rc', 'Source.p', {'Filter 1.5', 'in'})",
             "add_line('rc', 'Source.n', {'Filter 1.5', 'ref'}, 'Ground')", "add_block('physical/resistor', 'rc/Load')",
             "add_line('rc', {'Filter 1.5', 'out'}, 'Load.p')", "add_line('rc', 'Load.n', 'Ground')",
             "name_line('rc', {'Filter 1.5', 'out'}, 'result')"});
  }
};

TEST_F(DiagramFunctions, ACircuitIsBuiltFromNothingCheckedSavedReadAgainAndClosed) {
  build();
  EXPECT_EQ(shown("{'in'; 'ref'; 'out'}"), shown("ports('rc/Filter 1.5')"));
  const cvUniquePtr summary = value("compile_diagram('rc')");
  EXPECT_EQ("physical", kmf::cvarray_to_string(cvGetField(summary.get(), 0, "domain")));
  EXPECT_EQ(5, cvGetScalar(cvGetField(summary.get(), 0, "components")));
  EXPECT_EQ(1, cvGetScalar(cvGetField(summary.get(), 0, "subgraphs")));
  EXPECT_EQ(0, number("numel(check_diagram('rc'))"));
  const std::string nets = nets_of("rc");
  EXPECT_EQ(
      "Filter 1.5/C1.n: Filter 1.5/C1.n Ground.g Load.n Source.n\nFilter 1.5/R1.p: Filter 1.5/R1.p Source.p\n"
      "result: Filter 1.5/C1.p Filter 1.5/R1.n Load.p\n",
      nets);
  run_all({"place('rc/Source', [0 10 20.5 30], 90)", "save_diagram('rc', [folder '/rc.yaml'])", "close_diagram('rc')"});
  EXPECT_EQ(0, number("numel(diagrams())"));
  EXPECT_EQ("rc", text_of("open_diagram([folder '/rc.yaml'])"));
  EXPECT_EQ(nets, nets_of("rc"));
  run_all({"set_param('rc/Source', 'v', '7')", "save_diagram('rc')", "close_diagram('rc')",
           "open_diagram([folder '/rc.yaml'])"});
  EXPECT_EQ("7", text_of("get_param('rc/Source', 'v')"));
  EXPECT_EQ(1, std::distance(std::filesystem::directory_iterator(folder.path()), {}));
}

TEST_F(DiagramFunctions, TheNextCompileSeesAnEdit) {
  build();
  run("compile_diagram('rc')");
  EXPECT_THAT(nets_of("rc"), HasSubstr("result: Filter 1.5/C1.p Filter 1.5/R1.n Load.p\n"));
  run_all({"delete_line('rc', 'Load.p', {'Filter 1.5', 'out'})", "rename_block('rc/Load', 'L')",
           "name_line('rc', {'Filter 1.5', 'out'}, 'result')"});
  EXPECT_THAT(nets_of("rc"), HasSubstr("result: Filter 1.5/C1.p Filter 1.5/R1.n\n"));
  EXPECT_THAT(nets_of("rc"), HasSubstr(" L.n"));
  run_all({"delete_block('rc/L')", "delete_block('rc/Filter 1.5/out')"});
  EXPECT_EQ(shown("{'in'; 'ref'}"), shown("ports('rc/Filter 1.5')"));
  EXPECT_EQ(4, number("getfield(compile_diagram('rc', 'physical'), 'components')"));
}

TEST_F(DiagramFunctions, WhatWasCompiledStaysWithTheDomainUntilTheDiagramIsClosed) {
  build();
  run("compile_diagram('rc')");
  gl::gti::TranslationManager& manager = gl::gti::TranslationManager::get();
  const gl::gti::DomainKey key = manager.domainKey("physical");
  EXPECT_EQ(4U, manager.graph(key, "rc").components().size());
  run("set_param('rc/Source', 'v', '9')");
  EXPECT_EQ(4U, manager.graph(key, "rc").components().size());
  run("close_diagram('rc')");
  EXPECT_FALSE(manager.hasModel(key, "rc"));
}

TEST_F(DiagramFunctions, AGraphOfBlocksThatAreGoneIsAnErrorAndNoFault) {
  const std::pair<const char*, const char*> edits[] = {
      {"delete_block('rc/Source')", "kinemo:common:gl:gti:compile:MultipleCompilationErrors(rc)"},
      {"delete_block('rc/Filter 1.5')", "kinemo:common:gl:gti:compile:MultipleCompilationErrors(rc)"},
      {"delete_block('rc/Filter 1.5/R1')", "kinemo:common:gl:gti:compile:MultipleCompilationErrors(rc)"},
      {"delete_block('rc/Filter 1.5/in')", "kinemo:common:gl:gti:compile:UnknownBoundaryPort(R1_p, rc/Filter 1.5)"},
      {"delete_line('rc', 'Source.n')", ""},
      {"rename_block('rc/Source', 'V')", ""}};
  for (const auto& [edit, expected] : edits) {
    SCOPED_TRACE(edit);
    build();
    run_all({"compile_diagram('rc')", edit});
    gl::gti::TranslationManager& manager = gl::gti::TranslationManager::get();
    EXPECT_EQ(expected, test::error_of([&] { manager.graph(manager.domainKey("physical"), "rc"); }));
    run_all({"compile_diagram('rc')", "close_diagram('rc')"});
  }
}

TEST_F(DiagramFunctions, ErrorsOfACompileAreToldTogether) {
  build();
  run_all({"set_param('rc/Filter 1.5/R1', 'R', 'R9')", "set_param('rc/Source', 'v', '[1 2')"});
  const kmf::ErrorData told = [&] {
    try {
      run("compile_diagram('rc')");
    } catch (const kmf::Exception& error) {
      return error.data();
    }
    return kmf::ErrorData{};
  }();
  std::vector<std::string> blocks;
  for (const kmf::ErrorData& cause : told.causes) {
    blocks.insert(blocks.end(), cause.objects.begin(), cause.objects.end());
  }
  EXPECT_THAT(blocks, testing::UnorderedElementsAre("rc/Source", "rc/Filter 1.5/R1"));
  const cvUniquePtr found = value("check_diagram('rc')");
  ASSERT_EQ(2U, cvGetNumberOfElements(found.get()));
  EXPECT_EQ("error", kmf::cvarray_to_string(cvGetField(found.get(), 0, "severity")));
}

TEST_F(DiagramFunctions, AnInterruptEndsACompileAndLeavesEverythingAsItWas) {
  build();
  kmf::register_corvane_function("test.late", [](int, cvArray_tag** outputs, int, cvArray_tag**) {
    sr::request_interrupt();
    outputs[0] = cvCreateDoubleScalar(5);
  });
  run("compile_diagram('rc')");
  sr::base_workspace().set("before", value("kinemo.gl.gt.graph('physical', 'rc')"));
  run("set_param('rc/Source', 'v', 'test.late()')");
  for (const char* call : {"compile_diagram('rc')", "check_diagram('rc')", "nets('rc')"}) {
    EXPECT_EQ("kinemo:host:compile:Interrupted(rc)", error_of(call)) << call;
    sr::request_interrupt(false);
  }
  run("set_param('rc/Source', 'v', '5')");
  EXPECT_EQ(1, number("isequal(before, kinemo.gl.gt.graph('physical', 'rc'))"));
  run("compile_diagram('rc')");
  EXPECT_EQ(1, number("isequal(before, kinemo.gl.gt.graph('physical', 'rc'))"));
  kmf::unregister_corvane_function("test.late");
  sr::base_workspace().clear("before");
}

TEST_F(DiagramFunctions, ExpressionsOfAModelCannotChangeModelsWhileItIsReadOrCompiled) {
  run_all({"new_diagram('m')", "add_block('subsystem', 'm/S')", "add_block('physical/resistor', 'm/S/R1')",
           "add_block('physical/resistor', 'm/S/R2')"});
  for (const char* expression : {"close_diagram('m')", "delete_block('m/S/R1')", "delete_block('m/S')",
                                 "numel(compile_diagram('m'))", "numel(nets('m'))", "add_block('port', 'm/S/p')",
                                 "set_param('m/S/R1', 'R', '5')", "evalin('base', 'close_diagram(''m'')')"}) {
    SCOPED_TRACE(expression);
    sr::base_workspace().set("expression", std::string(expression));
    run_all({"set_param('m/S/R1', 'R', expression)", "set_param('m/S/R2', 'R', expression)"});
    EXPECT_THAT(text_of("strjoin(getfield(check_diagram('m'), 'notes'))"), HasSubstr("read or compiled"));
    EXPECT_EQ(2, number("numel(ports('m/S/R1'))"));
  }
  run_all({"set_param('m/S/R1', 'R', '1')", "set_param('m/S/R2', 'R', '1')", "compile_diagram('m')"});
  folder.write("f.yaml", "kinemo: 1\nname: f\nworkspace: {x: close_diagram('f')}\n");
  EXPECT_THAT(message_of("open_diagram([folder '/f.yaml'])"), StartsWith("CannotOpen("));
  EXPECT_EQ("{'m'}", shown("diagrams()"));
}

TEST_F(DiagramFunctions, CheckTellsFindingsOfTheRules) {
  run_all({"new_diagram('m')", "add_block('physical/resistor', 'm/R')"});
  const cvUniquePtr found = value("check_diagram('m')");
  ASSERT_NE(0U, cvGetNumberOfElements(found.get()));
  EXPECT_EQ("warning", kmf::cvarray_to_string(cvGetField(found.get(), 0, "severity")));
  EXPECT_THAT(kmf::cvarray_to_string(cvGetField(found.get(), 0, "text")), HasSubstr("R"));
}

TEST_F(DiagramFunctions, VariablesHaveUnitsAndMarks) {
  run_all({"new_diagram('m')", "set_variable('m', 'a', kinemo.Value(2, 'kOhm'), 'Ohm', true)",
           "set_variable('m', 'b', {1, 'x'})", "set_variable('m', 'c', 5, '', 0)", "delete_variable('m', 'c')",
           "save_diagram('m', [folder '/m.yaml'])", "close_diagram('m')"});
  std::string reason;
  EXPECT_EQ("m", text_of("open_diagram([folder '/m.yaml'])"));
  run("add_block('physical/resistor', 'm/R', 'R', 'a', 'R_unit', 'Ohm')");
  const cvUniquePtr variables = value("data(get_param('m', 'ModelWorkspace'))");
  EXPECT_EQ(2U, cvGetNumberOfElements(variables.get()));
  run("set_variable('m', 'a', 3, 'V')");
  EXPECT_THAT(error_of("compile_diagram('m')"), StartsWith("kinemo:")) << "Ohm was asked for";
}

TEST_F(DiagramFunctions, NetlistsAreOpenedAndSavedAsDiagrams) {
  folder.write("div.cir", "divider\nv1 in 0 5\nr1 in out 1k\nr2 out 0 1k\n.end\n");
  EXPECT_EQ("div", text_of("open_diagram([folder '/div.cir'])"));
  const std::string nets = nets_of("div");
  EXPECT_EQ("NoFile(div)", message_of("save_diagram('div')"));
  EXPECT_THAT(message_of("save_diagram('div', [folder '/div.cir'])"), StartsWith("NotADiagramFile("));
  run_all({"save_diagram('div', [folder '/div.yaml'])", "close_diagram('div')", "open_diagram([folder '/div.yaml'])"});
  EXPECT_EQ(nets, nets_of("div"));
}

TEST_F(DiagramFunctions, BadInputsAreToldAndChangeNothing) {
  build();
  folder.write("bad.yaml", "kinemo: 1\nblocks: {R: {type: physical/resistorr}}\nlines: [[R.p, S.n]]\n");
  run("add_block('physical/resistor', 'rc/a//b')");
  const struct {
    const char* input;
    const char* expected;
  } cases[] = {
      {"new_diagram('rc')", "kinemo:host:diagram:DiagramAlreadyOpen(rc)"},
      {"new_diagram('1x')", "kinemo:host:diagram:InvalidModelName(1x)"},
      {"new_diagram(5)", "NotAText(new_diagram, 1, 5, )"},
      {"new_diagram()", "kinemo:scripting:runtime:TooFewInputs("},
      {"new_diagram('a', 'b')", "kinemo:scripting:runtime:TooManyInputs("},
      {"close_diagram('rx')", "UnknownDiagram(rx, rc)"},
      {"close_diagram('rc/Source')", "NotADiagram(rc/Source)"},
      {"close_diagram(-1)", "UnknownHandle(-1)"},
      {"open_diagram([folder '/none.yaml'])", "CannotRead("},
      {"open_diagram([folder '/bad.yaml'])", "CannotOpen("},
      {"save_diagram('rc', [folder '/x.txt'])", "NotADiagramFile("},
      {"save_diagram('rc', [folder '/none/x.yaml'])", "CannotSave(rc, "},
      {"add_block('physical/resistorr', 'rc/R')", "UnknownType(physical/resistorr, physical/resistor)"},
      {"add_block('physical/resistor', 'R')", "PathOfNoBlock(R)"},
      {"add_block('physical/resistor', 'rc/')", "PathOfNoBlock(rc/)"},
      {"add_block('physical/resistor', 'xx/R')", "UnknownDiagram(xx, )"},
      {"add_block('physical/resistor', 'rc/Fliter 1.5/R')", "UnknownBlock(rc/Fliter 1.5, rc, Fliter 1.5, Filter 1.5)"},
      {"add_block('physical/resistor', 'rc/Source/R')", "NoInside(rc/Source, GL Core Block)"},
      {"add_block('physical/resistor', 'rc/Source')", "kinemo:host:diagram:DuplicateBlock(Source, rc)"},
      {"add_block('physical/resistor', 'rc/R', 'R')", "NameWithoutValue(add_block, R)"},
      {"add_block('physical/resistor', 'rc/R', 'R', '5', 'R_unti', 'Ohm')",
       "kinemo:host:diagram:UnknownParameter(R_unti, rc/R, R_unit)"},
      {"add_block('port', 'rc/P')", "kinemo:host:diagram:PortAtTop(P)"},
      {"add_block('port', 'rc/Filter 1.5/P', 'Side', 'top')", "kinemo:host:diagram:InvalidValue(Side, "},
      {"add_block('subsystem', 'rc/x////')", "SubsystemName("},
      {"delete_block('rc')", "NotABlock(rc)"},
      {"delete_block('rc/Sorce')", "UnknownBlock(rc/Sorce, rc, Sorce, Source)"},
      {"delete_block({1})", "NotAPath(delete_block, 1, cell)"},
      {"delete_block([1 2])", "NotAPath(delete_block, 1, double)"},
      {"delete_block(get_param('rc/Source', 'PortHandles').LConn)", "UnknownHandle("},
      {"rename_block('rc/Source', 'Ground')", "kinemo:host:diagram:DuplicateBlock(Ground, rc)"},
      {"rename_block('rc/Filter 1.5', 'F/')", "SubsystemName(F/)"},
      {"place('rc/Source', [1 2 3])", "BadPlace()"},
      {"place('rc/Source', [1 2 3 1/0])", "BadPlace()"},
      {"place('rc/Source', 'left')", "BadPlace()"},
      {"place('rc/Source', [1 2 3 4], 45)", "BadRotation(45)"},
      {"add_line('rc', 'Source.p', 'Ground.x')", "UnknownPort(rc/Ground, no port 'x'., 'g')"},
      {"add_line('rc', 'Source.p', 'Grund')", "UnknownBlock(Grund, rc, Grund, Ground)"},
      {"add_line('rc', 'Source.p', 'Source')", "WhichPort(rc/Source, 'p', 'n')"},
      {"add_line('rc', 'Source.p', 'a.b.c')", "BadPort(a.b.c)"},
      {"add_line('rc', 'Source.p', {})", "BadPort("},
      {"add_line('rc', 'Source.p', 7)", "NotAText(add_line, 3, 7, )"},
      {"add_line('rc', 'Source.p', {'Filter 1.5/R1', 'p'})", "LineAcrossSystems(Filter 1.5/R1.p, rc)"},
      {"add_line('rc/Filter 1.5', 'R1.p', 'rc/Source.p')", "LineAcrossSystems(rc/Source.p, rc/Filter 1.5)"},
      {"add_line('rc', 'Source.p', 'Source.p')", "LineJoinsNothing(Source.p, Source.p)"},
      {"add_line('rc/Source', 'p', 'n')", "NoInside(rc/Source, GL Core Block)"},
      {"delete_line('rc', 'Source.p', 'Ground')", "NoLine(Source.p, Ground.g, rc)"},
      {"set_variable('rc', 'end', 1)", "BadVariable(end)"},
      {"set_variable('rc', 'x', 1, 'no such unit')", "kinemo:units:core:InvalidUnit("},
      {"set_variable('rc', 'x', 1, '', 'yes')", "NotASwitch(set_variable, 5)"},
      {"delete_variable('rc', 'x')", "NoVariable(x, rc, 'R0')"},
      {"set_param('rc/Source', 'v', '1', 'w', '2')", "kinemo:host:diagram:UnknownParameter(w, rc/Source, "},
      {"compile_diagram('rc', 'nothing')", "NoModel(rc, nothing, 'physical')"},
      {"nets('none')", "UnknownDiagram(none, )"},
  };
  run("save_diagram('rc', [folder '/before.yaml'])");
  run_all({"close_diagram('rc')", "open_diagram([folder '/before.yaml'])"});
  for (const auto& row : cases) {
    SCOPED_TRACE(row.input);
    EXPECT_THAT(message_of(row.input), StartsWith(row.expected));
  }
  run("save_diagram('rc', [folder '/after.yaml'])");
  EXPECT_EQ(text_of_file("before.yaml"), text_of_file("after.yaml"));
}

TEST_F(DiagramFunctions, GoAwayWithTheirHelp) {
  EXPECT_NE(nullptr, sr::find_help("add_block"));
  unregister_diagram_functions();
  EXPECT_EQ(nullptr, sr::find_help("add_block"));
  EXPECT_THAT(error_of("diagrams()"), StartsWith("kinemo:scripting:runtime:UndefinedName("));
  register_diagram_functions();
}

TEST_F(DiagramFunctions, AClosedDiagramIsUnknown) {
  build();
  const double diagram = number("get_param('rc', 'Handle')");
  const double block = number("add_block('physical/resistor', 'rc/R')");
  run("close_diagram('rc')");
  EXPECT_EQ("UnknownDiagram(rc, )", message_of("compile_diagram('rc')"));
  for (const double handle : {diagram, block}) {
    sr::base_workspace().set("h", handle);
    EXPECT_THAT(message_of("close_diagram(h)"), StartsWith("UnknownHandle("));
  }
}

}  // namespace
}  // namespace kinemo::scripting
