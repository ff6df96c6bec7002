#include "embedded/foundation/catalogue.hpp"

#include "platform/foundation/message.hpp"

#include "tests/embedded/foundation/raised_messages.hpp"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>

namespace {

using kinemo::test::RaisedMessage;
using kinemo::test::read_sources;
using kinemo::test::SourceMessages;
using kmf::embedded::Catalogue;

const SourceMessages& sources() {
  static const SourceMessages all = read_sources(std::string(KINEMO_SOURCE_DIR));
  return all;
}

TEST(Catalogue, EveryRaisedMessageHasATextThatFits) {
  ASSERT_GT(sources().raised.size(), 20U) << "the sources weren't read";
  for (const RaisedMessage& raised : sources().raised) {
    const char* const text = Catalogue::get().find(raised.key);
    if (!text) {
      ADD_FAILURE() << raised.place << ": " << raised.key << " has no text in the catalogue";
    } else if (raised.arguments != RaisedMessage::unknown) {
      EXPECT_LE(kmf::embedded::highest_placeholder(text), raised.arguments)
          << raised.place << ": the text of " << raised.key << " asks for more arguments than are given";
    }
  }
}

TEST(Catalogue, EveryTextIsRaised) {
  for (const auto& entry : Catalogue::get().entries()) {
    const std::string id = entry.key.substr(entry.key.rfind(':') + 1);
    EXPECT_TRUE(sources().literals.count(id)) << entry.key << " is raised nowhere";
  }
}

// A text in two files would hide one of them.
TEST(Catalogue, EveryTextStandsInOneFile) {
  const auto folder = std::filesystem::path(KINEMO_SOURCE_DIR) / "embedded/foundation/messages/en";
  const std::regex message("^msgid \"(.+)\"");
  std::map<std::string, std::string> places;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    std::ifstream in(file.path());
    for (std::string line; std::getline(in, line);) {
      std::smatch match;
      if (!std::regex_search(line, match, message)) continue;
      const auto [place, is_new] = places.emplace(match[1], file.path().filename().string());
      EXPECT_TRUE(is_new) << match[1] << " stands in " << place->second << " and " << file.path().filename();
    }
  }
  for (const auto& [key, file] : places) EXPECT_TRUE(Catalogue::get().find(key)) << key << " of " << file << " is lost";
  EXPECT_EQ(Catalogue::get().entries().size(), places.size());
}

TEST(Catalogue, TextsAreSentences) {
  for (const auto& entry : Catalogue::get().entries()) {
    const std::string sentence =
        entry.text.substr(0, entry.text.find('\n'));  // an excerpt may follow, or the text of another library end it
    EXPECT_NE(std::string(".?!:}").find(sentence.back()), std::string::npos) << entry.key << ": " << entry.text;
    EXPECT_EQ(entry.text.find("  "), std::string::npos) << entry.key << " has doubled blanks";
  }
}

TEST(Catalogue, FillsPlaceholdersOnce) {
  using kmf::embedded::fill_placeholders;
  EXPECT_EQ(fill_placeholders("{2} and {1}, {2}", {"{2}", "b"}), "b and {2}, b");
  EXPECT_EQ(fill_placeholders("{3} {0} {} {x} {1", {"a"}), "{3} {0} {} {x} {1");
  EXPECT_EQ(fill_placeholders("{{1}}", {"a"}), "{a}");
  EXPECT_EQ(fill_placeholders("", {"a"}), "");
  EXPECT_EQ(fill_placeholders("{12}", std::vector<std::string>(12, "z")), "z");
  EXPECT_EQ(fill_placeholders("{99999999999999999999}", {"a"}), "{99999999999999999999}");
  const std::string optional = "{1}? {2? Meant: {2}?}{1? {1}.?}{x? {2? open";
  EXPECT_EQ(fill_placeholders(optional, {"a", "b?}"}), "a?  Meant: b?} a.{x? {2? open");
  EXPECT_EQ(fill_placeholders(optional, {"", ""}), "? {x? {2? open");
  EXPECT_EQ(kmf::embedded::highest_placeholder("{1} {3} {x9}"), 3U);
}

TEST(Catalogue, MessagesAreRenderedFromIt) {
  const std::string text =
      kmf::Message(kmf::MessageId("kinemo:foundation:identifiers", "InvalidIdentifier", u"1\u00E4")).text();
  EXPECT_EQ(text.rfind("'1\xC3\xA4' isn't a legal identifier", 0), 0U) << text;
  EXPECT_FALSE(Catalogue::get().find("kinemo:foundation:identifiers"));
  EXPECT_FALSE(Catalogue::get().find("")) << "the head of the file is no message";
}

TEST(RaisedMessages, AreFoundInEveryLayout) {
  const SourceMessages found = read_sources({
      {"a.hpp",
       "constexpr const char* kGroup = \"g:one\";\n"
       "[[noreturn]] void fail(int at, const char* id) { throw_message(kGroup, id, at); }\n"},
      {"a.cpp",
       "// throw_message(\"g\", \"Commented\")\n"
       "void f() { kmf::throw_message(\n  kGroup,\n  \"Direct\", h(1, 2), \"a, (b\"); }\n"
       "void g() { Message(kmf::MessageId{\"g:two\", \"Braced\"}); /* \" */ fail(1, \"Helped\"); }\n"
       "MessageId id(kGroup, \"Named\", args...);\n"},
  });
  std::map<std::string, std::size_t> raised;
  for (const RaisedMessage& message : found.raised) raised[message.key] = message.arguments;
  const std::map<std::string, std::size_t> expected{{"g:one:Direct", 2},
                                                    {"g:two:Braced", 0},
                                                    {"g:one:Helped", RaisedMessage::unknown},
                                                    {"g:one:Named", RaisedMessage::unknown}};
  EXPECT_EQ(raised, expected);
  EXPECT_EQ(found.raised.front().place, "a.cpp:2");
  EXPECT_FALSE(found.literals.count("Commented"));
}

}  // namespace
