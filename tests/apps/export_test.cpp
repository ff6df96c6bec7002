// `kinemo export`: what it writes, and that it writes all or nothing.

#include "tests/apps/program.hpp"

#include <gmock/gmock.h>

namespace kinemo::test {
namespace {

using ::testing::HasSubstr;

class Export : public ProgramTest {
 protected:
  Export() {
    write("divider.cir", "divider\n.param r=2k\nv1 in 0 5\nr1 in out {r}\nr2 out 0 1k\n.end\n");
    write("drive.yaml", "kinemo: 1\nblocks:\n  J: {type: physical/inertia}\n  D: {type: physical/diode}\n");
  }
};

TEST_F(Export, WritesANetlistWithRunTimeParameters) {
  const char* const with_parameters = "divider\n.param r=2000\nv1 in 0 dc 5\nr1 in out {r}\nr2 out 0 1000\n.end\n";
  const ProgramRun shown = run({"export", "divider.cir", "--to", "spice"});
  EXPECT_EQ(0, shown.exit_code) << shown.errors;
  EXPECT_EQ(with_parameters, shown.output);
  EXPECT_EQ("", shown.errors);
  EXPECT_EQ(0, run({"export", "divider.cir", "--to", "spice", "-o", "out.cir"}).exit_code);
  EXPECT_EQ(with_parameters, read("out.cir"));
  EXPECT_EQ("divider\nv1 in 0 dc 5\nr1 in out 2000\nr2 out 0 1000\n.end\n",
            run({"export", "divider.cir", "--to", "spice", "--runtime-parameters", "off"}).output);
  EXPECT_THAT(run({"export", "divider.cir", "--to", "spice", "-D", "r=3"}).output, HasSubstr(".param r=3\n"));
}

TEST_F(Export, LeavesTheFileAloneWhereSomethingHasNoCounterpart) {
  write("out.cir", "as before");
  const ProgramRun refused = run({"export", "drive.yaml", "--to", "spice", "-o", "out.cir"});
  EXPECT_EQ(1, refused.exit_code);
  EXPECT_EQ("as before", read("out.cir"));
  EXPECT_THAT(refused.errors, HasSubstr("drive.yaml:3:3: error: block 'drive/J'"));
  EXPECT_THAT(refused.errors, HasSubstr("drive.yaml:4:3: error: block 'drive/D'"));
}

TEST_F(Export, WritesANetlistAsADiagramOfTheSameNets) {
  write(
      "amp.cir",
      "amp\n.param r=2k\n.subckt half a b r=1\nr1 a b {r}\n.ends\nv1 in 0 5\nx1 in out half r={2*r}\nx.2 out 0 half\n");
  EXPECT_EQ(0, run({"export", "amp.cir", "--to", "diagram", "-o", "amp.yaml", "-D", "r=3"}).exit_code);
  EXPECT_THAT(read("amp.yaml"), HasSubstr("name: amp\nworkspace:\n  r: {value: 3, runtime: on}\n"));
  EXPECT_EQ(run({"nets", "amp.cir", "--format", "json"}).output, run({"nets", "amp.yaml", "--format", "json"}).output);
  EXPECT_EQ(run({"export", "amp.cir", "--to", "spice", "-D", "r=3"}).output,
            run({"export", "amp.yaml", "--to", "spice"}).output);
  EXPECT_EQ(2, run({"export", "amp.cir", "--to", "diagram", "--runtime-parameters", "on"}).exit_code);
}

TEST_F(Export, NeedsALanguageThatItKnows) {
  EXPECT_EQ(2, run({"export", "divider.cir"}).exit_code);
  EXPECT_EQ(2, run({"export", "divider.cir", "--to", "verilog"}).exit_code);
  EXPECT_EQ(2, run({"export", "--to", "spice"}).exit_code);
  EXPECT_THAT(run({"export", "--help"}).output, HasSubstr("kinemo export"));
}

}  // namespace
}  // namespace kinemo::test
