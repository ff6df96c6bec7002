// A model that a script builds is the one that a file holds.

#include "tests/apps/program.hpp"

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

namespace kinemo::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;

class BuiltByScript : public ProgramTest {
 protected:
  void SetUp() override { fs::copy(fs::path(KINEMO_SOURCE_DIR) / "examples", folder(), fs::copy_options::recursive); }

  std::string output_of(const std::vector<std::string>& arguments) {
    const ProgramRun done = run(arguments);
    EXPECT_EQ(0, done.exit_code) << done.errors;
    return done.output;
  }
};

TEST_F(BuiltByScript, MasksVariantsPartsAndFlagsAreThoseOfTheHandWrittenFile) {
  EXPECT_THAT(output_of({"run", "motor_drive.kin"}), HasSubstr("Open-circuit voltage"));
  output_of({"export", "motor_drive.yaml", "--to", "diagram", "-o", "written.yaml"});
  EXPECT_EQ(read("written.yaml"), read("built.yaml"));
  const std::string model = output_of({"compile", "motor_drive.yaml", "--format", "json"});
  for (const char* built : {"built.yaml", "built.json"}) {
    EXPECT_EQ(model, output_of({"compile", built, "--format", "json"})) << built;
  }
}

TEST_F(BuiltByScript, AFileOfJsonIsAllJson) {
  const nlohmann::json at = [&] {
    output_of({"export", "motor_drive.yaml", "--to", "diagram", "-o", "as.json"});
    return nlohmann::json::parse(read("as.json")).at("blocks").at("Battery").at("at");
  }();
  EXPECT_EQ(nlohmann::json({40, 50, 60, 40}), at);
  for (const char* example : {"motor_drive.yaml", "rc_lowpass.yaml", "amplifier.cir"}) {
    SCOPED_TRACE(example);
    output_of({"export", example, "--to", "diagram", "-o", "as.json"});
    EXPECT_EQ(1, nlohmann::json::parse(read("as.json")).at("kinemo"));
    output_of({"export", "as.json", "--to", "diagram", "-o", "again.json"});
    EXPECT_EQ(read("as.json"), read("again.json"));
    EXPECT_EQ(output_of({"compile", example, "--format", "json"}),
              output_of({"compile", "as.json", "--format", "json"}));
  }
}

}  // namespace
}  // namespace kinemo::test
