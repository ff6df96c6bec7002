// Texts that a prompt offers in quotes.

#include "apps/scripting/text_candidates.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "tests/support/physical_environment.hpp"

#include <gmock/gmock.h>

namespace kinemo::scripting {
namespace {

namespace host = embedded::block_diagram;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class TextCandidatesTest : public test::PhysicalEnvironment {
 protected:
  TextCandidatesTest() {
    host::System& top = host::Diagram::create("rc").root();
    top.addBlock(u"R1", "physical/resistor");
    top.addBlock(u"R/2", "physical/resistor");
    top.addBlock(u"two\nlines", "physical/resistor");
    host::contents(top.addSubsystem(u"Filter"))->addBlock(u"C1", "physical/capacitor");
    host::Diagram::create("other");
  }

  static std::vector<std::string> offered(const std::string& text, const std::string& function = "get_param",
                                          std::size_t argument = 0) {
    return diagram_text_candidates({0, '\'', function, argument, text});
  }
};

TEST_F(TextCandidatesTest, PathsGoOnByOneLevel) {
  EXPECT_THAT(offered(""), ElementsAre("rc", "other"));
  EXPECT_THAT(offered("r"), ElementsAre("rc"));
  EXPECT_THAT(offered("rc/"), ElementsAre("rc/R1", "rc/R//2", "rc/two lines", "rc/Filter"));
  EXPECT_THAT(offered("rc/R//"), ElementsAre("rc/R//2"));
  EXPECT_THAT(offered("rc/Filter/", ""), ElementsAre("rc/Filter/C1"));
  for (const char* nowhere : {"rc/R1/", "rc/none/", "none/", "/", "//", "rc/x"}) {
    EXPECT_THAT(offered(nowhere), IsEmpty()) << nowhere;
  }
}

TEST_F(TextCandidatesTest, InputsHaveTheirMeanings) {
  EXPECT_THAT(offered("physical/resi", "add_block"), ElementsAre("physical/resistor"));
  EXPECT_THAT(offered("phys", "add_block"), Each(StartsWith("physical/")));
  EXPECT_THAT(offered("sub", "add_block"), ElementsAre("subsystem"));
  EXPECT_THAT(offered("rc/F", "add_block", 1), ElementsAre("rc/Filter"));
  EXPECT_THAT(offered("phy", "kinemo.gl.gt.graph"), ElementsAre("physical"));
  EXPECT_THAT(offered("o", "kinemo.gl.gt.runtimeParameterInfo", 1), ElementsAre("other"));
  EXPECT_THAT(offered("r", "open_diagram"), IsEmpty());
}

}  // namespace
}  // namespace kinemo::scripting
