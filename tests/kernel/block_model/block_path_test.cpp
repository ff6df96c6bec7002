#include "common/gl/gti/export/block_path.hpp"

#include "common/gl/gti/src/kernel/block_model/path_text.hpp"
#include "tests/support/errors.hpp"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace gl::gti {
namespace {

using Texts = std::vector<ustring>;

Texts componentsOf(const ustring& text) {
  const BlockPath path(text);
  return {path.begin(), path.end()};
}

TEST(BlockPath, SplitsAtSingleSeparators) {
  const std::vector<std::pair<ustring, Texts>> cases{{u"", {}},
                                                     {u"a", {u"a"}},
                                                     {u"a/b", {u"a", u"b"}},
                                                     {u"a//b", {u"a//b"}},
                                                     {u"a/", {u"a"}},
                                                     {u"a//", {u"a//"}},
                                                     {u"/a", {u"/a"}},
                                                     {u"a///b", {u"a", u"//b"}},
                                                     {u"/", {u"/"}},
                                                     {u"//a/b", {u"//a", u"b"}},
                                                     {u"a/b/c//d", {u"a", u"b", u"c//d"}}};
  for (const auto& [text, expected] : cases)
    EXPECT_EQ(componentsOf(text), expected) << std::string(text.begin(), text.end());
}

/// The definition of the split, character by character: parents from the right, then the rest.
ustring literalParent(const ustring& text) {
  for (std::ptrdiff_t from = static_cast<std::ptrdiff_t>(text.size()) - 1; from >= 0;) {
    const std::size_t at = text.rfind(u'/', static_cast<std::size_t>(from));
    if (at == ustring::npos) return {};
    if (at == 0 || text[at - 1] != u'/') return text.substr(0, at);
    from = at == 1 ? 0 : static_cast<std::ptrdiff_t>(at) - 2;
  }
  return {};
}

Texts literalSplit(ustring text) {
  Texts components;
  while (!text.empty()) {
    ustring front = text;
    for (ustring parent = literalParent(front); !parent.empty(); parent = literalParent(front)) front = parent;
    components.push_back(front);
    text = front == text ? ustring() : text.substr(front.size() + 1);
  }
  return components;
}

TEST(BlockPath, LinearSplitEqualsTheDefinitionForAllShortTexts) {
  for (std::size_t size = 0; size <= 11; ++size) {
    for (unsigned bits = 0; bits < (1u << size); ++bits) {
      ustring text;
      for (std::size_t i = 0; i < size; ++i) text += (bits >> i) % 2 != 0 ? u'/' : u'a';
      ASSERT_EQ(componentsOf(text), literalSplit(text)) << std::string(text.begin(), text.end());
      ASSERT_EQ(ustring(parent_text(text)), literalParent(text));
      if (text.empty()) continue;
      ASSERT_EQ(ustring(front_text(text)), literalSplit(text).front());
      ASSERT_EQ(literalSplit(ustring(rest_text(text))).size() + 1, literalSplit(text).size());
      ASSERT_EQ(ustring(back_text(text)), literalSplit(text).back()) << std::string(text.begin(), text.end());
    }
  }
}

TEST(BlockPath, JoinsItsComponentsAgain) {
  const BlockPath path(u"m/a//b/c");
  EXPECT_EQ(path.string(), u"m/a//b/c");
  EXPECT_EQ(path.rest().string(), u"a//b/c");
  EXPECT_EQ(path.chop().string(), u"m/a//b");
  EXPECT_EQ((BlockPath(u"m/a") + BlockPath(u"b/c")).string(), u"m/a/b/c");
  BlockPath twice(u"m/a");
  twice += twice;
  EXPECT_EQ(twice.string(), u"m/a/m/a");
  std::ostringstream out;
  out << BlockPath(u"m/\u00e4");
  EXPECT_EQ(out.str(), "m/\xc3\xa4");
}

TEST(BlockPath, EmptyPathHasNoEnds) {
  const BlockPath empty;
  EXPECT_TRUE(empty.chop().empty());
  EXPECT_TRUE(empty.rest().empty());
  EXPECT_EQ(empty.string(), u"");
  EXPECT_TRUE(BlockPath(u"a").chop().empty());
  EXPECT_TRUE(BlockPath(u"a").rest().empty());
  const char* const error = "kinemo:common:gl:gti:block_path:InvalidBlockPathAccess()";
  EXPECT_EQ(kinemo::test::error_of([&] { empty.front(); }), error);
  EXPECT_EQ(kinemo::test::error_of([&] { empty.back(); }), error);
}

TEST(BlockPath, OrdersByNamesAndDeepestFirst) {
  const BlockPath deep(u"b/b/c"), shallow(u"a"), ab(u"a/b"), ac(u"a/c");
  EXPECT_TRUE(deep.deepestFirst(shallow));
  EXPECT_FALSE(deep < shallow);
  EXPECT_TRUE(ab < ac && ab.deepestFirst(ac) && !ac.deepestFirst(ab));
  EXPECT_TRUE(BlockPath(u"a") < ab);
  EXPECT_TRUE(ab.deepestFirst(BlockPath(u"a")));
  EXPECT_TRUE(BlockPath(u"a/z") < BlockPath(u"a!/b")) << "by names, not by texts";
  EXPECT_FALSE(ab.deepestFirst(ab));
}

TEST(BlockPath, BranchesWhereAnotherPathDiffers) {
  const BlockPath path(u"a/b/c");
  EXPECT_EQ(*path.branch(BlockPath(u"a/x/c")), u"b");
  EXPECT_EQ(path.branch(BlockPath(u"a/b/c/d")), path.end());
  EXPECT_EQ(path.branch(path), path.end());
  EXPECT_EQ(path.branch(BlockPath()), path.begin());
  const BlockPath empty;
  EXPECT_EQ(empty.branch(path), empty.end());
}

TEST(BlockPath, CopiesShareUntilOneChanges) {
  BlockPath path(u"a/b");
  BlockPath copy(path);
  EXPECT_EQ(&*copy.begin(), &*path.begin());
  copy += BlockPath(u"c");
  EXPECT_EQ(path.string(), u"a/b");
  EXPECT_EQ(copy.string(), u"a/b/c");
  BlockPath moved(std::move(path));
  EXPECT_EQ(moved.string(), u"a/b");
  BlockPath empty;
  empty += moved;
  EXPECT_TRUE(BlockPath().empty()) << "all empty paths share a list";
}

}  // namespace
}  // namespace gl::gti
