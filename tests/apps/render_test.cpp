// `kinemo render` and `kinemo check --picture`: which systems are drawn, into what, and what is refused.

#include "tests/apps/program.hpp"

#include <gmock/gmock.h>

#include <chrono>
#include <thread>

namespace kinemo::test {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* model = R"(kinemo: 1
blocks:
  R: {type: physical/resistor}
  Lone: {type: physical/inertia}
  Sub:
    type: subsystem
    ports: {left: [a]}
    blocks:
      Deep: {type: subsystem, ports: {left: [b]}, blocks: {C: {type: physical/capacitor}}, lines: [[b, C.p]]}
    lines: [[a, Deep.b]]
lines: [[R.p, Sub.a]]
)";

std::size_t count(const std::string& text, const std::string& what) {
  std::size_t number = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++number;
  return number;
}

class Render : public ProgramTest {
 protected:
  Render() { write("model.yaml", model); }
};

TEST_F(Render, TheNameOfTheFileTellsTheKindOfPicture) {
  EXPECT_EQ(0, run({"render", "model.yaml", "-o", "a.svg"}).exit_code);
  EXPECT_THAT(read("a.svg"), HasSubstr("<svg"));
  EXPECT_EQ(0, run({"render", "model.yaml", "-o", "a.PNG"}).exit_code);
  EXPECT_THAT(read("a.PNG"), StartsWith("\x89PNG"));
  EXPECT_EQ(0, run({"render", "model.yaml", "-o", "a.pdf"}).exit_code);
  EXPECT_THAT(read("a.pdf"), StartsWith("%PDF"));
  EXPECT_THAT(read("a.pdf"), HasSubstr("/Count 3")) << "a page for each system";
  EXPECT_EQ(0, run({"render", "model.yaml", "-o", "b.pdf", "--system", "Sub"}).exit_code);
  EXPECT_THAT(read("b.pdf"), HasSubstr("/Count 1"));
  EXPECT_THAT(run({"render", "model.yaml", "--format", "svg"}).output, HasSubstr("<svg"));
}

TEST_F(Render, BlocksAreDrawnAsTheirSymbols) {
  write("one.yaml", "kinemo: 1\nblocks: {C: {type: physical/capacitor}}\n");
  const std::string symbol = run({"render", "one.yaml", "--format", "svg"}).output;
  EXPECT_THAT(symbol, ::testing::ContainsRegex("stroke:rgb.0%,3")) << "in the colour of its ports";
  EXPECT_EQ(0u, count(symbol, "stroke:rgb(0%,0%,0%)")) << "without a frame";
}

TEST_F(Render, ANetIsShownWhereItIs) {
  const auto lines = [&](const std::vector<std::string>& more) {
    std::vector<std::string> arguments{"render", "model.yaml", "--format", "svg"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    const ProgramRun drawn = run(arguments);
    EXPECT_EQ(0, drawn.exit_code) << drawn.errors;
    return count(drawn.output, "stroke-width=\"8\"") + count(drawn.output, "stroke-width:8");
  };
  EXPECT_EQ(0u, lines({}));
  EXPECT_EQ(1u, lines({"--net", "R.p"}));
  EXPECT_EQ(1u, lines({"--net", "R.p", "--system", "Sub/Deep"}));
  EXPECT_EQ(1u, lines({"--net", "Sub/Deep/C.p"}));
}

TEST_F(Render, WhatAPictureCannotShowIsTold) {
  const ProgramRun elsewhere = run({"render", "model.yaml", "-o", "a.svg", "--net", "R.n", "--system", "Sub"});
  EXPECT_EQ(0, elsewhere.exit_code);
  EXPECT_THAT(elsewhere.errors, HasSubstr("[render:net-elsewhere]"));
  write("wide.yaml",
        "kinemo: 1\nblocks: {A: {type: physical/inertia, at: [0, 0, 60, 40]},\n"
        "  B: {type: physical/inertia, at: [900000, 0, 60, 40]}}\n");
  const ProgramRun small = run({"render", "wide.yaml", "-o", "a.png"});
  EXPECT_EQ(0, small.exit_code);
  EXPECT_THAT(small.errors, HasSubstr("[render:too-small]"));
}

TEST_F(Render, AModelGivesTheSameFileAgain) {
  for (const std::string name : {"a.svg", "a.png", "a.pdf"}) {
    EXPECT_EQ(0, run({"render", "model.yaml", "-o", name}).exit_code);
    const std::string first = read(name);
    std::this_thread::sleep_for(std::chrono::milliseconds(name == "a.pdf" ? 1100 : 0));
    EXPECT_EQ(0, run({"render", "model.yaml", "-o", name}).exit_code);
    EXPECT_TRUE(first == read(name)) << name;
  }
  EXPECT_THAT(read("a.pdf"), HasSubstr("/Title (model)"));
  EXPECT_THAT(read("a.pdf"), HasSubstr("/Title (Deep)")) << "in the outline";
  EXPECT_THAT(read("a.svg"), ::testing::Not(HasSubstr("pt\"")));
}

TEST_F(Render, WhatIsWrongLeavesNoFile) {
  struct Case {
    std::vector<std::string> arguments;
    int exit_code;
    std::string message;
  };
  write("broken.yaml", "kinemo: 1\nblocks: {R: {type: physical/resistr}}\n");
  write("cut.yaml", "kinemo: 1\nblocks: {R: [\n");
  const std::vector<Case> cases{
      {{"render", "model.yaml"}, 2, "-o FILE.svg, .png or .pdf is required"},
      {{"render", "model.yaml", "-o", "out.gif"}, 2, "'out.gif' tells no kind of picture"},
      {{"render", "model.yaml", "-o", "out.svg", "--system", "Sob"}, 2, "did you mean 'Sub'?"},
      {{"render", "model.yaml", "-o", "out.svg", "--system", "R"}, 2, "'R' has nothing inside"},
      {{"render", "model.yaml", "-o", "out.svg", "--net", "R.q"}, 2, "valid: 'p', 'n'"},
      {{"render", "model.yaml", "-o", "out.svg", "--net", ""}, 2, "it names no net"},
      {{"render", "broken.yaml", "-o", "out.svg"}, 1, "did you mean 'physical/resistor'?"},
      {{"check", "model.yaml", "--picture", "out.txt"}, 2, "'out.txt' tells no kind of picture"},
      {{"check", "cut.yaml", "--picture", "out.svg"}, 1, "there is no picture"},
  };
  for (const Case& row : cases) {
    const ProgramRun refused = run(row.arguments);
    EXPECT_EQ(row.exit_code, refused.exit_code) << row.message;
    EXPECT_THAT(refused.errors, HasSubstr(row.message));
  }
  EXPECT_THAT(files(), ::testing::UnorderedElementsAre("broken.yaml", "cut.yaml", "model.yaml"));
}

TEST_F(Render, ACheckOutlinesWhatItFinds) {
  EXPECT_EQ(0, run({"check", "model.yaml", "--picture", "found.pdf"}).exit_code);
  EXPECT_THAT(read("found.pdf"), HasSubstr("/Count 3"));
  EXPECT_EQ(0, run({"check", "model.yaml", "--picture", "found.svg"}).exit_code);
  EXPECT_EQ(0, run({"render", "model.yaml", "-o", "plain.svg"}).exit_code);
  EXPECT_NE(read("plain.svg"), read("found.svg"));
  write("broken.yaml", "kinemo: 1\nblocks: {R: {type: physical/resistr}}\n");
  write("broken.cir", "title\nr1 a 0 1k\na1 a 0 kind\n.end\n");
  for (const std::string file : {"broken.yaml", "broken.cir"}) {
    EXPECT_EQ(1, run({"check", file, "--picture", "found.svg"}).exit_code);
    EXPECT_THAT(read("found.svg"), HasSubstr("stroke:rgb(85%,10%,10%)")) << file;
    EXPECT_EQ(1, run({"render", file, "-o", "plain.svg"}).exit_code) << "only a check shows what could be read";
  }
}

}  // namespace
}  // namespace kinemo::test
