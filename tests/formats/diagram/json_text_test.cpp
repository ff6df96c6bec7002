#include "formats/diagram/json_text.hpp"

#include <gtest/gtest.h>

#include <algorithm>

namespace kinemo::formats::diagram {
namespace {

struct Written {
  std::string text;
  bool too_long;
};

Written json_of(const std::string& yaml, std::size_t limit = 1 << 20) {
  DiagnosticList problems;
  const YamlTree tree(yaml, "m.yaml", problems);
  const std::string* too_long = nullptr;
  std::string text = json_text(*tree.root(), limit, too_long);
  return {std::move(text), too_long != nullptr};
}

TEST(JsonText, WritesTextsButWhereNumbersAreAskedFor) {
  EXPECT_EQ(R"({"kinemo": 1, "at": [-1.5e+3, 0, 10, ".5"], "rotate": 90, "value": "90"})"
            "\n",
            json_of("{kinemo: 1, at: [-1.5e+3, 0, 10, .5], rotate: 90, value: 90}").text);
  EXPECT_EQ("{\"at\": [\"01\", \"1.\", \"1e\", \"-\", \"\", \"0x1\"]}\n",
            json_of("{at: ['01', '1.', '1e', '-', '', '0x1']}").text);
  EXPECT_EQ("{\"a\\\"\\\\\\n\\u0001\": null, \"\xC3\xA4\": {}, \"l\": []}\n",
            json_of("{\"a\\\"\\\\\\n\\x01\": , \xC3\xA4: {}, l: []}").text);
}

TEST(JsonText, WritesAliasesOutAndLongCollectionsOnManyLines) {
  const std::string items = "[1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16]";
  const std::string text = json_of("a: &x {b: c}\nd: *x\ne: " + items).text;
  EXPECT_EQ(0U, text.find("{\n  \"a\": {\"b\": \"c\"},\n  \"d\": {\"b\": \"c\"},\n  \"e\": [\n    \"1\",\n")) << text;
  EXPECT_EQ(text.size() - 16, text.find("\n    \"16\"\n  ]\n}\n")) << text;
}

TEST(JsonText, ManyLevelsAndMuchTextAreNoTrouble) {
  const std::size_t depth = YamlTree::depth_limit - 1;
  const std::string text = json_of(std::string(depth, '[') + std::string(depth, ']'), 1 << 30).text;
  EXPECT_EQ(depth, static_cast<std::size_t>(std::count(text.begin(), text.end(), ']')));
  EXPECT_GT(1000U, json_of("[&a [aaaaaaaaaa, bbbbbbbbbb], *a, *a, *a, *a, *a, *a, *a, *a]", 100).text.size());
  EXPECT_FALSE(json_of("? " + std::string(900, 'k') + "\n: 1").too_long);
  EXPECT_TRUE(json_of("? " + std::string(1100, 'k') + "\n: 1").too_long);
}

}  // namespace
}  // namespace kinemo::formats::diagram
