#include "embedded/drawing/canvas.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/placement.hpp"
#include "embedded/drawing/bitmap.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/embedded/drawing/picture.hpp"
#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>

#include <cmath>

namespace embedded::drawing::test {

namespace {

constexpr GTColor black{0, 0, 0, -1, 0};

class CanvasTest : public kinemo::test::NoLeaks {
 protected:
  /// Two rows of three pixels; the red of each is 10 * row + column + 1, the blue 200.
  static cvUniquePtr image() {
    cvUniquePtr array(cvCreateNumericArray({2, 3, 3}, cvUINT8_CLASS));
    for (std::size_t column = 0; column < 3; ++column) {
      for (std::size_t row = 0; row < 2; ++row) {
        cvSetElement(array.get(), row + 2 * column, static_cast<double>(10 * row + column + 1));
        cvSetElement(array.get(), row + 2 * column + 12, 200);
      }
    }
    return array;
  }
  void turn(const ustring& degrees) { block_diagram::setProperty(block, "Rotation", degrees); }
  /// The reds of the picture in a grid of squares of 20 pixels, row by row; -1 for white.
  static std::vector<std::vector<int>> squares(const Picture& picture) {
    std::vector<std::vector<int>> rows;
    for (int y = 10; y < picture.height(); y += 20) {
      rows.emplace_back();
      for (int x = 10; x < picture.width(); x += 20)
        rows.back().push_back(picture.at(x, y) == 0xFFFFFF ? -1 : static_cast<int>(picture.at(x, y) >> 16));
    }
    return rows;
  }

  GTBlock block{"Part", nullptr};
};

using Rows = std::vector<std::vector<int>>;

}  // namespace

TEST_F(CanvasTest, ImageStandsUprightOrTurnsWithItsBlock) {
  struct Case {
    const char16_t* rotation;
    bool rotate;
    Size size;
    Rows expected;
  };
  const Case cases[] = {
      {u"0", true, {60, 40}, {{1, 2, 3}, {11, 12, 13}}},   {u"90", true, {40, 60}, {{11, 1}, {12, 2}, {13, 3}}},
      {u"180", true, {60, 40}, {{13, 12, 11}, {3, 2, 1}}}, {u"270", true, {40, 60}, {{3, 13}, {2, 12}, {1, 11}}},
      {u"90", false, {60, 40}, {{1, 2, 3}, {11, 12, 13}}},
  };
  for (const Case& row : cases) {
    turn(row.rotation);
    Canvas canvas(Format::Png, row.size);
    const GTBounds bounds{0, 0, static_cast<int>(row.size.width), static_cast<int>(row.size.height)};
    canvas.drawImage(block, image().get(), bounds, row.rotate, GT_IMAGE_CENTER);
    const Picture picture(canvas);
    EXPECT_EQ(squares(picture), row.expected) << kmf::ustring_to_utf8_string(row.rotation) << row.rotate;
    EXPECT_EQ(picture.at(10, 10) & 0xFFFF, 200u);
  }
}

TEST_F(CanvasTest, ImageKeepsItsProportionsAtAnyLocation) {
  const Rows top_left = {{1, 2, 3, -1, -1}, {11, 12, 13, -1, -1}};
  const Rows centre = {{-1, 1, 2, 3, -1}, {-1, 11, 12, 13, -1}};
  const Rows bottom_right = {{-1, -1, 1, 2, 3}, {-1, -1, 11, 12, 13}};
  for (const auto& [location, expected] : {std::pair(GT_IMAGE_TOP_LEFT, top_left), std::pair(GT_IMAGE_CENTER, centre),
                                           std::pair(GT_IMAGE_BOTTOM_RIGHT, bottom_right)}) {
    Canvas canvas(Format::Png, {100, 40});
    canvas.drawImage(block, image().get(), {0, 0, 100, 40}, true, location);
    EXPECT_EQ(squares(Picture(canvas)), expected) << location;
  }
}

TEST_F(CanvasTest, FractionsAreColoursAndOtherArraysAreNone) {
  const cvUniquePtr fractions(cvCreateNumericArray({1, 1, 3}, cvDOUBLE_CLASS));
  cvSetElement(fractions.get(), 0, 1.0);
  cvSetElement(fractions.get(), 1, -5.0);
  cvSetElement(fractions.get(), 2, 0.2);
  Canvas canvas(Format::Png, {10, 10});
  canvas.drawImage(block, fractions.get(), {0, 0, 10, 10}, true, GT_IMAGE_CENTER);
  const cvUniquePtr gray(cvCreateDoubleMatrix(4, 4));
  canvas.drawImage(block, gray.get(), {0, 0, 10, 10}, true, GT_IMAGE_CENTER);
  canvas.drawImage(block, image().get(), {5, 5, 5, 5}, true, GT_IMAGE_CENTER);
  EXPECT_EQ(Picture(canvas).at(5, 5), 0xFF0033u);
  const cvUniquePtr switches(cvCreateNumericArray({1, 1, 3}, cvLOGICAL_CLASS));
  cvSetElement(switches.get(), 1, 1.0);
  Canvas other(Format::Png, {10, 10});
  other.drawImage(block, switches.get(), {0, 0, 10, 10}, true, GT_IMAGE_CENTER);
  EXPECT_EQ(Picture(other).at(5, 5), 0x00FF00u);
}

TEST_F(CanvasTest, ImagesLargerThanAnySurfaceAreThinnedOut) {
  const cvUniquePtr strip(cvCreateNumericArray({3, 40000, 3}, cvUINT8_CLASS));
  const SurfacePointer bitmap = bitmap_of(strip.get());
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(cairo_image_surface_get_width(bitmap.get()), 4000);
  EXPECT_EQ(cairo_image_surface_get_height(bitmap.get()), 1);
}

TEST_F(CanvasTest, TextStandsAtItsPositionByItsAlignment) {
  struct Case {
    int horizontal;
    int vertical;
    int left_share;  ///< of the text to the left of the position, and above it, in percent
    int top_share;
  };
  const Case cases[] = {{GT_ALIGN_LEFT, GT_ALIGN_BASELINE, 0, 100},
                        {GT_ALIGN_CENTER, GT_ALIGN_BASELINE, 50, 100},
                        {GT_ALIGN_RIGHT, GT_ALIGN_TOP, 100, -30},
                        {GT_ALIGN_CENTER, GT_ALIGN_MIDDLE, 50, 50},
                        {GT_ALIGN_CENTER, GT_ALIGN_BOTTOM, 50, 130}};
  for (const Case& row : cases) {
    Canvas canvas(Format::Png, {200, 100}, 4);
    canvas.setTextAlignment(row.horizontal, row.vertical);
    canvas.moveTo(100, 50);
    canvas.drawString(u"HHHHHHHH");
    const Picture::Ink ink = Picture(canvas).ink();
    const double width = ink.right - ink.left + 1;
    const double height = ink.bottom - ink.top + 1;
    EXPECT_NEAR((400 - ink.left) / width * 100, row.left_share, 3) << row.horizontal;
    EXPECT_NEAR((200 - ink.top) / height * 100, row.top_share, 8) << row.vertical;
  }
}

TEST_F(CanvasTest, LinesOfTextDoNotTouchAndLineFeedsDoNotBreakThem) {
  Canvas canvas(Format::Png, {100, 60});
  EXPECT_GT(canvas.lineSpacing(), 0);
  canvas.setTextAlignment(GT_ALIGN_LEFT, GT_ALIGN_TOP);
  canvas.moveTo(0, 0);
  canvas.drawString(u"gj\u00C5\npq");
  EXPECT_LT(Picture(canvas).ink().bottom, canvas.lineSpacing());
}

TEST_F(CanvasTest, DrawingsElsewhereLeaveThePenAsItWas) {
  Canvas canvas(Format::Png, {100, 40}, 2);
  canvas.setTextAlignment(GT_ALIGN_CENTER, GT_ALIGN_MIDDLE);
  canvas.moveTo(50, 20);
  canvas.drawAt({70, 0}, [&] {
    canvas.setTextAlignment(GT_ALIGN_LEFT, GT_ALIGN_TOP);
    canvas.moveTo(-70, 0);
  });
  canvas.drawString(u"H");
  const Picture::Ink ink = Picture(canvas).ink();
  EXPECT_NEAR(ink.left + ink.right, 200, 3);
  EXPECT_NEAR(ink.top + ink.bottom, 80, 6);
}

TEST_F(CanvasTest, LinesAndDots) {
  Canvas canvas(Format::Png, {40, 40});
  canvas.drawLine({{5, 10}, {35, 10}, {35, 30}}, {1, 0, 0, -1, 0}, 2);
  canvas.drawDot({10, 30}, black, 3);
  canvas.drawLine({}, black);
  const Picture picture(canvas);
  EXPECT_EQ(picture.at(20, 10), 0xFF0000u);
  EXPECT_EQ(picture.at(35, 20), 0xFF0000u);
  EXPECT_EQ(picture.at(10, 30), 0u);
  EXPECT_EQ(picture.at(20, 20), 0xFFFFFFu);
}

TEST_F(CanvasTest, EachFormatIsWritten) {
  for (const auto& [format, head] :
       {std::pair(Format::Svg, "<?xml"), std::pair(Format::Png, "\x89PNG"), std::pair(Format::Pdf, "%PDF")}) {
    Canvas canvas(format, {40, 40});
    canvas.drawFrame({5, 5, 35, 35});
    EXPECT_THAT(canvas.finish(), testing::StartsWith(head));
  }
  Canvas book(Format::Pdf, {40, 40});
  book.drawDot({20, 20}, black, 5);
  book.nextPage({80, 20});
  book.drawDot({60, 10}, black, 5);
  EXPECT_THAT(book.finish(), testing::HasSubstr("/Count 2"));
}

TEST_F(CanvasTest, SizesThatNoPictureHasAreErrors) {
  const auto error = [](Format format, Size size, double scale) {
    return kinemo::test::error_of([&] { Canvas(format, size, scale); });
  };
  EXPECT_EQ(error(Format::Png, {0, 5}, 1), "kinemo:host:drawing:InvalidSize(0, 5, 16384)");
  EXPECT_EQ(error(Format::Png, {10000, 5}, 2), "kinemo:host:drawing:InvalidSize(20000, 10, 16384)");
  EXPECT_EQ(error(Format::Svg, {10000, -5}, 2), "kinemo:host:drawing:InvalidSize(20000, -10, 1e+06)");
  EXPECT_EQ(error(Format::Pdf, {5, std::nan("")}, 1), "kinemo:host:drawing:InvalidSize(5, nan, 1e+06)");
  Canvas book(Format::Pdf, {5, 5});
  EXPECT_EQ(kinemo::test::error_of([&] { book.nextPage({5, 0}); }), "kinemo:host:drawing:InvalidSize(5, 0, 1e+06)");
}

/// What comes after a step that the library refuses isn't drawn any more, which nobody would see in the file.
TEST_F(CanvasTest, PicturesThatCouldNotBeDrawnToTheirEndAreErrors) {
  for (const Format format : {Format::Svg, Format::Png, Format::Pdf}) {
    Canvas canvas(format, {40, 40});
    canvas.drawAt({std::nan(""), 0}, [] {});
    canvas.drawDot({20, 20}, black, 5);
    EXPECT_EQ(kinemo::test::error_of([&] { canvas.finish(); }),
              "kinemo:host:drawing:CannotWrite(invalid matrix (not invertible))");
  }
}

}  // namespace embedded::drawing::test
