#include "platform/foundation/strings.hpp"

#include "platform/foundation/table_string.hpp"

#include "embedded/foundation/local_encoding.hpp"

#include <gtest/gtest.h>

#include <clocale>
#include <thread>
#include <vector>

namespace {

using kmf::ustring_to_utf8_string;
using kmf::utf8_string_to_ustring;

TEST(Strings, WellFormedTextComesBack) {
  const std::string everything("a\0z \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80 \xEF\xBF\xBF", 20);
  EXPECT_EQ(ustring_to_utf8_string(utf8_string_to_ustring(everything)), everything);
  EXPECT_EQ(utf8_string_to_ustring("\xF0\x9F\x98\x80").size(), 2U) << "a surrogate pair";
  EXPECT_EQ(utf8_string_to_ustring(std::string("a\0b", 3)), ustring(u"a\0b", 3));
}

TEST(Strings, BadSequencesBecomeReplacementCharacters) {
  const struct {
    std::string bytes;
    ustring text;
  } cases[] = {
      {"a\xFF"
       "b",
       u"a\uFFFDb"},
      {"\x80", u"\uFFFD"},
      {"\xE2\x82", u"\uFFFD"},    // ends too early
      {"\xE2\x82x", u"\uFFFDx"},  // what follows is kept
      {"\xC3\xC3\xA4", u"\uFFFD\u00E4"},
      {"\xE0\x80\x80", u"\uFFFD"},      // overlong
      {"\xC0\x80", u"\uFFFD\uFFFD"},    // no character begins so
      {"\xED\xA0\x80", u"\uFFFD"},      // a surrogate
      {"\xF4\x90\x80\x80", u"\uFFFD"},  // beyond the last character
  };
  for (const auto& c : cases) EXPECT_EQ(utf8_string_to_ustring(c.bytes), c.text) << testing::PrintToString(c.bytes);

  EXPECT_EQ(ustring_to_utf8_string({u'a', char16_t(0xD800), u'b'}),
            "a\xEF\xBF\xBD"
            "b");
  EXPECT_EQ(ustring_to_utf8_string({char16_t(0xDC00), char16_t(0xD83D)}), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

// Any bytes at all give text that is well formed.
TEST(Strings, EveryPairOfBytesConverts) {
  for (int first = 0; first < 256; ++first) {
    for (int second = 0; second < 256; ++second) {
      const std::string bytes{'\xE1', static_cast<char>(first), static_cast<char>(second), 'x'};
      const ustring text = utf8_string_to_ustring(bytes);
      ASSERT_EQ(utf8_string_to_ustring(ustring_to_utf8_string(text)), text);
      ASSERT_EQ(text.back(), u'x');
    }
  }
}

TEST(Strings, LocalEncodingIsUtf8UnlessTheLocaleSaysOtherwise) {
  EXPECT_EQ(kmf::local_encoded_string_to_ustring("\xC3\xA4"), u"\u00E4");
  EXPECT_EQ(kmf::ustring_to_local_encoded_string(u"\u00E4"), "\xC3\xA4");
  if (!std::setlocale(LC_CTYPE, "de_DE.ISO-8859-1")) GTEST_SKIP() << "the system has no such locale";
  EXPECT_EQ(kmf::local_encoded_string_to_ustring("\xE4"), u"\u00E4");
  EXPECT_EQ(kmf::ustring_to_local_encoded_string(u"\u00E4\u20AC"), "\xE4?");
  std::setlocale(LC_CTYPE, "C");
}

TEST(Strings, OtherEncodingsReplaceWhatTheyLack) {
  using namespace kmf::embedded;
  EXPECT_EQ(to_utf8_from("\xE4", "ISO-8859-1"), "\xC3\xA4");
  EXPECT_EQ(from_utf8_to("\xC3\xA4\xE2\x82\xAC"
                         "b",
                         "ISO-8859-1"),
            "\xE4?b");
  EXPECT_EQ(to_utf8_from("a\x81\xFF", "ISO-8859-6"), "a\xC2\x81\xEF\xBF\xBD");
  EXPECT_EQ(to_utf8_from("a", "no such encoding"), "a");
  EXPECT_EQ(from_utf8_to("a", "no such encoding"), "a");
}

TEST(Strings, SanitizedAndLowerChangeWhatTheyName) {
  EXPECT_EQ(kmf::get_sanitized_ustring(u"a\nb\n", 10, 32), u"a b ");
  EXPECT_EQ(kmf::lower("AbZ\xC3\x84[@"), "abz\xC3\x84[@") << "ASCII only, whatever the locale";
}

TEST(TableString, EqualTextsShareOneEntryAcrossThreads) {
  constexpr int count = 20000;
  std::vector<std::vector<kmf::TableString>> made(4);
  std::vector<std::thread> threads;
  for (auto& mine : made) {
    threads.emplace_back([&mine] {
      for (int i = 0; i < count; ++i) mine.emplace_back("entry " + std::to_string(i));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (const auto& mine : made) EXPECT_EQ(mine, made[0]);
  EXPECT_EQ(made[0][count - 1].view(), "entry 19999");
  EXPECT_EQ(made[0][7].data()[7], '\0');
}

TEST(TableString, HashDependsOnTheTextAlone) {
  EXPECT_EQ(hash_value(kmf::TableString("a")), 0xaf63dc4c8601ec8cULL) << "FNV-1a of \"a\"";
  EXPECT_EQ(hash_value(kmf::TableString()), hash_value(kmf::TableString("")));
  EXPECT_EQ(kmf::TableString(std::string(100000, 'x')).size(), 100000U);
  EXPECT_NE(kmf::TableString(std::string_view("a\0b", 3)), kmf::TableString("a"));
}

}  // namespace
