// The examples of the pages on scripting: blocks ```text whose inputs stand behind ">> " and ".. ". They are run by the
// program, a run for each section, and what it writes must be what stands below each input.

#include "tests/apps/program.hpp"

#include <fstream>
#include <sstream>

namespace kinemo::tests {
namespace {

namespace fs = std::filesystem;

/// An input line with its prompt, and what is written before the next one.
struct Exchange {
  std::string input;
  std::string output;
};

struct Section {
  std::string title;
  std::vector<Exchange> exchanges;
};

bool is_input(const std::string& line) {
  return line.rfind(">> ", 0) == 0 || line.rfind(".. ", 0) == 0;
}

std::vector<Section> sections_of(const fs::path& page) {
  std::vector<Section> sections{{page.filename().string(), {}}};
  std::ifstream in(page);
  bool in_block = false;
  bool in_example = false;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("```", 0) == 0) {
      in_block = !in_block && line == "```text";
      in_example = false;
    } else if (in_block && is_input(line)) {
      in_example = true;
      sections.back().exchanges.push_back({line, ""});
    } else if (in_example) {
      sections.back().exchanges.back().output += line + "\n";
    } else if (!in_block && line.rfind("## ", 0) == 0) {
      sections.push_back({page.filename().string() + ": " + line.substr(3), {}});
    }
  }
  return sections;
}

/// What the program writes, with its prompts in front of the inputs.
std::vector<std::string> outputs_of(const std::string& written) {
  std::vector<std::string> outputs;
  std::istringstream in(written);
  for (std::string line; std::getline(in, line);) {
    for (; is_input(line + " "); line.erase(0, 3)) outputs.emplace_back();
    if (outputs.empty()) outputs.emplace_back();
    outputs.back() += line.empty() ? "" : line + "\n";
  }
  return outputs;
}

class Documentation : public ProgramTest {
 protected:
  void SetUp() override { fs::copy(fs::path(KINEMO_SOURCE_DIR) / "examples", folder, fs::copy_options::recursive); }

  void check(const Section& section) {
    RunOptions options;
    options.errors_to_output = true;
    for (const Exchange& exchange : section.exchanges) options.input += exchange.input.substr(3) + "\n";
    const ProgramRun run = this->run({"repl", "--prompts"}, options);
    const std::vector<std::string> outputs = outputs_of(run.output);
    for (std::size_t i = 0; i < section.exchanges.size(); ++i) {
      const Exchange& exchange = section.exchanges[i];
      EXPECT_EQ(exchange.output, i < outputs.size() ? outputs[i] : "(the program has ended)") << section.title << "\n"
                                                                                              << exchange.input;
    }
  }
};

TEST_F(Documentation, ExamplesOfScriptingAreTrue) {
  std::size_t exchanges = 0;
  for (const auto& entry : fs::directory_iterator(fs::path(KINEMO_SOURCE_DIR) / "docs")) {
    if (entry.path().filename().string().rfind("scripting", 0) != 0) continue;
    for (const Section& section : sections_of(entry.path())) {
      exchanges += section.exchanges.size();
      if (!section.exchanges.empty()) check(section);
    }
  }
  EXPECT_GT(exchanges, 20U) << "the pages weren't read";
}

}  // namespace
}  // namespace kinemo::tests
