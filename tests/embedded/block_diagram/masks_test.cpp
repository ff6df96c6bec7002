#include "host_fixture.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace host_tests {

boost::shared_ptr<const GTMaskDefinition> maskWith(const std::vector<std::string>& names, const ustring& value = u"1") {
  auto mask = boost::make_shared<GTMaskDefinition>();
  mask->type = "Part";
  for (const std::string& name : names) mask->parameters.push_back({name, "", value, GTPrmDesc::EDIT, "", {}});
  return mask;
}

class MasksTest : public HostTest {
 protected:
  static std::vector<std::string> names(const GTBlock& block) {
    std::vector<cvUniquePtr> inputs;
    inputs.push_back(number(block.getHandle()));
    const cvUniquePtr result = call("gl.gti.internal.recursiveMaskNames", std::move(inputs));
    std::vector<std::string> list = kmf::cvarray_to_string_vector(result.get());
    std::sort(list.begin(), list.end());
    return list;
  }
};

TEST_F(MasksTest, BlocksOfOneKindShareTheDefinitionAndHoldOnlyWhatDiffers) {
  System& root = newDiagram().root();
  GTBlock& a = root.addBlock(u"A", "test/masked");
  GTBlock& b = root.addBlock(u"B", "test/masked");
  EXPECT_EQ(MaskInterface::mask(&a), MaskInterface::mask(&b));
  setParameter(a, "R", u"5");
  EXPECT_EQ(parameter(b, "R"), u"100");
  EXPECT_EQ(a.host().mask->texts.size(), 1u);
  EXPECT_TRUE(b.host().mask->texts.empty());
  setParameter(b, "R", ustring(u"5"));
  EXPECT_EQ(a.host().mask->text(0).entry(), b.host().mask->text(0).entry()) << "equal texts are one";
  setParameter(a, "R", u"100");
  EXPECT_TRUE(a.host().mask->texts.empty()) << "the default again";
}

TEST_F(MasksTest, AnotherMaskKeepsTheTextsOfParametersThatBothHave) {
  GTBlock& block = newDiagram().root().addBlock(u"A", "test/masked");
  setParameter(block, "R", u"5");
  setParameter(block, "label", u"x");
  MaskInterface::setMask(&block, maskWith({"C", "label"}));
  EXPECT_EQ(parameterNames(block), (std::vector<std::string>{"C", "label"}));
  EXPECT_EQ(parameter(block, "label"), u"x");
  EXPECT_EQ(parameter(block, "C"), u"1");
  MaskInterface::setMask(&block, nullptr);
  EXPECT_EQ(errorOf([&] { parameter(block, "C"); }), "kinemo:host:diagram:UnknownParameter(C, model/A, )");
}

TEST_F(MasksTest, ParametersAreIdentifiersAndStandOnce) {
  GTBlock& block = newDiagram().root().addBlock(u"A", "test/two");
  EXPECT_EQ(errorOf([&] { MaskInterface::setMask(&block, maskWith({"a b"})); }),
            "kinemo:host:diagram:InvalidMaskParameter(a b, Part)");
  EXPECT_EQ(errorOf([&] {
              MaskInterface::setMask(&block, maskWith({"a", "a"}));
            }),
            "kinemo:host:diagram:InvalidMaskParameter(a, Part)");
  EXPECT_EQ(MaskInterface::mask(&block), nullptr);
}

TEST_F(MasksTest, MasksAreWalkedFromTheBlockOutward) {
  System& root = newDiagram().root();
  GTBlock& outer = root.addSubsystem(u"outer");
  GTBlock& plain = contents(outer)->addSubsystem(u"plain");
  GTBlock& inner = contents(plain)->addSubsystem(u"inner");
  GTBlock& block = contents(inner)->addBlock(u"B", "test/two");
  EXPECT_FALSE(GTMaskReverseHierarchyIterator(&block).hasNext());
  MaskInterface::setMask(&outer, maskWith({"R"}, u"outside"));
  MaskInterface::setMask(&inner, maskWith({"R", "C"}, u"on"));
  GTMaskReverseHierarchyIterator iterator(&block);
  GTMask* first = iterator.next();
  GTMask* second = iterator.next();
  EXPECT_FALSE(iterator.hasNext());
  EXPECT_EQ(gdi_num_dialog_params(gt_mask_dialog_info(first)), 2);
  EXPECT_EQ(gdi_prm_desc(gt_mask_dialog_info(second), 0)->getName(), "R");
  EXPECT_EQ(MaskInterface::getMaskDialogValueString(&plain, 0), u"outside");
  EXPECT_TRUE(MaskInterface::getMaskDialogValueBoolean(&block, 1));
  EXPECT_FALSE(MaskInterface::getMaskDialogValueBoolean(&block, 2)) << "out of range";
}

TEST_F(MasksTest, NamesOfMasksAreThoseOfTheBlockAndAllAround) {
  System& root = newDiagram().root();
  GTBlock& outer = root.addSubsystem(u"outer");
  GTBlock& inner = contents(outer)->addSubsystem(u"inner");
  GTBlock& masked = contents(inner)->addBlock(u"A", "test/masked");
  GTBlock& plain = contents(inner)->addBlock(u"B", "test/two");
  MaskInterface::setMask(&outer, maskWith({"R", "L"}));
  EXPECT_EQ(names(masked), (std::vector<std::string>{"L", "R", "flag", "label", "mode"}));
  EXPECT_EQ(names(plain), (std::vector<std::string>{"L", "R"}));
  EXPECT_EQ(names(outer), (std::vector<std::string>{"L", "R"}));
  // The kept answers follow a change anywhere around.
  MaskInterface::setMask(&inner, maskWith({"C"}));
  EXPECT_EQ(names(plain), (std::vector<std::string>{"C", "L", "R"}));
  MaskInterface::setMask(&outer, nullptr);
  EXPECT_EQ(names(plain), (std::vector<std::string>{"C"}));
  MaskInterface::setMask(&plain, maskWith({"own"}));
  EXPECT_EQ(names(plain), (std::vector<std::string>{"C", "own"}));
}

TEST_F(MasksTest, ThousandsOfMasksAroundABlockAreWalkedWithoutRecursion) {
  System* system = &newDiagram().root();
  const auto mask = maskWith({"R"});
  for (int i = 0; i < 5000; ++i) {
    GTBlock& subsystem = system->addSubsystem(u"s");
    MaskInterface::setMask(&subsystem, mask);
    system = contents(subsystem);
  }
  EXPECT_EQ(names(system->addBlock(u"B", "test/two")), (std::vector<std::string>{"R"}));
}

TEST_F(MasksTest, AGeneratedMaskComesFromTheRuntimeAndItsFailureNamesTheBlock) {
  GTBlock& block = newDiagram().root().addBlock(u"A", "test/two");
  kmf::register_corvane_function("test.mask", [](int, cvArray_tag**, int, cvArray_tag** inputs) {
    MaskInterface::setMask(GTBlock::Handle2Block(cvGetScalar(inputs[0])), maskWith({"R"}));
  });
  const cvUniquePtr handle = number(block.getHandle());
  cvArray_tag* room = nullptr;
  EXPECT_EQ(hostContext().runMaskGenerator(&block, "test.mask", handle.get(), &room, 0, {}, true, false, false),
            nullptr);
  EXPECT_EQ(parameterNames(block), (std::vector<std::string>{"R"}));
  kmf::unregister_corvane_function("test.mask");
  GTDiagnostic* diagnostic =
      hostContext().runMaskGenerator(&block, "test.mask", handle.get(), &room, 0, {}, true, false, false);
  ASSERT_NE(diagnostic, nullptr);
  EXPECT_EQ(errorOf([&] { block.ThrowException(diagnostic); }).substr(0, 48),
            "kinemo:host:block:MaskGeneratorFailed(model/A, t");
}

// --- dialog parameters

TEST_F(MasksTest, DialogTextsAreSharedUntilABlockSetsOne) {
  GTBooleanPrmDesc<GTBlock, GTBlock> log("Log", 14, 0);
  GTPrmDesc note("Note", GTPrmDesc::STRING, 0, 0);
  GTPrmDesc* list[] = {&log, &note};
  TestBlock prototype("test", 1, 1);
  sdi_prm_desc_list(prototype.getDialogInfo(), list);
  sdi_num_dialog_params(prototype.getDialogInfo(), 2);
  prototype.setGrPrmValue(&log, "OFF");
  const std::unique_ptr<GTBlock> a(prototype.clone());
  const std::unique_ptr<GTBlock> b(prototype.clone());
  EXPECT_EQ(a->getGrPrmValue(&log), b->getGrPrmValue(&log)) << "one text for both";
  setParameter(*a, "Log", u"on");
  EXPECT_STREQ(a->getGrPrmValue(&log), "on");
  EXPECT_STREQ(b->getGrParamValue(0, false), "OFF");
  EXPECT_STREQ(b->getGrPrmValue(&note), "");
  EXPECT_EQ(a->getGrEDP(0)->text, "on");
  GTPrmDesc foreign("Foreign", GTPrmDesc::EDIT, 0, 0);
  EXPECT_EQ(a->getGrPrmValue(&foreign), nullptr);
  EXPECT_EQ(a->getGrEDP(7), nullptr);
  EXPECT_EQ(errorOf([&] { a->setGrPrmValue(&foreign, "x"); }).substr(0, 36), "kinemo:host:diagram:UnknownParameter");
}

// --- the model workspace

TEST_F(MasksTest, VariablesAreSeenThroughTheWorkspaceObject) {
  Diagram& diagram = newDiagram();
  embedded::scripting_runtime::base_workspace().set("base", 3.0);
  diagram.setVariable("R0", u"2*base", "", false);
  diagram.setVariable("R1", u"R0 + 1", "Ohm", true);
  embedded::scripting_runtime::base_workspace().clear("base");
  std::vector<cvUniquePtr> inputs;
  inputs.push_back(host_tests::text("model"));
  inputs.push_back(host_tests::text("ModelWorkspace"));
  std::vector<cvUniquePtr> workspace;
  workspace.push_back(call("get_param", std::move(inputs)));
  const cvUniquePtr variables = call("data", std::move(workspace));
  ASSERT_EQ(cvGetNumberOfElements(variables.get()), 2u);
  EXPECT_EQ(kmf::cvarray_to_string(cvGetField(variables.get(), 1, "Name")), "R1");
  EXPECT_EQ(cvGetScalar(cvGetField(variables.get(), 0, "Value")), 6.0);
  EXPECT_TRUE(cvIsA(cvGetField(variables.get(), 1, "Value"), "Gantrel.Parameter"));
  EXPECT_EQ(errorOf([&] { diagram.setVariable("1x", u"1", "", false); }),
            "kinemo:host:diagram:InvalidVariable(1x, model)");
}

TEST_F(MasksTest, VariablesKeepTheirUnits) {
  Diagram& diagram = newDiagram();
  const auto shown = [&](const char* name) {
    return embedded::scripting_runtime::display_text(diagram.workspace().get(name));
  };
  const auto unit = [&](const char* name) { return embedded::block_diagram::unitOf(diagram.workspace().get(name)); };
  diagram.setVariable("R", u"[1 2]", "kOhm", true);
  diagram.setVariable("same", u"R", "", true);
  diagram.setVariable("told", u"R", "Ohm", false);
  diagram.setVariable("made", u"R(1)*kinemo.Value(1, 'uF')", "ms", true);
  diagram.setVariable("bare", u"2*R(2)", "", false);
  EXPECT_EQ(shown("R"), "   1   2 kOhm");
  EXPECT_EQ(shown("same"), "   1   2 kOhm");
  EXPECT_EQ(unit("same"), "kOhm");
  EXPECT_EQ(shown("told"), "   1000   2000 Ohm");
  EXPECT_EQ(shown("made"), "1 ms");
  EXPECT_EQ(shown("bare"), "4 kOhm");
  diagram.setVariable("text", u"'abc'", "", true);
  EXPECT_EQ(shown("text"), "abc");
  EXPECT_EQ(errorOf([&] { diagram.setVariable("x", u"R", "F", true); }),
            "kinemo:host:parameters:UnitOfVariable(kOhm, F)");
  EXPECT_EQ(errorOf([&] { diagram.setVariable("x", u"1", "quark", true); }), "kinemo:units:core:InvalidUnit(quark)");
  EXPECT_EQ(errorOf([&] { diagram.setVariable("x", u"'abc'", "V", true); }),
            "kinemo:host:parameters:UnitOfNoNumbers(V, char)");
}

/// As in the compiled graph, so that an expression over it is worth the same before and after.
TEST_F(MasksTest, RuntimeVariablesAreDoubles) {
  Diagram& diagram = newDiagram();
  diagram.setVariable("fixed", u"int8(100)", "", false);
  diagram.setVariable("tuned", u"int8(100)", "", true);
  diagram.setVariable("fixedTriple", u"3*fixed", "", false);
  diagram.setVariable("tunedTriple", u"3*tuned", "", false);
  EXPECT_EQ(embedded::scripting_runtime::display_text(diagram.workspace().get("fixedTriple")), "127");
  EXPECT_EQ(embedded::scripting_runtime::display_text(diagram.workspace().get("tunedTriple")), "300");
}

TEST_F(MasksTest, RuntimeParametersResolveToValuesWithUnits) {
  Diagram& diagram = newDiagram();
  diagram.setVariable("Z", u"[1 2 3]", "", true);
  diagram.setVariable("A", u"1e3", "Ohm", true);
  diagram.setVariable("T", u"'text'", "", true);
  diagram.setVariable("fixed", u"7", "V", false);
  std::vector<cvUniquePtr> model;
  model.push_back(host_tests::text("model"));
  cvUniquePtr names = call("gl.gti.runtimeParameters", std::move(model));
  EXPECT_EQ(kmf::cvarray_to_string_vector(names.get()), (std::vector<std::string>{"A", "T", "Z"}));
  std::vector<cvUniquePtr> both;
  both.push_back(host_tests::text("model"));
  both.push_back(std::move(names));
  const cvUniquePtr resolved = call("gl.gti.resolveRuntimeParameters", std::move(both));
  const cvArray_tag* map = cvGetField(resolved.get(), 0, "Map");
  ASSERT_EQ(cvGetNumberOfElements(map), 2u);
  EXPECT_EQ(kmf::cvarray_to_string(cvGetField(map, 0, "Name")), "A");
  const cvUniquePtr unit(cvGetProperty(cvGetField(map, 0, "Value"), 0, "unit"));
  EXPECT_EQ(kmf::cvarray_to_string(unit.get()), "Ohm");
  EXPECT_EQ(cvGetNumberOfElements(cvGetField(map, 1, "Value")), 3u);
  EXPECT_EQ(kmf::cvarray_to_string_vector(cvGetField(resolved.get(), 0, "NonValue")), std::vector<std::string>{"T"});
}

}  // namespace host_tests
