#include "embedded/drawing/svg_text.hpp"

#include <gtest/gtest.h>

namespace embedded::drawing::test {

TEST(SvgText, StrokeWidthsAreMultipliedWhereverTheyStand) {
  struct Case {
    const char* svg;
    const char* expected;
  };
  const Case cases[] = {
      {"<svg><g stroke-width='4'/></svg>", "<svg stroke-width=\"0.5\"><g stroke-width='2'/></svg>"},
      {"<svg stroke-width=\"3px\"/>", "<svg stroke-width=\"1.5px\"/>"},
      {"<svg><g style='fill:none; stroke-width : 1e1mm;'/></svg>",
       "<svg stroke-width=\"0.5\"><g style='fill:none; stroke-width : 5mm;'/></svg>"},
      {"<?xml?><!DOCTYPE svg [<!ENTITY e '>'>]><!--<svg>--><svg\n/>",
       "<?xml?><!DOCTYPE svg [<!ENTITY e '>'>]><!--<svg>--><svg stroke-width=\"0.5\"\n/>"},
      {"<svg><g stroke-width='inherit'/></svg>", "<svg stroke-width=\"0.5\"><g stroke-width='inherit'/></svg>"},
      {"stroke-width", "stroke-width"},
      {"<!-- stroke-width=", "<!-- stroke-width="},
      {"", ""},
  };
  for (const Case& row : cases) EXPECT_EQ(with_stroke_widths(row.svg, 0.5), row.expected);
}

TEST(SvgText, TheRootGetsNoAttributeTwice) {
  struct Case {
    const char* svg;
    const char* expected;
  };
  const Case cases[] = {
      {"<svg/>", "<svg color=\"red\" fill=\"red\"/>"},
      {"<svg\n\tfill = 'none' color=\"blue\">", "<svg\n\tfill = 'none' color=\"blue\">"},
      {"<svg title=' fill=\"a > b\"' color='x'>", "<svg fill=\"red\" title=' fill=\"a > b\"' color='x'>"},
      {"<svg title='", "<svg color=\"red\" fill=\"red\" title='"},
  };
  for (const Case& row : cases) EXPECT_EQ(with_foreground(row.svg, "red"), row.expected);
}

TEST(SvgText, OnlyTextsAreStretched) {
  struct Case {
    const char* svg;
    const char* expected;
  };
  const Case cases[] = {
      {"<text x='4' y=\"2\">a</text>",
       "<text transform=\"translate(4 2) scale(2 0.5) translate(-4 -2)\" x='4' y=\"2\">a</text>"},
      {"<text transform='rotate(3)'/>", "<text transform='rotate(3) translate(0 0) scale(2 0.5) translate(0 0)'/>"},
      {"<textPath x='4'>a</textPath>", "<textPath x='4'>a</textPath>"},
      {"<text id='a > x=\"9\"'>", "<text transform=\"translate(0 0) scale(2 0.5) translate(0 0)\" id='a > x=\"9\"'>"},
      {"<text transform='x>", "<text transform='x>"},
      {"<text", "<text"},
      {"", ""},
  };
  for (const Case& row : cases) EXPECT_EQ(with_texts_stretched(row.svg, 2, 0.5), row.expected);
}

}  // namespace embedded::drawing::test
