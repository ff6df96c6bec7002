#include "platform/foundation/exception.hpp"

#include "platform/foundation/checked.hpp"

#include "tests/support/errors.hpp"

#include <gtest/gtest.h>

#include <map>
#include <memory>

namespace {

using kinemo::test::describe;
using kmf::AttributedException;
using kmf::Exception;
using kmf::ExceptionSupport;
using kmf::Message;
using kmf::MessageException;
using kmf::MessageId;

MessageException error(const char* id, const std::string& argument = "x") {
  return MessageException(Message(MessageId("test:group", id, argument)));
}

class HostError : public AttributedException {
 public:
  const char* what() const noexcept override { return "the host refuses"; }
};

TEST(Exception, KeepsItsTypeThroughCausesAndRethrow) {
  AttributedException outer;
  outer.addCause(error("Inner"));
  outer.addCause(Exception());
  ASSERT_EQ(outer.numCauses(), 2U);
  EXPECT_EQ(describe(outer.cause(0)), "test:group:Inner(x)");
  EXPECT_THROW(outer.cause(0).raise(), MessageException);
  EXPECT_THROW(ExceptionSupport::rethrow(outer.cause(0)), MessageException);
  EXPECT_THROW(ExceptionSupport::rethrow(outer), AttributedException);
}

TEST(Exception, AnErrorUnderHandlingIsRethrownAsItIs) {
  try {
    try {
      throw HostError();
    } catch (const Exception& caught) {
      ExceptionSupport::rethrow(caught);
    }
    FAIL();
  } catch (const HostError& caught) {
    EXPECT_STREQ(caught.what(), "the host refuses");
  }
}

TEST(Exception, DataTellsTheWholeTree) {
  MessageException outer = error("Outer", "model");
  outer.addObject(u"m/\u00E4");
  MessageException inner = error("Inner");
  inner.addCause(error("Root"));
  outer.addCause(inner);

  const kmf::ErrorData data = MessageException(outer).data();
  EXPECT_EQ(data.group, "test:group");
  EXPECT_EQ(data.id, "Outer");
  EXPECT_EQ(data.arguments, std::vector<std::string>{"model"});
  EXPECT_EQ(data.objects, std::vector<std::string>{"m/\xC3\xA4"});
  EXPECT_EQ(data.text, outer.what());
  ASSERT_EQ(data.causes.size(), 1U);
  EXPECT_EQ(data.causes.at(0).causes.at(0).id, "Root");
}

TEST(Exception, RenderedTreeIndentsCausesAndObjects) {
  MessageException outer = error("Outer", "two\nlines");
  outer.addObject(u"m/a\nb");
  outer.addCause(error("Inner"));
  EXPECT_EQ(kmf::render_error(outer),
            "test:group:Outer (two\n"
            "  lines)\n"
            "  in: m/a b\n"
            "  cause: test:group:Inner (x)\n");
}

TEST(Exception, ChainsOfAnyDepthEndAndRenderWithoutRecursion) {
  auto chain = std::make_unique<MessageException>(error("Root"));
  for (int i = 0; i < 200000; ++i) {
    auto outer = std::make_unique<MessageException>(error("Outer", std::to_string(i)));
    outer->addCause(*chain);
    chain = std::move(outer);
  }
  const std::string text = kmf::render_error(*chain);
  EXPECT_EQ(text.substr(text.size() - 5), " ...\n") << "what is left out is told";
  EXPECT_NE(text.find("(199900)"), std::string::npos);

  // A copy holds the same causes; ending one leaves the other whole.
  const MessageException copy = *chain;
  chain.reset();
  EXPECT_EQ(describe(copy.cause(0)), "test:group:Outer(199998)");
}

TEST(Message, ArgumentsComeInEveryForm) {
  const std::string narrow = "n";
  const Message message(MessageId("g", "Id", narrow, ustring(u"\u00E4"), "literal"));
  EXPECT_EQ(message.text(), "g:Id (n, \xC3\xA4, literal)");
  EXPECT_EQ(Message(MessageId("g", "None")).text(), "g:None") << "no text and no arguments";
}

TEST(Checked, FailuresHaveFixedTexts) {
  std::map<int, int> map{{1, 2}};
  EXPECT_EQ(kmf::map_at(map, 1), 2);
  const auto text_of = [](const auto& action) -> std::string {
    try {
      action();
    } catch (const std::exception& failure) {
      return failure.what();
    }
    return {};
  };
  EXPECT_EQ(text_of([&] { kmf::map_at(map, 2); }), "invalid map<K, T> key");
  EXPECT_EQ(text_of([&] { kmf::unordered_map_at(map, 2); }), "invalid unordered_map<K, T> key");
  EXPECT_EQ(text_of([&] { kmf::boost_unordered_map_at(map, 2); }), "Unable to find key in unordered_map.");
  EXPECT_EQ(text_of([] { kmf::lexical_cast<int>(std::string("1x")); }), "bad cast");
  EXPECT_THROW(kmf::lexical_cast<int>(std::string()), boost::bad_lexical_cast);
}

}  // namespace
