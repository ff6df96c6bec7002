#include "tests/apps/program.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace kinemo::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::StartsWith;

constexpr const char* examples = KINEMO_SOURCE_DIR "/examples/";

constexpr const char* circuit =
    "kinemo: 1\n"
    "blocks:\n"
    "  V: {type: physical/voltage_source}\n"
    "  R: {type: physical/resistor, parameters: {R: 5}}\n"
    "  G: {type: physical/electrical_reference}\n"
    "lines:\n"
    "  - {name: top, ports: [V.p, R.p]}\n"
    "  - {name: ground, ports: [V.n, R.n, G]}\n";

class Program : public ProgramTest {};

TEST_F(Program, ExamplesAreClean) {
  for (const char* name : {"rc_lowpass.yaml", "motor_drive.yaml", "amplifier.cir"}) {
    const ProgramRun check = run({"check", std::string(examples) + name, "--warnings-as-errors"});
    EXPECT_EQ(0, check.exit_code) << name << "\n" << check.output << check.errors;
    EXPECT_THAT(check.output, Not(HasSubstr("warning:"))) << name;
    const ProgramRun compile = run({"compile", std::string(examples) + name});
    EXPECT_EQ(0, compile.exit_code) << name << "\n" << compile.errors;
    EXPECT_THAT(compile.errors, IsEmpty()) << name;
  }
}

TEST_F(Program, CompileShowsTheGraphInAllFormats) {
  write("m.yaml", circuit);
  EXPECT_THAT(run({"compile", "m.yaml"}).output, HasSubstr("physical.resistor  R = 5 Ohm"));
  const nlohmann::json json = nlohmann::json::parse(run({"compile", "m.yaml", "--format", "json"}).output);
  EXPECT_EQ("m", json.at("model"));
  EXPECT_EQ(5.0, json.at("graph").at("components").at("R").at("parameters").at("R").at("value"));
  EXPECT_THAT(run({"compile", "m.yaml", "--format=dot"}).output, StartsWith("graph \"m\" {"));
}

TEST_F(Program, NetsListWhatSharesANode) {
  write("m.yaml", circuit);
  EXPECT_EQ("ground\n  G.g\n  R.n\n  V.n\ntop\n  R.p\n  V.p\n", run({"nets", "m.yaml"}).output);
  const nlohmann::json json = nlohmann::json::parse(run({"nets", "--format", "json", "m.yaml"}).output);
  EXPECT_EQ(2U, json.at("nets").size());
}

TEST_F(Program, NetlistNetsHaveElementsAndTheirNodesInOrder) {
  write(
      "n.cir",
      "title\nv1 in 0 5\nx1 in out half\nr9 out 0 1k\n.subckt half a b\nr1 a b 1k\nq1 a b 0 m\n.ends\n.model m npn\n");
  const ProgramRun nets = run({"nets", "n.cir", "--format", "json"});
  ASSERT_EQ(0, nets.exit_code) << nets.errors;
  const nlohmann::json json = nlohmann::json::parse(nets.output);
  std::map<std::string, std::pair<std::string, int>> net_of;  // "block index" to its net
  for (const nlohmann::json& net : json.at("nets")) {
    for (const nlohmann::json& pin : net.at("pins")) {
      net_of[pin.at("block").get<std::string>() + " " + std::to_string(pin.at("index").get<int>())].first =
          net.at("name");
    }
  }
  EXPECT_EQ(net_of.at("v1 1"), net_of.at("x1/r1 1"));
  EXPECT_EQ(net_of.at("x1/r1 2"), net_of.at("r9 1"));
  EXPECT_EQ(net_of.at("x1/q1 1"), net_of.at("v1 1"));
  EXPECT_EQ(net_of.at("x1/q1 3"), net_of.at("v1 2"));
  EXPECT_NE(net_of.at("v1 1"), net_of.at("v1 2"));
}

TEST_F(Program, ModelComesFromStandardInputToo) {
  RunOptions options;
  options.input = circuit;
  EXPECT_EQ(0, run({"nets", "-"}, options).exit_code);
  EXPECT_EQ(0, run({"nets", "-", "--input-format", "diagram"}, options).exit_code);
  EXPECT_EQ(1, run({"nets", "-", "--input-format", "spice"}, options).exit_code);
  options.input = "title\nr1 a 0 5\n";
  EXPECT_THAT(run({"nets", "-"}, options).output, HasSubstr("r1"));
  options.input = "kinemo: 1\nbloks: {}\n";
  EXPECT_THAT(run({"compile", "-"}, options).errors, StartsWith("<stdin>:2:1: error: "));
}

TEST_F(Program, FormatIsFoundByContentsWhereTheNameDoesNotTell) {
  write("model", std::string("# a diagram\n---\n") + circuit);
  write("netlist.txt", "a title\nr1 a 0 5\n");
  EXPECT_THAT(run({"nets", "model"}).output, HasSubstr("ground"));
  EXPECT_THAT(run({"nets", "netlist.txt"}).output, HasSubstr("r1"));
}

TEST_F(Program, BlocksShowTheLibrary) {
  const std::string all = run({"blocks"}).output;
  EXPECT_THAT(all, HasSubstr("physical/resistor"));
  EXPECT_THAT(all, HasSubstr("physical/spice/bjt"));
  const std::string one = run({"blocks", "physical/resistor"}).output;
  EXPECT_THAT(one, HasSubstr("1 Ohm"));
  EXPECT_THAT(one, HasSubstr("physical.electrical"));
  const nlohmann::json some = nlohmann::json::parse(run({"blocks", "physical/spice", "--format", "json"}).output);
  EXPECT_EQ(22U, some.at("blocks").size());
  const ProgramRun unknown = run({"blocks", "physical/resistr"});
  EXPECT_EQ(2, unknown.exit_code);
  EXPECT_THAT(unknown.errors, HasSubstr("did you mean 'physical/resistor'?"));
}

TEST_F(Program, CheckTellsFindingsOnStandardOutput) {
  write("m.yaml", "kinemo: 1\nblocks: {R: {type: physical/resistor}}\n");
  const ProgramRun text = run({"check", "m.yaml"});
  EXPECT_EQ(0, text.exit_code);
  EXPECT_THAT(text.output,
              HasSubstr("m.yaml:2:10: warning: port 'p' of 'R' is joined to nothing [check:unconnected-port]"));
  EXPECT_THAT(text.errors, HasSubstr("m.yaml: 0 errors, 3 warnings"));
  EXPECT_EQ(1, run({"check", "m.yaml", "--warnings-as-errors"}).exit_code);
  const nlohmann::json sarif = nlohmann::json::parse(run({"check", "m.yaml", "--format", "sarif"}).output);
  EXPECT_EQ(3U, sarif.at("runs").at(0).at("results").size());
  EXPECT_THAT(run({"check", "--list-rules"}).output, HasSubstr("check:missing-reference"));
}

TEST_F(Program, OutputFilesAppearWholeOrNotAtAll) {
  write("m.yaml", circuit);
  write("bad.yaml", "kinemo: 1\nblocks: {R: {type: x}}\n");
  write("old.json", "old");
  EXPECT_EQ(1, run({"compile", "bad.yaml", "--format", "json", "-o", "old.json"}).exit_code);
  EXPECT_EQ("old", read("old.json"));
  EXPECT_EQ(0, run({"compile", "m.yaml", "--format", "json", "-o", "old.json"}).exit_code);
  EXPECT_EQ("m", nlohmann::json::parse(read("old.json")).at("model"));
  EXPECT_EQ(2, run({"compile", "m.yaml", "-o", "no/such/folder/x"}).exit_code);
  EXPECT_EQ(2, run({"compile", "m.yaml", "-o", "."}).exit_code);
  EXPECT_THAT(files(), ElementsAre("bad.yaml", "m.yaml", "old.json"));
}

TEST_F(Program, BrokenStreamsEndQuietlyAndFullOnesWithAnError) {
  write("m.yaml", circuit);
  RunOptions closed;
  closed.close_output = true;
  const ProgramRun quiet = run({"nets", "m.yaml"}, closed);
  EXPECT_EQ(0, quiet.exit_code);
  EXPECT_THAT(quiet.errors, IsEmpty());
  EXPECT_EQ(0, run({"--help"}, closed).exit_code);
  RunOptions full;
  full.output_file = "/dev/full";
  const ProgramRun told = run({"nets", "m.yaml"}, full);
  EXPECT_EQ(2, told.exit_code);
  EXPECT_THAT(told.errors, HasSubstr("can't write standard output"));
  EXPECT_EQ(2, run({"compile", "m.yaml", "-o", "/dev/full"}).exit_code);
}

TEST_F(Program, WrongUsageIsToldWithAHint) {
  write("m.yaml", circuit);
  struct Usage {
    std::vector<std::string> arguments;
    const char* message;
  };
  const std::vector<Usage> wrong{
      {{}, "a command is missing"},
      {{"compil", "m.yaml"}, "did you mean 'compile'?"},
      {{"compile"}, "MODEL"},
      {{"check"}, "MODEL"},
      {{"compile", "m.yaml", "--format", "xml"}, "xml"},
      {{"compile", "m.yaml", "--frmat", "json"}, "--frmat"},
      {{"compile", "m.yaml", "extra"}, "extra"},
      {{"nets", "m.yaml", "-q", "-v"}, "exclude"},
      {{"nets", "m.yaml", "--color", "blue"}, "blue"},
      {{"nets", "none.yaml"}, "can't read 'none.yaml': No such file"},
      {{"nets", "."}, "it is a folder"},
      {{"nets", "m.yaml", "--domain", "none.so"}, "none.so"},
      {{"nets", "m.yaml", "--domain", "m.yaml"}, "m.yaml"},
  };
  for (const Usage& usage : wrong) {
    const ProgramRun result = run(usage.arguments);
    EXPECT_EQ(2, result.exit_code) << usage.message;
    EXPECT_THAT(result.errors, HasSubstr(usage.message));
    EXPECT_THAT(result.output, IsEmpty());
  }
}

TEST_F(Program, HelpAndVersionGoToStandardOutput) {
  for (const char* command : {"compile", "check", "nets", "blocks"}) {
    const ProgramRun help = run({command, "--help"});
    EXPECT_EQ(0, help.exit_code);
    EXPECT_THAT(help.output, HasSubstr("Example"));
    EXPECT_THAT(help.output, HasSubstr("--timing"));
    EXPECT_THAT(help.errors, IsEmpty());
  }
  EXPECT_THAT(run({"--help"}).output, HasSubstr("Exit status"));
  EXPECT_THAT(run({"--version"}).output, StartsWith("kinemo "));
}

TEST_F(Program, ColorFollowsOptionAndEnvironment) {
  write("bad.yaml", "kinemo: 2\n");
  EXPECT_THAT(run({"compile", "bad.yaml"}).errors, Not(HasSubstr("\x1b[")));
  EXPECT_THAT(run({"compile", "bad.yaml", "--color", "always"}).errors, HasSubstr("\x1b["));
  RunOptions refused;
  refused.environment["NO_COLOR"] = "1";
  EXPECT_THAT(run({"compile", "bad.yaml"}, refused).errors, Not(HasSubstr("\x1b[")));
}

TEST_F(Program, QuietVerboseAndTimingGoToStandardError) {
  write("m.yaml", circuit);
  const ProgramRun verbose = run({"nets", "m.yaml", "-v", "--timing"});
  EXPECT_THAT(verbose.errors, HasSubstr("domain 'physical'"));
  EXPECT_THAT(verbose.errors, HasSubstr("time: compile"));
  EXPECT_EQ(run({"nets", "m.yaml"}).output, verbose.output);
  EXPECT_THAT(run({"check", "m.yaml", "-q"}).errors, IsEmpty());
}

TEST_F(Program, TwoRunsWriteTheSame) {
  const std::string model = std::string(examples) + "motor_drive.yaml";
  EXPECT_EQ(run({"compile", model, "--format", "json"}).output, run({"compile", model, "--format", "json"}).output);
  EXPECT_EQ(run({"nets", model, "--format", "json"}).output, run({"nets", model, "--format", "json"}).output);
}

}  // namespace
}  // namespace kinemo::test
