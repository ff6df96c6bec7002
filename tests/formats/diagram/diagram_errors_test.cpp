#include "formats/diagram/scope.hpp"
#include "formats/read_text.hpp"
#include "tests/support/physical_environment.hpp"
#include "tests/support/temporary_folder.hpp"
#include "views/picture/finding_marks.hpp"

#include <filesystem>
#include <fstream>
#include <sstream>
#include <tuple>

namespace kinemo::formats::diagram {
namespace {

struct Expected {
  std::string file;
  std::size_t line;
  std::string rule;
  std::string text;
};

struct ErrorCase {
  std::string name;
  std::map<std::string, std::string> files;
  std::vector<Expected> expected;
};

std::string trimmed(const std::string& text) {
  const std::size_t begin = text.find_first_not_of(' ');
  return begin == std::string::npos ? "" : text.substr(begin, text.find_last_not_of(' ') - begin + 1);
}

/// "rule: text", where a rule has colons too, but none with a blank behind it.
Expected parse_expected(const std::string& file, std::size_t line, const std::string& text) {
  const std::size_t colon = text.find(": ");
  const std::string rule =
      colon == std::string::npos ? trimmed(text.substr(0, text.rfind(':'))) : text.substr(0, colon);
  return {file, line, rule, colon == std::string::npos ? "" : trimmed(text.substr(colon + 2))};
}

void add_line(ErrorCase& error_case, const std::string& file, const std::string& line) {
  std::string& text = error_case.files[file];
  const std::size_t number = 1 + static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  std::size_t mark = line.find("#! ");
  text += line.substr(0, mark) + "\n";
  while (mark != std::string::npos) {
    const std::size_t next = line.find("#! ", mark + 3);
    error_case.expected.push_back(parse_expected(file, number, trimmed(line.substr(mark + 3, next - mark - 3))));
    mark = next;
  }
}

std::vector<ErrorCase> read_cases() {
  std::ifstream in(KINEMO_SOURCE_DIR "/tests/formats/diagram/error_cases.txt");
  std::vector<ErrorCase> cases;
  std::string file;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("=== ", 0) == 0) {
      cases.push_back({line.substr(4), {}, {}});
      file = "model.yaml";
    } else if (line.rfind("#@ ", 0) == 0) {
      file = line.substr(3);
    } else if (!cases.empty()) {
      add_line(cases.back(), file, line);
    }
  }
  return cases;
}

std::string full_text(const Diagnostic& diagnostic) {
  std::string text = diagnostic.text;
  for (const DiagnosticNote& note : diagnostic.notes) text += "\n" + note.text;
  return text;
}

class DiagramErrors : public test::PhysicalEnvironment {
 protected:
  void run(const ErrorCase& error_case) {
    for (const auto& [name, text] : error_case.files) folder.write(name, text);
    DiagnosticList problems;
    EXPECT_EQ(nullptr, read_diagram((folder.path() / "model.yaml").string(), problems));
    EXPECT_TRUE(embedded::block_diagram::Diagram::open().empty()) << "a diagram is left open";
    std::vector<Expected> left = error_case.expected;
    for (const Diagnostic& diagnostic : problems.all()) take(left, diagnostic);
    expect_same_when_kept(problems);
    for (const Expected& missing : left) {
      ADD_FAILURE() << "not told: " << missing.file << ":" << missing.line << " " << missing.rule << ": "
                    << missing.text;
    }
  }

  /// Who keeps what could be read is told the same, and gets a diagram unless it couldn't even be begun.
  void expect_same_when_kept(const DiagnosticList& problems) {
    DiagnosticList again;
    auto* kept = read_diagram((folder.path() / "model.yaml").string(), again, OnErrors::keep);
    EXPECT_EQ(test::all_text(problems), test::all_text(again));
    if (kept == nullptr) return;
    EXPECT_FALSE(views::picture::make_picture(
                     *kept, views::picture::picture_of_findings(*kept, again, embedded::drawing::Format::Pdf))
                     .empty());
    embedded::block_diagram::Diagram::close(*kept);
  }

  void take(std::vector<Expected>& left, const Diagnostic& diagnostic) {
    const auto found = std::find_if(left.begin(), left.end(), [&](const Expected& expected) {
      return (folder.path() / expected.file).string() == diagnostic.file && expected.line == diagnostic.line &&
             expected.rule == diagnostic.rule && full_text(diagnostic).find(expected.text) != std::string::npos;
    });
    EXPECT_NE(0U, diagnostic.column);
    if (found == left.end()) {
      ADD_FAILURE() << "not expected: " << to_string(diagnostic);
    } else {
      left.erase(found);
    }
  }

  test::TemporaryFolder folder;
};

TEST_F(DiagramErrors, AreAllToldInOneRunWithTheirPlaces) {
  const std::vector<ErrorCase> cases = read_cases();
  ASSERT_GT(cases.size(), 15U);
  for (const ErrorCase& error_case : cases) {
    SCOPED_TRACE(error_case.name);
    ASSERT_FALSE(error_case.expected.empty());
    run(error_case);
  }
}

TEST_F(DiagramErrors, NameTheBlockInANote) {
  DiagnosticList problems;
  const std::string text =
      "kinemo: 1\nname: m\nblocks: {S: {type: subsystem, blocks: {R: {type: physical/resistor, parameters: {Q: "
      "1}}}}}\n";
  EXPECT_EQ(nullptr, read_diagram_text(text, "m.yaml", problems));
  ASSERT_EQ(1U, problems.all().size());
  EXPECT_EQ("in m/S/R", problems.all().front().notes.back().text);
  ASSERT_EQ(1U, problems.all().front().objects.size());
  EXPECT_EQ("m/S/R", problems.all().front().objects.front().block);
}

TEST_F(DiagramErrors, OfAnUnreadableFileHaveNoLine) {
  DiagnosticList problems;
  EXPECT_EQ(nullptr, read_diagram("/nowhere/at all.yaml", problems));
  EXPECT_EQ(nullptr, read_diagram("/", problems));
  ASSERT_EQ(2U, problems.all().size());
  EXPECT_EQ("/nowhere/at all.yaml", problems.all().front().file);
  EXPECT_EQ(0U, problems.all().front().line);
}

TEST_F(DiagramErrors, SettingsNearToAKnownOneAreAWarning) {
  DiagnosticList problems;
  EXPECT_NE(nullptr, read_diagram_text("kinemo: 1\nsettings: {InitializeInteractivRuns: 'on', Solver: fast}\n",
                                       "m.yaml", problems));
  EXPECT_EQ(0U, problems.error_count());
  ASSERT_EQ(1U, problems.all().size());
  EXPECT_EQ("diagram:unknown-setting", problems.all().front().rule);
}

TEST_F(DiagramErrors, BeyondALimitAreOnlyMentioned) {
  std::string text = "kinemo: 1\nlines:\n";
  for (std::size_t i = 0; i < Report::error_limit + 5; ++i) text += "  - [x]\n";
  DiagnosticList problems;
  EXPECT_EQ(nullptr, read_diagram_text(text, "m.yaml", problems));
  EXPECT_EQ(Report::error_limit + 1, problems.error_count());
  EXPECT_EQ("diagram:too-many", problems.all().front().rule);
}

TEST_F(DiagramErrors, CutAnywhereAFileIsRefusedOrReadButNeverCrashes) {
  std::string reason;
  const std::string text = read_text(KINEMO_SOURCE_DIR "/examples/motor_drive.yaml", reason).value();
  for (std::size_t size = 0; size < text.size(); size += 7) {
    DiagnosticList problems;
    auto* diagram = read_diagram_text(text.substr(0, size), KINEMO_SOURCE_DIR "/examples/cut.yaml", problems);
    EXPECT_EQ(diagram == nullptr, problems.has_errors()) << size;
    if (diagram != nullptr) embedded::block_diagram::Diagram::close(*diagram);
  }
}

}  // namespace
}  // namespace kinemo::formats::diagram
