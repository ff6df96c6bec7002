#include "platform/foundation/vn_id.hpp"

#include "tests/support/errors.hpp"

#include <gmock/gmock.h>

#include <set>
#include <sstream>
#include <stdexcept>

namespace {

using kinemo::test::error_of;
using kmf::VnId;
using kmf::VnIdPath;
using testing::ElementsAre;

std::vector<std::string> texts(const std::vector<VnId>& ids) {
  return {ids.begin(), ids.end()};
}

TEST(VnId, IsInternedAndOrderedByText) {
  EXPECT_EQ(VnId("mass"), VnId(std::string("mass")));
  EXPECT_EQ(VnId("mass").data(), VnId(u"mass").data()) << "one entry for one text";
  EXPECT_NE(VnId("mass"), VnId("Mass"));
  EXPECT_LT(VnId("a10"), VnId("a2"));
  EXPECT_LT(VnId(), VnId("a"));
  EXPECT_EQ(VnId(), VnId(""));
  EXPECT_EQ(ustring(VnId("mass")), u"mass");
  EXPECT_EQ((std::ostringstream() << VnId("mass")).str(), "mass");
}

TEST(VnId, RefusesWhatIsNoIdentifier) {
  for (const char* text : {"1a", "_a", "a b", "a.b", "a-b", "\xC3\xA4", " "}) {
    EXPECT_FALSE(VnId::isLegal(text)) << text;
    EXPECT_EQ(error_of([&] { VnId id(text); }),
              std::string("kinemo:foundation:identifiers:InvalidIdentifier(") + text + ")");
  }
  EXPECT_FALSE(VnId::isLegal(std::string_view("a\0", 2)));
  EXPECT_FALSE(VnId::isLegal(""));
  EXPECT_TRUE(VnId::isLegal("Z_9"));
}

TEST(VnId, MakesLegalTextFromAnyText) {
  EXPECT_EQ(VnId::make("R_1"), VnId("R_1"));
  EXPECT_EQ(VnId::make("R 1/x"), VnId("R_1_x"));
  EXPECT_EQ(VnId::make("1a"), VnId("x1a"));
  EXPECT_EQ(VnId::make("_a"), VnId("x_a"));
  EXPECT_EQ(VnId::make("Gr\xC3\xB6\xC3\x9F"
                       "e"),
            VnId("Gr__e"))
      << "one underscore for one character";
  EXPECT_TRUE(VnId::isLegal(VnId::make("").view()));
  EXPECT_TRUE(VnId::isLegal(VnId::make("\xFF\x80").view()));
}

TEST(VnId, UniqueKeepsTheFirstOfEqualNames) {
  EXPECT_EQ(texts(VnId::unique({"a", "b", "a", "a"}, {}, 64)), (std::vector<std::string>{"a", "b", "a_1", "a_2"}));
  EXPECT_EQ(texts(VnId::unique({"a", "a", "a_1"}, {"b", "a"}, 64)), (std::vector<std::string>{"a_2", "a_3", "a_1"}))
      << "a free name that was asked for is not given to another";
  EXPECT_EQ(texts(VnId::unique({VnId(), VnId()}, {}, 64)).size(), 2U);
}

TEST(VnId, UniqueStaysWithinTheLimit) {
  EXPECT_EQ(texts(VnId::unique({"abcdefgh", "abcdefxy", "abcd"}, {}, 5)),
            (std::vector<std::string>{"abcde", "abc_1", "abcd"}));
  const std::vector<VnId> many = VnId::unique(std::vector<VnId>(101, "abcdef"), {}, 5);
  EXPECT_EQ(std::string(many[9]), "abc_9");
  EXPECT_EQ(std::string(many[10]), "ab_10");
  EXPECT_EQ(std::string(many[100]), "a_100");
  EXPECT_THROW(VnId::unique(std::vector<VnId>(1001, "abcdef"), {}, 4), std::length_error);
  EXPECT_THROW(VnId::unique({"a"}, {}, 0), std::length_error);
}

// The guarantees, over names that clash in every way: by illegal characters, by length, by reserved names.
TEST(VnId, StringsToIdsGivesLegalNamesNoTwoEqual) {
  constexpr std::size_t limit = 12;
  const std::vector<VnId> reserved{"x", "a_1", "long_name_wi", "n_3"};
  std::map<std::string, VnId> names{{"", {}}, {"a", {}}, {"a 1", {}}, {"a_1", {}}, {"x", {}}, {"a\n1", {}}};
  for (int i = 0; i < 50; ++i) {
    names["long name with number " + std::to_string(i)];
    names[std::string(static_cast<std::size_t>(i), ' ')];
    names["n_" + std::to_string(i)];
  }
  VnId::stringsToIds(names, reserved, limit);

  std::set<VnId> seen(reserved.begin(), reserved.end());
  for (const auto& [text, id] : names) {
    EXPECT_TRUE(VnId::isLegal(id.view())) << text;
    EXPECT_LE(id.size(), limit) << text;
    EXPECT_TRUE(seen.insert(id).second) << text << " has the name " << id << " of another";
  }
  EXPECT_EQ(names["a"], VnId("a"));
  EXPECT_EQ(names["n_4"], VnId("n_4"));
  EXPECT_NE(names["n_3"], VnId("n_3"));
}

TEST(VnId, StringsToIdsRepeatsAndIgnoresWhatStoodThere) {
  std::map<std::string, VnId> first{{"a b", "old"}, {"a-b", {}}, {"a_b", "a_b"}};
  std::map<std::string, VnId> second{{"a b", {}}, {"a-b", "other"}, {"a_b", {}}};
  VnId::stringsToIds(first, {}, 64);
  VnId::stringsToIds(second, {}, 64);
  EXPECT_EQ(first, second);
}

// Ends in seconds only where the work doesn't grow with the square.
TEST(VnId, AHundredThousandClashesAreLinear) {
  std::vector<VnId> wanted;
  std::map<std::string, VnId> names;
  const std::string stem(62, 'a');
  for (int i = 0; i < 100000; ++i) {
    // Names that differ only where the number goes, twice each.
    const VnId id(stem + static_cast<char>('a' + i % 26) + static_cast<char>('a' + i / 26 % 26));
    wanted.push_back(id);
    names["block name with a long common beginning, far over the limit of length: " + std::to_string(i)];
  }
  const std::vector<VnId> ids = VnId::unique(wanted, {}, 64);
  VnId::stringsToIds(names, ids, 64);
  std::set<VnId> seen(ids.begin(), ids.end());
  for (const auto& name : names) seen.insert(name.second);
  EXPECT_EQ(seen.size(), 200000U);
}

TEST(VnIdPath, TextFormIsJoinedByFullStops) {
  const VnIdPath path("sub.R1.i");
  ASSERT_EQ(path.size(), 3U);
  EXPECT_EQ(path.back(), VnId("i"));
  EXPECT_EQ(std::string(path), "sub.R1.i");
  EXPECT_TRUE(VnIdPath("").empty());
  EXPECT_EQ(std::string(kmf::VnIdPath1("physical.electrical")), "physical.electrical");
  for (const char* text : {".", "a.", ".a", "a..b"}) {
    EXPECT_EQ(error_of([&] { VnIdPath bad(text); }),
              std::string("kinemo:foundation:identifiers:EmptyPathElement(") + text + ")");
  }
  EXPECT_EQ(error_of([] { VnIdPath bad("a.1"); }), "kinemo:foundation:identifiers:InvalidIdentifier(1)");
}

TEST(VnIdPath, ChopsAndHashesByItsElements) {
  VnIdPath path("a.b.c");
  path.chop(path.begin() + 1);
  EXPECT_EQ(path, VnIdPath("a"));
  path.append("b");
  EXPECT_EQ(hash_value(path), hash_value(VnIdPath("a.b")));
  EXPECT_NE(hash_value(path), hash_value(VnIdPath("b.a")));
  EXPECT_LT(VnIdPath("a"), path);
  EXPECT_TRUE(VnIdPath(kmf::TableString("")).empty());
  EXPECT_EQ(VnIdPath(kmf::TableString("a")), VnIdPath("a"));
  EXPECT_EQ(error_of([] { VnIdPath bad(kmf::TableString("a.b")); }),
            "kinemo:foundation:identifiers:InvalidIdentifier(a.b)");
}

TEST(VnIdPathIterator, WalksPathsIdentifiersAndText) {
  const VnIdPath path("a.b");
  kmf::VnIdPathIterator at(path);
  EXPECT_EQ(*at, VnId("a"));
  EXPECT_EQ((++at).rest(), VnIdPath("b"));
  EXPECT_TRUE((++at).atEnd());
  EXPECT_TRUE(kmf::VnIdPathIterator("").atEnd());
  EXPECT_TRUE(kmf::VnIdPathIterator(VnIdPath()).atEnd());

  kmf::VnIdPathIterator copy;
  {
    const kmf::VnIdPathIterator owner("x.y");
    copy = owner;
  }
  EXPECT_EQ(copy.rest(), VnIdPath("x.y")) << "the copy keeps the path that the text gave";
}

}  // namespace
