// The examples of the pages on scripting: blocks ```text whose inputs stand behind ">> " and ".. ". They are run by the
// program, a run for each page in a folder with the files of examples/, and what it writes must be what stands below
// each input.

#include "apps/scripting/diagram_functions.hpp"
#include "embedded/environment/environment.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "tests/apps/program.hpp"

#include <fstream>
#include <sstream>

namespace kinemo::test {
namespace {

namespace fs = std::filesystem;

/// An input line with its prompt, and what is written before the next one.
struct Exchange {
  std::string input;
  std::string output;
};

bool is_input(const std::string& line) {
  return line.rfind(">> ", 0) == 0 || line.rfind(".. ", 0) == 0;
}

std::vector<Exchange> exchanges_of(const fs::path& page) {
  std::vector<Exchange> exchanges;
  std::ifstream in(page);
  bool in_block = false;
  bool in_example = false;
  for (std::string line; std::getline(in, line);) {
    if (line.rfind("```", 0) == 0) {
      in_block = !in_block && line == "```text";
      in_example = false;
    } else if (in_block && is_input(line)) {
      in_example = true;
      exchanges.push_back({line, ""});
    } else if (in_example) {
      exchanges.back().output += line + "\n";
    }
  }
  return exchanges;
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
  void SetUp() override { fs::copy(fs::path(KINEMO_SOURCE_DIR) / "examples", folder(), fs::copy_options::recursive); }

  void check(const fs::path& page) {
    const std::vector<Exchange> exchanges = exchanges_of(page);
    RunOptions options;
    options.errors_to_output = true;
    for (const Exchange& exchange : exchanges) options.input += exchange.input.substr(3) + "\n";
    const std::vector<std::string> outputs = outputs_of(run({"repl", "--prompts"}, options).output);
    for (std::size_t i = 0; i < exchanges.size(); ++i) {
      EXPECT_EQ(exchanges[i].output, i < outputs.size() ? outputs[i] : "(the program has ended)")
          << page.filename() << "\n"
          << exchanges[i].input;
    }
    EXPECT_GT(exchanges.size(), 10U) << page.filename() << " has next to no examples";
  }
};

TEST_F(Documentation, ExamplesOfScriptingAreTrue) {
  std::size_t pages = 0;
  for (const auto& entry : fs::directory_iterator(fs::path(KINEMO_SOURCE_DIR) / "docs")) {
    if (entry.path().filename().string().rfind("scripting", 0) != 0) continue;
    check(entry.path());
    ++pages;
  }
  EXPECT_GE(pages, 2U);
}

/// All pages on scripting.
std::string pages_on_scripting() {
  std::ostringstream text;
  for (const auto& entry : fs::directory_iterator(fs::path(KINEMO_SOURCE_DIR) / "docs")) {
    if (entry.path().filename().string().rfind("scripting", 0) == 0)
      text << std::ifstream(entry.path()).rdbuf() << "\n";
  }
  return text.str();
}

/// Whether a page shows the function as code, such as `f`, `f(x)` or `y = f(x)`.
bool is_documented(const std::string& pages, const std::string& function) {
  for (std::size_t at = pages.find(function); at != std::string::npos; at = pages.find(function, at + 1)) {
    const char before = at > 0 ? pages[at - 1] : '`';
    const char after = pages[std::min(at + function.size(), pages.size() - 1)];
    const bool begins = before == '`' || before == ' ' || before == '(';
    if (begins && (after == '`' || after == '(' || after == ' ')) return true;
  }
  return false;
}

// A function without help can't be found at the prompt, and one that no page tells about isn't found before. What only
// programs call has "internal" in its name.
TEST_F(Documentation, EveryFunctionOfThePromptHasHelpAndIsOnAPage) {
  namespace runtime = embedded::scripting_runtime;
  embedded::Environment environment;
  environment.loadDomain(KINEMO_PHYSICAL_MODULE);
  const scripting::RegisteredDiagramFunctions functions;
  const std::string pages = pages_on_scripting();
  for (const std::string& name : runtime::function_names()) {
    if (name.find(".internal.") != std::string::npos) continue;
    EXPECT_TRUE(runtime::find_help(name) != nullptr) << name;
    EXPECT_TRUE(is_documented(pages, name)) << name << " isn't told about in docs/scripting*.md";
  }
}

}  // namespace
}  // namespace kinemo::test
