#include "domains/physical/kind_block.hpp"

#include "domains/physical/kinds.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>

namespace kinemo::physical::test {

namespace {

using kinemo::test::error_of;
using testing::ElementsAre;

/// A resistor R1 and what the tests make of its parameters.
class KindBlocks : public PhysicalTest {
 protected:
  GTBlock& resistor(const ustring& R, const ustring& unit = u"Ohm", const ustring& conf = u"compiletime") {
    GTBlock& block = place(u"R1", "physical/resistor");
    bd::setParameter(block, "R", R);
    bd::setParameter(block, "R_unit", unit);
    bd::setParameter(block, "R_conf", conf);
    return block;
  }
  gl::core::Component component(const ustring& path = u"m/R1") { return byPath(compile().graph()).at(path); }
  std::size_t portCount(const GTBlock& block) { return bd::ports(block).size(); }
};

}  // namespace

TEST_F(KindBlocks, NumbersKeepValueAndUnitAsTyped) {
  resistor(u"2*3", u"kOhm");
  EXPECT_EQ(number_of(component(), "R"), std::make_pair(6.0, std::string("kOhm")));
}

TEST_F(KindBlocks, ParametersThatDoNotFitAreTellingErrors) {
  struct Case {
    ustring R, unit, conf;
    std::string error;
  };
  const std::vector<Case> cases = {
      {u"1", u"furlong per", u"compiletime", "InvalidUnit(m/R1, R, furlong per)"},
      {u"'one'", u"Ohm", u"compiletime", "NotNumeric(m/R1, R, 'one', char)"},
      {u"{1}", u"Ohm", u"compiletime", "NotNumeric(m/R1, R, {1}, cell)"},
      {u"1", u"Ohm", u"sometimes", "InvalidChoice(m/R1, R_conf, sometimes, 'compiletime', 'runtime')"},
  };
  GTBlock& block = resistor(u"1");
  for (const Case& row : cases) {
    bd::setParameter(block, "R", row.R);
    bd::setParameter(block, "R_unit", row.unit);
    bd::setParameter(block, "R_conf", row.conf);
    EXPECT_THAT(errors(), ElementsAre(row.error));
  }
  bd::setParameter(block, "R", u"1");
  bd::setParameter(block, "R_unit", u"Ohm");
  bd::setParameter(block, "R_conf", u"RunTime");
  EXPECT_THAT(errors(), ElementsAre());
}

TEST_F(KindBlocks, ErrorsOfAllBlocksAreToldAtOnce) {
  for (const ustring name : {u"a", u"b", u"c"}) {
    GTBlock& block = place(name, "physical/resistor");
    if (name != u"b") bd::setParameter(block, "R_unit", u"nonsense unit");
  }
  EXPECT_THAT(errors(), testing::UnorderedElementsAre("InvalidUnit(m/a, R, nonsense unit)",
                                                      "InvalidUnit(m/c, R, nonsense unit)"));
}

TEST_F(KindBlocks, ChoicesAreTakenFromTheirList) {
  GTBlock& gear = place(u"G", "physical/gear_box");
  bd::setParameter(gear, "direction", u"opposite");
  EXPECT_EQ(text_of(component(u"m/G"), "direction"), u"opposite");
  bd::setParameter(gear, "direction", u"sideways");
  EXPECT_THAT(errors(), ElementsAre(testing::StartsWith("InvalidChoice(")));
}

TEST_F(KindBlocks, PortsFollowTheCountOfTerminals) {
  GTBlock& transistor = place(u"q1", "physical/spice/bjt");
  EXPECT_EQ(portCount(transistor), 3u);
  GTBlock& resistor = place(u"r1", "physical/spice/resistor");
  gtPort* collector = transistor.getGrRightConnectionPort(0);
  diagram->root().addLine({collector, resistor.getGrLeftConnectionPort(0)});
  bd::setParameter(transistor, "terminals", u" 5 ");
  bd::refresh(transistor);
  EXPECT_EQ(portCount(transistor), 5u);
  EXPECT_EQ(transistor.getGrRightConnectionPort(0), collector);
  EXPECT_EQ(bd::linesAt(*collector).size(), 1u);
  EXPECT_EQ(component(u"m/q1").connectorOrder().size(), 5u);
}

TEST_F(KindBlocks, CountsThatAKindCannotHaveAreRefusedAndKeepThePorts) {
  GTBlock& source = place(u"e1", "physical/spice/vcvs");
  for (const char16_t* bad : {u"0", u"3", u"-2", u"2.0", u"four", u"", u"99999999999999999999", u"4 4"}) {
    bd::setParameter(source, "terminals", bad);
    EXPECT_THROW(bd::refresh(source), kmf::MessageException);
    EXPECT_EQ(portCount(source), 4u);
  }
  EXPECT_THAT(errors(), ElementsAre("InvalidTerminalCount(terminals, 4 4, 2, 100000, 2)"));
  bd::setParameter(source, "terminals", u"1000");
  bd::refresh(source);
  EXPECT_EQ(portCount(source), 1000u);
}

TEST_F(KindBlocks, CopyInAMaskedSubsystemLooksAtItsOwnParameters) {
  auto outer = boost::make_shared<GTMaskDefinition>();
  outer->parameters = {{"terminals", "", u"77", GTPrmDesc::STRING, "", {}}};
  GTBlock& subsystem = diagram->root().addSubsystem(u"s");
  MaskInterface::setMask(&subsystem, outer);
  EXPECT_EQ(portCount(bd::contents(subsystem)->addBlock(u"d", "physical/spice/diode")), 2u);
}

TEST_F(KindBlocks, MaskGeneratorRefusesForeignHandles) {
  kmf::CvCleaner cleaner;
  for (const double handle : {-1.0, diagram->root().addSubsystem(u"s").getHandle()}) {
    cvArray_tag* input = cleaner.createScalarDouble(handle);
    EXPECT_THAT(error_of([&] { kmf::call_internal_corvane(0, nullptr, 1, &input, mask_function); }),
                testing::StartsWith("kinemo:physical:blocks:NotABlockOfTheLibrary("));
  }
}

TEST(KindBlock, TakesRuntimeParametersOfItsExpressionsOnly) {
  const std::vector<BlockKind> kinds = electrical_kinds();
  const auto kind = std::find_if(kinds.begin(), kinds.end(), [](const auto& k) { return k.name == "capacitor"; });
  KindBlock block(std::make_shared<const PreparedKind>(*kind));
  gl::gti::ParameterRewrites rewrites;
  for (const char* id : {"C", "v_0", "C_unit", "other"}) rewrites.emplace(id, data2::core::Expr());
  std::vector<std::string> set;
  block.applyRuntimeParameters([&set](const kmf::VnIdPath1& path, const ParameterVariant&) { set.push_back(path); },
                               rewrites);
  EXPECT_THAT(set, ElementsAre("C", "v_0"));
}

}  // namespace kinemo::physical::test
