#include "views/json_writer.hpp"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <sstream>

namespace kinemo::views {
namespace {

TEST(JsonWriter, TextsAndNumbersReadBackTheSame) {
  const std::string odd = "quote \" backslash \\ line\nfeed tab\t bell\x07 \x7F euro \xE2\x82\xAC / end";
  const std::vector<double> numbers{0, -0.0, 1e-300, 0.1, 1.0 / 3, 5e-324, 1.7976931348623157e308, 1e22, 123456789};
  std::ostringstream out;
  JsonWriter json(out);
  json.begin_object().member(odd, odd).key("numbers").begin_array(true);
  for (const double number : numbers) json.value(number);
  json.end_array().member("on", true).member("count", std::size_t{18446744073709551615U});
  json.key("empty").begin_object().end_object().key("none").begin_array().end_array().end_object().finish();
  const nlohmann::json read = nlohmann::json::parse(out.str());
  EXPECT_EQ(odd, read.at(odd).get<std::string>());
  EXPECT_EQ(numbers, read.at("numbers").get<std::vector<double>>());
  EXPECT_TRUE(read.at("on").get<bool>());
  EXPECT_EQ(18446744073709551615U, read.at("count").get<std::size_t>());
  EXPECT_TRUE(read.at("empty").empty() && read.at("none").empty());
}

TEST(JsonWriter, NumbersWithoutJsonFormAreTexts) {
  EXPECT_EQ("Inf", number_text(std::numeric_limits<double>::infinity()));
  EXPECT_EQ("-Inf", number_text(-std::numeric_limits<double>::infinity()));
  std::ostringstream out;
  JsonWriter json(out);
  json.value(std::nan(""));
  EXPECT_EQ("\"NaN\"", out.str());
}

TEST(JsonWriter, DepthDoesNotMatter) {
  constexpr int depth = 200'000;
  std::ostringstream out;
  JsonWriter json(out);
  for (int i = 0; i < depth; ++i) json.begin_array(true);
  for (int i = 0; i < depth; ++i) json.end_array();
  EXPECT_EQ(std::string(depth, '[') + std::string(depth, ']'), out.str());
}

}  // namespace
}  // namespace kinemo::views
