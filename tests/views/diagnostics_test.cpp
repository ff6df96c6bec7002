#include "platform/foundation/exception.hpp"
#include "tests/support/physical_environment.hpp"
#include "views/diagnostics_view.hpp"
#include "views/error_diagnostics.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <sstream>

namespace kinemo::views {
namespace {

using ::testing::HasSubstr;

kmf::MessageException error_of(const char* id, const ustring& object = {}) {
  kmf::MessageException error(kmf::Message(kmf::MessageId("test:views", id)));
  if (!object.empty()) error.addObject(object);
  return error;
}

class ErrorDiagnostics : public test::PhysicalEnvironment {
 protected:
  ErrorDiagnostics()
      : diagram(read("kinemo: 1\nname: m\nblocks:\n  S:\n    type: subsystem\n    blocks:\n"
                     "      R: {type: physical/resistor}\n      G: {type: physical/electrical_reference}\n")) {}

  formats::DiagnosticList list_of(const kmf::Exception& error) {
    formats::DiagnosticList list;
    add_error(error, &diagram, "model.yaml", list);
    return list;
  }

  embedded::block_diagram::Diagram& diagram;
};

TEST_F(ErrorDiagnostics, StandWhereTheBlockWasWritten) {
  const formats::DiagnosticList list = list_of(error_of("Failed", u"m/S/R"));
  ASSERT_EQ(1U, list.all().size());
  const formats::Diagnostic& diagnostic = list.all().front();
  EXPECT_EQ("test:views:Failed", diagnostic.rule);
  EXPECT_EQ("model.yaml", diagnostic.file);
  EXPECT_EQ(7U, diagnostic.line);
  EXPECT_EQ(7U, diagnostic.column);
  ASSERT_EQ(1U, diagnostic.notes.size());
  EXPECT_EQ("in m/S/R", diagnostic.notes.front().text);
}

TEST_F(ErrorDiagnostics, OfManyBlocksAreToldOneByOne) {
  kmf::MessageException all(
      kmf::Message(kmf::MessageId("kinemo:common:gl:gti:compile", "MultipleCompilationErrors", ustring(u"m"))));
  all.addCause(error_of("First", u"m/S/R"));
  kmf::MessageException second = error_of("Second", u"m/S/G");
  second.addCause(error_of("Reason"));
  all.addCause(second);
  const formats::DiagnosticList list = list_of(all);
  ASSERT_EQ(2U, list.all().size());
  EXPECT_EQ("test:views:First", list.all()[0].rule);
  EXPECT_EQ("test:views:Second", list.all()[1].rule);
  EXPECT_EQ(8U, list.all()[1].line);
  EXPECT_THAT(list.all()[1].notes.back().text, HasSubstr("because: "));
}

TEST_F(ErrorDiagnostics, WithoutABlockNameTheFile) {
  for (const ustring& object : {ustring(), ustring(u"m/gone"), ustring(u"other")}) {
    const formats::DiagnosticList list = list_of(error_of("Failed", object));
    EXPECT_EQ("model.yaml", list.all().front().file);
    EXPECT_EQ(0U, list.all().front().line);
  }
}

TEST_F(ErrorDiagnostics, TakeThePlaceFromACause) {
  kmf::MessageException outer = error_of("Outer");
  outer.addCause(error_of("Inner", u"m/S/G"));
  EXPECT_EQ(8U, list_of(outer).all().front().line);
}

TEST_F(ErrorDiagnostics, TakeLongChainsOfCauses) {
  kmf::MessageException error = error_of("Deep");
  for (int i = 0; i < 200; ++i) {
    kmf::MessageException outer = error_of("Deep");
    outer.addCause(error);
    error = outer;
  }
  EXPECT_EQ(200U, list_of(error).all().front().notes.size());
}

formats::DiagnosticList sample() {
  formats::DiagnosticList list;
  list.error("a:b", {"my model.yaml", 3, 7}, "text \"quoted\"").notes = {{"see there", {"other.yaml", 9, 0}},
                                                                         {"valid: x", {}}};
  list.warning("c:d", {"", 0, 0}, "no place");
  return list;
}

TEST(DiagnosticsView, TextIsOneLineEachWithNotesBelow) {
  std::ostringstream out;
  write_diagnostics_text(out, sample(), false);
  EXPECT_EQ(
      "my model.yaml:3:7: error: text \"quoted\" [a:b]\n  other.yaml:9: note: see there\n  note: valid: x\n"
      "warning: no place [c:d]\n",
      out.str());
}

TEST(DiagnosticsView, JsonCounts) {
  std::ostringstream out;
  write_diagnostics_json(out, sample());
  const nlohmann::json json = nlohmann::json::parse(out.str());
  EXPECT_EQ(1, json.at("errors"));
  EXPECT_EQ(1, json.at("warnings"));
  EXPECT_EQ(7, json.at("diagnostics").at(0).at("column"));
  EXPECT_FALSE(json.at("diagnostics").at(1).contains("line"));
}

TEST(DiagnosticsView, SarifHasTheStandardsShape) {
  std::ostringstream out;
  write_diagnostics_sarif(out, sample(), "1.2", {{"a:b", "What a:b is."}});
  const nlohmann::json json = nlohmann::json::parse(out.str());
  EXPECT_EQ("2.1.0", json.at("version"));
  const nlohmann::json& run = json.at("runs").at(0);
  const nlohmann::json& rules = run.at("tool").at("driver").at("rules");
  const nlohmann::json& result = run.at("results").at(0);
  EXPECT_EQ("a:b", rules.at(result.at("ruleIndex").get<std::size_t>()).at("id"));
  EXPECT_EQ("What a:b is.", rules.at(0).at("shortDescription").at("text"));
  const nlohmann::json& place = result.at("locations").at(0).at("physicalLocation");
  EXPECT_EQ("my%20model.yaml", place.at("artifactLocation").at("uri"));
  EXPECT_EQ(3, place.at("region").at("startLine"));
  EXPECT_EQ(1U, result.at("relatedLocations").size());
  EXPECT_THAT(result.at("message").at("text").get<std::string>(), HasSubstr("valid: x"));
  EXPECT_EQ("warning", run.at("results").at(1).at("level"));
  EXPECT_FALSE(run.at("results").at(1).contains("locations"));
}

}  // namespace
}  // namespace kinemo::views
