#include "domains/physical/model_settings.hpp"

#include "common/gl/gti/export/translation_manager.hpp"
#include "domains/physical/temperature_setting.hpp"
#include "embedded/block_diagram/data_dictionary.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/data/data.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

#include <boost/make_shared.hpp>

#include <sstream>

namespace kinemo::physical::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

/// A diode D at the top and a thermal mass M, with the variables T0 = 20 degC, F = 68 degF, n = 310 and the run-time
/// variable x = 320.
class ModelSettings : public PhysicalTest {
 protected:
  ModelSettings() : diode(place(u"D", "physical/exponential_diode")), mass(place(u"M", "physical/thermal_mass")) {
    diagram->setVariable("T0", u"20", "degC", false);
    diagram->setVariable("F", u"68", "degF", false);
    diagram->setVariable("n", u"310", "", false);
    diagram->setVariable("x", u"320", "", true);
  }
  gl::core::Component component(const char16_t* path) { return byPath(compile().graph()).at(path); }
  std::pair<double, std::string> diodeTemperature() { return number_of(component(u"m/D"), "T"); }
  /// The text of the expression in the diode's parameter, with its unit; empty for a number.
  static std::string expression(const gl::core::Component& component, const char* parameter) {
    const auto& value = component.parameters().at(parameter).get({});
    const auto* expression = boost::get<data2::core::Expr>(&value);
    if (!expression) return {};
    std::ostringstream text;
    data2::core::out(text, 0, 0, data2::core::without_unit(*expression));
    return text.str() + " " + data2::core::bound_unit(*expression).text();
  }

  GTBlock& diode;
  GTBlock& mass;
};

}  // namespace

TEST_F(ModelSettings, TemperaturesAreOneNumberInKelvin) {
  struct Case {
    ustring text;
    double kelvin;
  };
  EXPECT_EQ(diodeTemperature(), std::make_pair(300.15, std::string("K"))) << "the host doesn't know the setting";
  for (const Case& c : {Case{u"auto", 300.15}, Case{u"290", 290}, Case{u"0", 0}, Case{u"2*n-300", 320},
                        Case{u"T0", 293.15}, Case{u" ( T0 ) ", 293.15}, Case{u"F", 293.15}, Case{u"x", 320}}) {
    diagram->setParameter("ReferenceTemperature", c.text);
    const auto [value, unit] = diodeTemperature();
    EXPECT_NEAR(value, c.kelvin, 1e-9) << kmf::VnId::make(std::string(c.text.begin(), c.text.end()));
    EXPECT_EQ(unit, "K");
  }
}

TEST_F(ModelSettings, WhatIsNoTemperatureIsRefusedWithSettingAndText) {
  diagram->setVariable("R", u"5", "Ohm", false);
  const std::string name = "ReferenceTemperature";
  struct Case {
    ustring text;
    std::string cause;
  };
  for (const Case& c : {
           Case{u"'warm'", "NotNumeric(" + name + ", 'warm')"},
           Case{u"[1 2]", "NotScalar(" + name + ", [1 2], 1x2)"},
           Case{u"[]", "NotScalar(" + name + ", [], 0x0)"},
           Case{u"R", "NotATemperature(" + name + ", R, Ohm)"},
           Case{u"-1", "NoSuchTemperature(" + name + ", -1, -1)"},
           Case{u"NaN", "NoSuchTemperature(" + name + ", NaN, nan)"},
           Case{u"1e400", "NoSuchTemperature(" + name + ", 1e400, inf)"},
           Case{u"{1}", "CannotConvert(cell)"},
           Case{u"1+2i", "CannotConvert(complex double)"},
       }) {
    diagram->setParameter(name, c.text);
    EXPECT_THAT(errors(), ElementsAre(c.cause));
  }
  for (const char16_t* text : {u"Auto", u"2*(", u""}) {
    diagram->setParameter(name, text);
    EXPECT_THAT(errors(), testing::Contains(testing::Not(StartsWith("ConfigSetEvalErr")))) << "a script error";
  }
  diagram->setParameter(name, u"20 +");
  EXPECT_EQ(kinemo::test::error_of([this] { compile(); }),
            "kinemo:common:gl:gti:compile:ConfigSetEvalErr(20 +, ReferenceTemperature, m)");
}

TEST_F(ModelSettings, SwitchIsOnOrOff) {
  for (const char16_t* text : {u"On", u"yes", u""}) {
    diagram->setParameter("PropagateRuntimeParameters", text);
    EXPECT_THAT(errors(), ElementsAre(StartsWith("NotASwitch(PropagateRuntimeParameters")));
  }
  diagram->setParameter("PropagateRuntimeParameters", u"off");
  EXPECT_THAT(errors(), IsEmpty());
}

TEST(SettingText, IsTextAlone) {
  const kinemo::test::LeakGuard guard;
  EXPECT_EQ(setting_text("S", cvUniquePtr(cvCreateString("a b"))), u"a b");
  EXPECT_EQ(kinemo::test::error_of([] { setting_text("S", cvUniquePtr(cvCreateDoubleScalar(1))); }),
            "kinemo:physical:settings:NotText(S, double)");
}

TEST_F(ModelSettings, InitialTemperatureIsTheReferenceTemperatureUnlessTheModelSaysElse) {
  diagram->setParameter("ReferenceTemperature", u"290");
  EXPECT_EQ(number_of(component(u"m/M"), "T_0").first, 290);
  diagram->setParameter("InitialTemperature", u"T0");
  EXPECT_DOUBLE_EQ(number_of(component(u"m/M"), "T_0").first, 293.15);
  EXPECT_EQ(diodeTemperature().first, 290);
  diagram->setParameter("InitialTemperature", u"auto");
  EXPECT_EQ(number_of(component(u"m/M"), "T_0").first, 290);
}

TEST_F(ModelSettings, BlocksMayHaveTheirOwnValue) {
  diagram->setParameter("ReferenceTemperature", u"290");
  bd::setParameter(diode, "T_from", u"own");
  EXPECT_EQ(diodeTemperature().first, 300.15);
  bd::setParameter(diode, "T", u"85");
  bd::setParameter(diode, "T_unit", u"degC");
  EXPECT_EQ(diodeTemperature(), std::make_pair(85.0, std::string("degC")));
  bd::setParameter(diode, "T_unit", u"V");
  EXPECT_THAT(errors(), ElementsAre("UnitNotOfKind(m/D, T, V, K)"));
}

TEST_F(ModelSettings, OwnValueThatIsNotUsedIsToldOf) {
  bd::setParameter(diode, "T", u"350");
  EXPECT_EQ(diodeTemperature().first, 300.15);
  const std::vector<kmf::Message> warnings = take_warning_messages();
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].identifier().id, "ValueWithoutEffect");
  for (const char* part : {"m/D", "'T'", "350", "ReferenceTemperature", "T_from"})
    EXPECT_THAT(warnings[0].text(), testing::HasSubstr(part));
}

TEST_F(ModelSettings, StayExpressionsOverRuntimeParametersWhereTheBlockAllowsIt) {
  diagram->setParameter("ReferenceTemperature", u"x + 1");
  bd::setParameter(diode, "T_conf", u"runtime");
  EXPECT_EQ(expression(component(u"m/D"), "T"), "");
  diagram->setParameter("PropagateRuntimeParameters", u"on");
  const gl::core::Model model = compile();
  const auto components = byPath(model.graph());
  EXPECT_EQ(expression(components.at(u"m/D"), "T"), "x + 1 K");
  EXPECT_EQ(number_of(components.at(u"m/M"), "T_0").first, 321) << "T_0_conf says compile time";
  EXPECT_THAT(model.runtimeParameters().runtimeParameters(), ElementsAre(kmf::VnId("x")));
  diagram->setParameter("ReferenceTemperature", u"x+n");
  EXPECT_EQ(diodeTemperature().first, 630) << "the graph wouldn't know n";
}

TEST_F(ModelSettings, OwnExpressionOfABlockThatFollowsIsLeftOut) {
  diagram->setParameter("PropagateRuntimeParameters", u"on");
  bd::setParameter(diode, "T", u"2*x");
  bd::setParameter(diode, "T_conf", u"runtime");
  EXPECT_EQ(diodeTemperature().first, 300.15);
  EXPECT_THAT(take_warnings(), ElementsAre("kinemo:physical:parameters:ValueWithoutEffect"));
  bd::setParameter(diode, "T_from", u"own");
  EXPECT_EQ(expression(component(u"m/D"), "T"), "2*x K");
}

TEST_F(ModelSettings, StayNumbersWhereAMaskHidesTheirVariable) {
  diagram->setParameter("PropagateRuntimeParameters", u"on");
  diagram->setParameter("ReferenceTemperature", u"x");
  for (const char* name : {"x", "y"}) {
    GTBlock& outer = diagram->root().addSubsystem(kmf::VnId(name));
    auto mask = boost::make_shared<GTMaskDefinition>();
    mask->parameters = {{name, "", u"1", GTPrmDesc::EDIT, "", {}}};
    MaskInterface::setMask(&outer, mask);
    GTBlock& inner = bd::contents(outer)->addSubsystem(u"In");
    bd::setParameter(bd::contents(inner)->addBlock(u"D", "physical/exponential_diode"), "T_conf", u"runtime");
  }
  const gl::core::Model model = compile();
  const auto inside = [&](const char* outer) {
    const gl::core::Graph& graph = model.graph().components().at(outer).graph();
    return graph.components().at("In").graph().components().at("D");
  };
  EXPECT_EQ(number_of(inside("x_1"), "T").first, 320);
  EXPECT_EQ(expression(inside("y"), "T"), "x K");
}

/// The setting means the dictionary's x, an expression in the model would mean the workspace's.
TEST_F(ModelSettings, StayNumbersWhereTheWorkspaceHidesTheirVariableOfADictionary) {
  const auto dictionary = std::make_shared<embedded::scripting_runtime::Workspace>();
  for (const char* name : {"x", "y"})
    dictionary->set(name, embedded::block_diagram::parameterObject(cvUniquePtr(cvCreateDoubleScalar(300)), "", true));
  embedded::block_diagram::keepDictionary("shared.dd.yaml", dictionary);
  diagram->setParameter("DataDictionary", u"shared.dd.yaml");
  diagram->setParameter("PropagateRuntimeParameters", u"on");
  embedded::block_diagram::setParameter(diode, "T_conf", u"runtime");
  diagram->setParameter("ReferenceTemperature", u"x");
  EXPECT_EQ(diodeTemperature(), std::make_pair(300.0, std::string("K")));
  diagram->setParameter("ReferenceTemperature", u"y");
  EXPECT_EQ(expression(component(u"m/D"), "T"), "y K");
  embedded::block_diagram::closeDictionaries();
}

TEST_F(ModelSettings, AreThoseOfTheLastCompileForWhoAsksForTheGraph) {
  diagram->setParameter("ReferenceTemperature", u"290");
  compile();
  gl::gti::TranslationManager& manager = gl::gti::TranslationManager::get();
  const gl::core::Graph graph = manager.graph(manager.domainKey("physical"), "m");
  EXPECT_EQ(number_of(byPath(graph).at(u"m/D"), "T").first, 290);
}

}  // namespace kinemo::physical::test
