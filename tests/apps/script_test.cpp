// `kinemo run` and `kinemo repl`, the latter at a terminal, too.

#include "tests/apps/program.hpp"

#include <gmock/gmock.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include <poll.h>
#include <algorithm>
#include <chrono>
#include <csignal>

namespace kinemo::test {
namespace {

using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::StartsWith;

constexpr const char* example = KINEMO_SOURCE_DIR "/examples/rc_lowpass.yaml";

class ScriptProgram : public ProgramTest {};

TEST_F(ScriptProgram, RunWritesResultsAndErrorsWithTheirPlaces) {
  write("good.kin", "x = 1:3\ny = sum(x);\nfprintf('%d\\n', y)\n");
  const ProgramRun good = run({"run", "good.kin"});
  EXPECT_EQ(0, good.exit_code);
  EXPECT_EQ("x =\n   1   2   3\n6\n", good.output);
  EXPECT_THAT(good.errors, IsEmpty());

  write("bad.kin", "x = 1\n y = x + nothere\nz = 3\n");
  const ProgramRun bad = run({"run", "bad.kin"});
  EXPECT_EQ(1, bad.exit_code);
  EXPECT_EQ("x = 1\n", bad.output);
  EXPECT_EQ(
      "bad.kin:2:10: error: there is no variable or function 'nothere'. [kinemo:scripting:runtime:UndefinedName]\n"
      "    y = x + nothere\n            ^\n",
      bad.errors);
}

TEST_F(ScriptProgram, RunEndsAsTheScriptSays) {
  RunOptions options;
  options.input = "disp(1); exit(3); disp(2)";
  const ProgramRun ended = run({"run", "-"}, options);
  EXPECT_EQ(3, ended.exit_code);
  EXPECT_EQ("1\n", ended.output);
  options.input = "a = [1";
  EXPECT_THAT(run({"run", "-"}, options).errors, StartsWith("<stdin>:1:5: error: the bracket"));
  EXPECT_EQ(2, run({"run"}).exit_code);
  EXPECT_EQ(2, run({"run", "nothere.kin"}).exit_code);
}

// Its assertions compare nets and parameters, so that it fails where a step doesn't do what it says.
TEST_F(ScriptProgram, AScriptBuildsCompilesAsksDrawsAndClosesACircuit) {
  const ProgramRun done = run({"run", KINEMO_SOURCE_DIR "/examples/differential_pair.kin"});
  EXPECT_EQ(0, done.exit_code) << done.errors;
  EXPECT_THAT(done.output, HasSubstr("components:  13\n"));
  EXPECT_THAT(done.output, HasSubstr("bias_then = 44000 Ohm\n"));
  EXPECT_THAT(read("differential_pair.svg"), HasSubstr("</svg>"));
}

TEST_F(ScriptProgram, ModelsAreOpenedFirst) {
  RunOptions options;
  options.input = "disp(get_param('rc_lowpass', 'Name'))";
  const ProgramRun good = run({"run", "-", example}, options);
  EXPECT_EQ("rc_lowpass\n", good.output) << good.errors;
  write("broken.yaml", "kinemo: 1\nblock: {}\n");
  const ProgramRun broken = run({"run", "-", "broken.yaml"}, options);
  EXPECT_EQ(1, broken.exit_code);
  EXPECT_THAT(broken.errors, HasSubstr("broken.yaml:2:1: error:"));
  EXPECT_THAT(broken.output, IsEmpty());
}

TEST_F(ScriptProgram, OutputAndErrorsKeepTheirOrder) {
  RunOptions options;
  options.errors_to_output = true;
  options.input = "disp(1)\nfprintf(2, 'two\\n')\ndisp(3)\ninv([1 1; 1 1]);\nnothere\ndisp(4)\n";
  const std::string text = run({"repl"}, options).output;
  EXPECT_THAT(text, StartsWith("1\ntwo\n3\nwarning: The matrix is singular"));
  EXPECT_THAT(text, EndsWith("    nothere\n    ^\n4\n"));
}

TEST_F(ScriptProgram, PromptWithoutTerminalGoesOnAfterErrors) {
  RunOptions options;
  options.input = "a = [1\n2];\nb = nothere\na'\n";
  const ProgramRun piped = run({"repl"}, options);
  EXPECT_EQ(1, piped.exit_code);
  EXPECT_EQ("ans =\n   1   2\n", piped.output);
  EXPECT_THAT(piped.errors, HasSubstr("'nothere'"));
  options.input = "a = 1;\nexit(5)\nb = 2";
  EXPECT_EQ(5, run({"repl"}, options).exit_code);
  options.input = "1 + 1";
  const ProgramRun shown = run({"repl", "--prompts"}, options);
  EXPECT_EQ(">> ans = 2\n>> \n", shown.output);
  EXPECT_EQ(0, shown.exit_code);
}

TEST_F(ScriptProgram, AReaderThatLeavesEndsTheScriptQuietly) {
  RunOptions options;
  options.close_output = true;
  options.input = "disp(1)";
  const ProgramRun run_closed = run({"run", "-"}, options);
  EXPECT_EQ(0, run_closed.exit_code);
  EXPECT_THAT(run_closed.errors, IsEmpty());
  RunOptions full;
  full.output_file = "/dev/full";
  full.input = "disp(1)";
  EXPECT_EQ(2, run({"run", "-"}, full).exit_code);
}

/// The program at a terminal of its own.
class Terminal {
 public:
  explicit Terminal(const std::filesystem::path& folder) {
    child_ = ::forkpty(&master_, nullptr, nullptr, nullptr);
    if (child_ != 0) return;
    ::setenv("XDG_STATE_HOME", folder.c_str(), 1);
    ::setenv("TERM", "xterm", 1);
    ::setenv("HOME", folder.c_str(), 1);
    if (::chdir(folder.c_str()) == 0) ::execl(KINEMO_PROGRAM, KINEMO_PROGRAM, "repl", nullptr);
    ::_exit(127);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;
  ~Terminal() {
    if (child_ > 0) ::kill(child_, SIGKILL), ::waitpid(child_, nullptr, 0);
    ::close(master_);
  }

  void type(const std::string& keys) {
    ASSERT_EQ(static_cast<ssize_t>(keys.size()), ::write(master_, keys.data(), keys.size()));
  }

  /// What the program writes up to `end`, which may take a minute on a busy machine. What comes behind it waits.
  std::string read_to(const std::string& end) {
    const auto last = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (written_.find(end) == std::string::npos && std::chrono::steady_clock::now() < last) {
      pollfd ready{master_, POLLIN, 0};
      if (::poll(&ready, 1, 1000) <= 0) continue;
      char buffer[4096];
      const ssize_t count = ::read(master_, buffer, sizeof buffer);
      if (count <= 0) break;
      written_.append(buffer, static_cast<std::size_t>(count));
    }
    EXPECT_THAT(written_, HasSubstr(end));
    const std::size_t found = std::min(written_.find(end), written_.size());
    const std::string text = written_.substr(0, found + end.size());
    written_.erase(0, text.size());
    return text;
  }

  int wait() {
    int status = 0;
    ::waitpid(std::exchange(child_, -1), &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

 private:
  pid_t child_ = -1;
  int master_ = -1;
  std::string written_;
};

TEST_F(ScriptProgram, TerminalEditsCompletesAndRemembers) {
  Terminal terminal(folder());
  terminal.read_to(">> ");
  terminal.type("variable_name = 5;\n");
  terminal.read_to(">> ");
  terminal.type("1 + variable_\t\n");
  terminal.read_to("ans = 6");
  terminal.type("x = [1\n");
  terminal.read_to(".. ");
  terminal.type("\x03");
  terminal.read_to(">> ");
  terminal.type("y = 7\n");
  terminal.read_to("y = 7\r\n>> ");
  terminal.type("x = [1 2\n\t3\t4];\nx(4)\n");
  terminal.read_to("ans = 4\r\n>> ");
  terminal.type("x = [5\n");
  terminal.read_to(".. ");
  terminal.type("\x04");
  terminal.read_to(">> ");
  terminal.type("x(1)\n");
  terminal.read_to("ans = 1\r\n>> ");
  terminal.type("\x04");
  EXPECT_EQ(0, terminal.wait());
  EXPECT_THAT(read("kinemo/history"), HasSubstr("variable_name"));
}

TEST_F(ScriptProgram, InterruptStopsTheEvaluationAndNotThePrompt) {
  Terminal terminal(folder());
  terminal.read_to(">> ");
  terminal.type("disp('begun'), x = arrayfun(@(x) x + 1, 1:1e7);\n");
  terminal.read_to("begun\r\n");
  terminal.type("\x03");
  terminal.read_to("The evaluation was stopped by the user.");
  terminal.read_to(">> ");
  terminal.type("6 * 7\n");
  terminal.read_to("ans = 42");
  terminal.type("exit(9)\n");
  EXPECT_EQ(9, terminal.wait());
}

}  // namespace
}  // namespace kinemo::test
