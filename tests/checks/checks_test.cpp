#include "checks/check.hpp"

#include "tests/support/physical_environment.hpp"

#include <gmock/gmock.h>

namespace kinemo::checks {
namespace {

struct CheckCase {
  const char* name;
  const char* text;
  std::vector<std::string> findings;  ///< "line rule: part of the text", in any order
};

class Checks : public test::PhysicalEnvironment {
 protected:
  formats::DiagnosticList run(const std::string& text) {
    embedded::block_diagram::Diagram& diagram = read(text);
    formats::DiagnosticList findings;
    const gl::core::Model model = compile(diagram);
    run_rules({diagram, &model, "model.yaml"}, findings);
    embedded::block_diagram::Diagram::close(diagram);
    return findings;
  }

  void expect(const CheckCase& check_case) {
    const formats::DiagnosticList list = run(check_case.text);
    std::vector<std::string> left = check_case.findings;
    for (const formats::Diagnostic& found : list.all()) {
      const std::string start = std::to_string(found.line) + " " + found.rule.substr(found.rule.find(':') + 1) + ": ";
      const auto match = std::find_if(left.begin(), left.end(), [&](const std::string& expected) {
        return expected.rfind(start, 0) == 0 && found.text.find(expected.substr(start.size())) != std::string::npos;
      });
      if (match == left.end()) {
        ADD_FAILURE() << "not expected: " << formats::to_string(found);
      } else {
        left.erase(match);
      }
    }
    for (const std::string& missing : left) ADD_FAILURE() << "not found: " << missing;
  }
};

const std::vector<CheckCase>& cases() {
  static const std::vector<CheckCase> all{
      {"a closed circuit is clean",
       R"(kinemo: 1
blocks:
  V: {type: physical/voltage_source}
  G: {type: physical/electrical_reference}
lines: [[V.p, V.n, G]]
)",
       {}},
      {"ports without a line",
       R"(kinemo: 1
blocks:
  R: {type: physical/resistor}
  G: {type: physical/electrical_reference}
  S:
    type: subsystem
    ports: {left: [a, b]}
    blocks:
      R2: {type: physical/resistor}
    lines: [[a, R2.p, R2.n]]
lines: [[R.p, G, S.a]]
)",
       {"3 unconnected-port: port 'n' of 'R' is joined to nothing", "7 unconnected-port: the port 'b' of 'S'",
        "5 unconnected-port: port 'b' of 'S'"}},
      {"choices that aren't active and insides of opaque subsystems don't count",
       R"(kinemo: 1
blocks:
  V:
    variant:
      choices:
        one: {ports: {left: [p]}, blocks: {R: {type: physical/resistor}}}
        two: {ports: {left: [p]}, blocks: {G: {type: physical/electrical_reference}}, lines: [[p, G]]}
      active: two
  O: {type: subsystem, opaque: on, parameters: {ComponentType: a.b}, ports: {left: [x]}, blocks: {R: {type: physical/resistor}}}
lines: [[V.p, O.x]]
)",
       {}},
      {"networks without a reference, one for each area of physics",
       R"(kinemo: 1
blocks:
  M: {type: physical/dc_motor}
  R: {type: physical/resistor}
  J: {type: physical/inertia}
lines: [[M.p, R.p], [M.n, R.n], [M.r, J.r, M.c]]
)",
       {"3 missing-reference: the physical.electrical network of 'M', 'R'",
        "5 missing-reference: the physical.rotational network of 'J', 'M'"}},
      {"a reference in a subsystem counts for the whole network",
       R"(kinemo: 1
blocks:
  R: {type: physical/resistor}
  S: {type: subsystem, ports: {left: [a]}, blocks: {G: {type: physical/electrical_reference}}, lines: [[a, G]]}
lines: [[R.p, R.n, S.a]]
)",
       {}},
  };
  return all;
}

TEST_F(Checks, FindWhatTheyAreFor) {
  for (const CheckCase& check_case : cases()) {
    SCOPED_TRACE(check_case.name);
    expect(check_case);
  }
}

// The compile may refuse such a diagram; the rule needs no compiled model.
TEST_F(Checks, MixedTypesAreFoundThroughSubsystems) {
  embedded::block_diagram::Diagram& diagram = read(R"(kinemo: 1
blocks:
  R: {type: physical/resistor}
  S:
    type: subsystem
    ports: {left: [a]}
    blocks: {J: {type: physical/inertia}}
    lines: [[a, J.r]]
lines: [[R.p, S.a], [R.n, R.n]]
)");
  formats::DiagnosticList findings;
  run_rules({diagram, nullptr, "model.yaml"}, findings);
  ASSERT_EQ(1U, findings.error_count());
  const formats::Diagnostic& found = findings.all().front();
  EXPECT_EQ("check:mixed-port-types", found.rule);
  EXPECT_THAT(found.text, ::testing::HasSubstr("port 'p' of 'R'"));
  EXPECT_THAT(found.text, ::testing::HasSubstr("port 'r' of 'S/J'"));
  EXPECT_EQ(2U, found.notes.size());
}

TEST_F(Checks, LongListsOfBlocksAreCut) {
  std::string text = "kinemo: 1\nblocks:\n";
  std::string line = "lines: [[";
  for (int i = 0; i < 30; ++i) {
    const std::string name = "R" + std::to_string(i);
    text += "  " + name + ": {type: physical/resistor}\n";
    line += name + ".p, " + name + ".n, ";
  }
  const formats::DiagnosticList findings = run(text + line + "]]\n");
  ASSERT_EQ(1U, findings.all().size());
  EXPECT_THAT(findings.all().front().text, ::testing::HasSubstr("and 20 more"));
}

}  // namespace
}  // namespace kinemo::checks
