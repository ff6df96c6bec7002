#include "formats/model_format.hpp"

#include <gtest/gtest.h>

namespace kinemo::formats {
namespace {

TEST(ModelFormat, IsToldByTheNameOrElseByTheText) {
  struct Case {
    const char* file;
    const char* text;
    ModelFormat expected;
  };
  const Case cases[] = {
      {"a.YML", "", ModelFormat::diagram},
      {"kinemo.cir", "kinemo: 1", ModelFormat::spice},
      {"-", "", ModelFormat::spice},
      {"-", "# comment\n\n---\nkinemo: 1\n", ModelFormat::diagram},
      {"-", "\xEF\xBB\xBFkinemo: 1\r\n", ModelFormat::diagram},
      {"-", "  {\"kinemo\": 1}", ModelFormat::diagram},
      {"-", "blocks:", ModelFormat::diagram},
      {"-", "blocks", ModelFormat::spice},
      {"a.txt", "low pass: first order\nr1 a b 1k\n", ModelFormat::spice},
  };
  for (const Case& row : cases) EXPECT_EQ(row.expected, detect_format(row.file, row.text)) << row.file << row.text;
}

}  // namespace
}  // namespace kinemo::formats
