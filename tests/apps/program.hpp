#pragma once

// Runs the program as a process and keeps what it wrote, and gives tests a folder of their own.

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "tests/support/temporary_folder.hpp"

namespace kinemo::test {

struct ProgramRun {
  int exit_code = -1;  ///< -1 where a signal ended the program
  std::string output;
  std::string errors;
};

struct RunOptions {
  std::string input;
  std::string output_file;                         ///< where standard output goes instead, such as /dev/full
  bool errors_to_output = false;                   ///< both streams are one, in the order in which they are written
  bool close_output = false;                       ///< standard output is a pipe that nobody reads
  std::map<std::string, std::string> environment;  ///< besides the test's own
};

/// In the folder `folder`.
ProgramRun run_program(const std::filesystem::path& folder, const std::vector<std::string>& arguments,
                       const RunOptions& options = {});

class ProgramTest : public ::testing::Test {
 protected:
  void write(const std::string& name, const std::string& text) const;
  std::string read(const std::string& name) const;
  std::vector<std::string> files() const;
  ProgramRun run(const std::vector<std::string>& arguments, const RunOptions& options = {}) const {
    return run_program(folder(), arguments, options);
  }

  const std::filesystem::path& folder() const { return m_folder.path(); }

 private:
  test::TemporaryFolder m_folder;
};

}  // namespace kinemo::test
