#include "embedded/foundation/warnings.hpp"

#include "platform/foundation/gantrel_id.hpp"
#include "platform/foundation/warning.hpp"

#include <gtest/gtest.h>

#include <memory>

namespace {

using kmf::Message;
using kmf::MessageId;
using kmf::Warning;
using kmf::embedded::WarningCapture;

void warn(const char* id) {
  Warning::get().issueWarning(Message(MessageId("test:group", id, "x")));
}

TEST(Warning, TheLastHandlerGetsIt) {
  WarningCapture outer;
  warn("First");
  {
    WarningCapture inner;
    warn("Second");
    EXPECT_EQ(inner.warnings().at(0).identifier().id, "Second");
  }
  warn("Third");
  ASSERT_EQ(outer.warnings().size(), 2U);
  EXPECT_EQ(outer.take().back().identifier().id, "Third");
  EXPECT_TRUE(outer.warnings().empty());
}

TEST(Warning, HandlersMayEndInAnyOrder) {
  auto first = std::make_unique<WarningCapture>();
  WarningCapture second;
  first.reset();
  warn("Any");
  EXPECT_EQ(second.warnings().size(), 1U);
}

TEST(Warning, AHandlerMayWarnItself) {
  WarningCapture outer;
  struct Passing : kmf::embedded::WarningHandler {
    void handle(const Message& warning) override {
      if (++calls < 3) Warning::get().issueWarning(warning);
    }
    int calls = 0;
  } passing;
  warn("Again");
  EXPECT_EQ(passing.calls, 3);
}

TEST(Warning, GoesToStandardErrorWithoutHandlers) {
  testing::internal::CaptureStderr();
  warn("Plain");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "warning: test:group:Plain (x) [test:group:Plain]\n");
}

TEST(GantrelId, TablesAreKeptByModelAndReplacedAsAWhole) {
  using kmf::GantrelId;
  GantrelId::addRegistryEntry("m", {{"a.b", u"m/A/B"}, {"a", u"m/A"}});
  GantrelId::addRegistryEntry("n", {{"a", u"n/A"}});
  EXPECT_EQ(GantrelId::object("m", "a.b"), u"m/A/B");
  EXPECT_EQ(GantrelId::object("n", "a"), u"n/A");
  EXPECT_EQ(GantrelId::object("m", "c"), u"");
  EXPECT_EQ(GantrelId::object("unknown", "a"), u"");

  GantrelId::addRegistryEntry("m", {{"c", u"m/C"}});
  EXPECT_EQ(GantrelId::object("m", "a"), u"") << "nothing of the earlier table is left";
  EXPECT_EQ(GantrelId::object("m", "c"), u"m/C");
  GantrelId::removeRegistryEntry("m");
  EXPECT_FALSE(GantrelId::hasRegistryEntry("m"));
  EXPECT_TRUE(GantrelId::hasRegistryEntry("n"));
  GantrelId::removeRegistryEntry("n");
}

}  // namespace
