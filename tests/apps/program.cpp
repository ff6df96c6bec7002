#include "tests/apps/program.hpp"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace kinemo::test {

namespace {

std::string read_file(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::ostringstream text;
  text << in.rdbuf();
  return text.str();
}

/// In the child: redirects, and becomes the program.
[[noreturn]] void become_program(const std::filesystem::path& folder, const std::filesystem::path& streams,
                                 const std::vector<std::string>& arguments, const RunOptions& options) {
  const auto redirect = [](const std::string& file, int flags, int to) {
    const int from = ::open(file.c_str(), flags, 0600);
    if (from < 0 || ::dup2(from, to) < 0) ::_exit(126);
  };
  redirect((streams / "in").string(), O_RDONLY, STDIN_FILENO);
  redirect((streams / "err").string(), O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
  if (options.close_output) {
    int ends[2];
    if (::pipe(ends) != 0) ::_exit(126);
    ::dup2(ends[1], STDOUT_FILENO);
    ::close(ends[0]);
    ::close(ends[1]);
  } else {
    const std::string file = options.output_file.empty() ? (streams / "out").string() : options.output_file;
    redirect(file, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
  }
  if (options.errors_to_output) ::dup2(STDOUT_FILENO, STDERR_FILENO);
  for (const auto& [name, value] : options.environment) ::setenv(name.c_str(), value.c_str(), 1);
  if (::chdir(folder.c_str()) != 0) ::_exit(126);
  std::vector<char*> raw{const_cast<char*>(KINEMO_PROGRAM)};
  for (const std::string& argument : arguments) raw.push_back(const_cast<char*>(argument.c_str()));
  raw.push_back(nullptr);
  ::execv(KINEMO_PROGRAM, raw.data());
  ::_exit(127);
}

}  // namespace

ProgramRun run_program(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                       const RunOptions& options) {
  const test::TemporaryFolder kept;
  const std::filesystem::path& streams = kept.path();
  kept.write("in", options.input);
  const pid_t child = ::fork();
  if (child == 0) become_program(folder, streams, arguments, options);
  int status = 0;
  ::waitpid(child, &status, 0);
  ProgramRun run;
  if (WIFEXITED(status)) run.exit_code = WEXITSTATUS(status);
  run.output = read_file(streams / "out");
  run.errors = read_file(streams / "err");
  return run;
}

void ProgramTest::write(const std::string& name, const std::string& text) const {
  m_folder.write(name, text);
}

std::string ProgramTest::read(const std::string& name) const {
  return read_file(folder() / name);
}

std::vector<std::string> ProgramTest::files() const {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder()))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace kinemo::test
