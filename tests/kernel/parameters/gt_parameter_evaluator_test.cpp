#include "common/gl/gti/export/gt_parameter_evaluator.hpp"

#include "embedded/block_diagram/data_dictionary.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace gl::gti {
namespace {

namespace host = embedded::block_diagram;
using embedded::scripting_runtime::base_workspace;

class ParameterEvaluator : public kinemo::test::NetworkTest {
 protected:
  ~ParameterEvaluator() override {
    base_workspace().clear();
    host::closeDictionaries();
  }

  /// A number with its unit, or a text in quotes.
  static std::string told(const ParameterVariant& result) {
    if (const ustring* text = boost::get<ustring>(&result)) return "'" + kmf::ustring_to_utf8_string(*text) + "'";
    const data2::core::ValueData& value = boost::get<data2::core::Value>(result).data();
    std::string all;
    for (const double element : value.elements()) {
      std::ostringstream number;
      number << element;
      all += (all.empty() ? "" : " ") + number.str();
    }
    return all + (value.unit().text().empty() ? "" : " " + value.unit().text());
  }
  std::string evaluated(const ustring& text) const { return told(GtParameterEvaluator(u"m")(text)); }

  /// Links the model to a dictionary of one variable.
  void link_dictionary(const char* variable, double value) {
    const auto variables = std::make_shared<embedded::scripting_runtime::Workspace>();
    variables->set(variable, value);
    host::keepDictionary("plant.dd.yaml", variables);
    diagram.setParameter("DataDictionary", u"plant.dd.yaml");
  }
};

TEST_F(ParameterEvaluator, NamesComeFromTheModelWorkspaceAndThenFromTheBaseWorkspace) {
  base_workspace().set("a", 1);
  base_workspace().set("b", 2);
  EXPECT_EQ(evaluated(u"a+b"), "3") << "without any variable of the model";
  diagram.setVariable("b", u"20", "", false);
  diagram.setVariable("c", u"[300 400]", "", false);
  EXPECT_EQ(evaluated(u"a+2*b+c"), "341 441");
  EXPECT_EQ(evaluated(u"\"a text\""), "'a text'");
}

TEST_F(ParameterEvaluator, KeepsTheModelWorkspaceOfItsBeginning) {
  base_workspace().set("b", 1);
  diagram.setVariable("m1", u"1", "", false);
  const GtParameterEvaluator evaluator(u"m");
  diagram.setVariable("m1", u"2", "", false);
  base_workspace().set("b", 10);
  EXPECT_EQ(told(evaluator(u"m1+b")), "11");
  EXPECT_EQ(evaluator.modelHandle(), diagram.handle());
}

TEST_F(ParameterEvaluator, NamingAParameterObjectGivesItsValueAndUnit) {
  diagram.setVariable("T", u"25", "degC", true);
  diagram.setVariable("plain", u"[1 2]", "", true);
  EXPECT_EQ(evaluated(u"T"), "25 degC");
  EXPECT_EQ(evaluated(u"plain"), "1 2");
}

TEST_F(ParameterEvaluator, ADictionaryTakesThePlaceOfBothWorkspaces) {
  base_workspace().set("b", 1);
  diagram.setVariable("w", u"2", "", false);
  link_dictionary("d", 3);
  EXPECT_EQ(evaluated(u"2*d"), "6");
  EXPECT_NE(kinemo::test::error_of([&] { evaluated(u"w"); }), "");
  EXPECT_NE(kinemo::test::error_of([&] { evaluated(u"b"); }), "");
  link_dictionary("e", 4);
  EXPECT_EQ(evaluated(u"e"), "4");
}

TEST_F(ParameterEvaluator, PassesOnWhatTheRuntimeRaises) {
  EXPECT_NE(kinemo::test::error_of([] { GtParameterEvaluator evaluator(u"nowhere"); }), "");
  EXPECT_NE(kinemo::test::error_of([&] { evaluated(u"2*nothing"); }), "");
  EXPECT_NE(kinemo::test::error_of([&] { evaluated(u"{1}"); }), "") << "a cell is no value";
  diagram.setParameter("DataDictionary", u"absent.dd.yaml");
  EXPECT_EQ(kinemo::test::error_of([] { GtParameterEvaluator evaluator(u"m"); }),
            "kinemo:host:dictionary:NoReader(absent.dd.yaml)");
}

}  // namespace
}  // namespace gl::gti
