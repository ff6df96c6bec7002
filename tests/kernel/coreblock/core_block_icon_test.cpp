#include "common/gl/gti/src/kernel/coreblock/icon_bitmap.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_text.hpp"
#include "embedded/block_diagram/icons.hpp"
#include "embedded/block_diagram/window.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

#include <cstdint>

namespace gl::gti::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string utf8(const ustring& text) {
  return kmf::ustring_to_utf8_string(text);
}

/// Remembers what a block draws, as texts.
struct RecordingWindow final : GTWindow {
  void setTextAlignment(int horizontal, int vertical) override {
    calls.push_back("align " + std::to_string(horizontal) + " " + std::to_string(vertical));
  }
  int lineSpacing() override { return spacing; }
  void moveTo(int x, int y) override { calls.push_back("move " + std::to_string(x) + " " + std::to_string(y)); }
  void drawString(const ustring& text) override { calls.push_back("text " + utf8(text)); }
  void setForeground(const GTColor& color) override { calls.push_back(color.green == 1.0 ? "green" : "black"); }
  void frameAndFill(const GTBlock&, const GTBounds&) override { calls.push_back("frame"); }
  void drawImage(const GTBlock&, const cvArray_tag* image, const GTBounds&, bool rotate, int location) override {
    const auto& size = cvGetDimensions(image);
    calls.push_back("image " + std::to_string(size[0]) + "x" + std::to_string(size[1]) + (rotate ? " turning" : "") +
                    " at " + std::to_string(location));
    scope = cvGetArrayScope(image);
    first = cvGetElement(image, 1);
  }
  void drawPortLabel(const GTBlock&, const GTBounds&, bool left, int index, const ustring& label) override {
    calls.push_back((left ? "left " : "right ") + std::to_string(index) + " " + utf8(label));
  }

  int spacing = 11;
  std::vector<std::string> calls;
  int scope = -1;    ///< of the last image
  double first = 0;  ///< second element of the last image: the first one's neighbour down the column
};

/// Two rows of three pixels whose red counts from 1 along the rows.
const std::string colour_image =
    std::string("P6 3 2 255\n") + std::string{1, 0, 0, 2, 0, 0, 3, 0, 0, 4, 0, 0, 5, 0, 0, 6, 0, 0};
const std::string gray_image = std::string("P5 2 1 255\n") + std::string{7, 8};

constexpr GTBounds bounds{0, 0, 100, 60};

class CoreBlockIcon : public CoreBlockTest {
 protected:
  CoreBlockIcon() : block(prepare()) {}
  ~CoreBlockIcon() override { icon_styling_switch() = false; }

  CoreBlock& prepare() {
    descriptor().blockText(u"R");
    descriptor().addLeftPort("p", u"+", "liquid", u"");
    descriptor().addRightPort("n", u"-", "liquid", u"");
    addPrototype();
    return place(u"x");
  }
  std::vector<std::string> draw(CoreBlock& drawn) {
    window.calls.clear();
    drawn.drawIcon(&window, bounds);
    return window.calls;
  }
  /// What is drawn in front of the labels.
  std::string firstCall() { return draw(block).at(0); }
  void setIcon(const std::filesystem::path& file) {
    descriptor().iconFile(file);
    EXPECT_EQ(check(block), "");
  }
  std::string styleName() {
    gtsvString name;
    block.getIconStyleName(name);
    return utf8(name.text());
  }
  std::string style(const std::string& key, const char16_t* row) {
    const auto& styles = GTBlockIcon::findResource(kmf::utf8_string_to_ustring(key))->styles;
    const auto found = styles.find(row);
    return found == styles.end() ? "none" : utf8(found->second);
  }

  kinemo::test::TemporaryFolder folder;
  RecordingWindow window;
  CoreBlock& block;
};

}  // namespace

TEST_F(CoreBlockIcon, TextIconIsFramedAndThenLabelled) {
  EXPECT_THAT(draw(block), ElementsAre("frame", "align 1 2", "move 50 30", "move 50 35", "text R", "align 0 3", "green",
                                       "left 0 +", "right 0 -", "black"));
}

TEST_F(CoreBlockIcon, LinesOfTextStandAroundTheCentre) {
  struct Case {
    const char16_t* text;
    std::vector<std::string> calls;
  };
  // A spacing of 11 has a half of 5; bounds of 0 to 61 have the centre 30.
  const Case cases[] = {
      {u"", {"move 50 30"}},
      {u"a", {"move 50 30", "move 50 35", "text a"}},
      {u"a\nb", {"move 50 30", "move 50 24", "text a", "move 50 35", "text b"}},
      {u"a\nb\nc", {"move 50 30", "move 50 24", "text a", "move 50 35", "text b", "move 50 46", "text c"}},
      {u"\n", {"move 50 30", "move 50 24", "text ", "move 50 35", "text "}},
  };
  for (const Case& row : cases) {
    window.calls.clear();
    draw_icon_text(&window, {0, 0, 101, 61}, row.text);
    EXPECT_EQ(window.calls, row.calls) << utf8(row.text);
  }
}

TEST_F(CoreBlockIcon, PositionsOfTextAreCutToSixteenBits) {
  window.spacing = 10;
  draw_icon_text(&window, {0, 65536, 40, 65536 + 60}, u"a\nb");
  EXPECT_THAT(window.calls, ElementsAre("move 20 65566", "move 20 25", "text a", "move 20 35", "text b"));
}

TEST_F(CoreBlockIcon, BitmapIsReadOnceAndDrawnInItsShape) {
  const auto file = folder.write("icon.ppm", colour_image);
  const int scope = cvOpenScope();
  setIcon(file);
  cvCloseScope(scope);
  EXPECT_THAT(draw(block), ElementsAre("image 2x3 turning at 4", "green", "left 0 +", "right 0 -", "black"));
  EXPECT_EQ(window.scope, 0);
  EXPECT_EQ(window.first, 4);
  std::filesystem::remove(file);
  descriptor().permuteImage(true);
  setIcon(file);
  EXPECT_EQ(firstCall(), "image 2x3 turning at 4") << "the path is the same, so nothing is read";
}

TEST_F(CoreBlockIcon, PermutedBitmapHasRowsAndColumnsExchanged) {
  descriptor().permuteImage(true);
  descriptor().rotateImage(false);
  setIcon(folder.write("icon.ppm", colour_image));
  EXPECT_EQ(firstCall(), "image 3x2 at 4");
  EXPECT_EQ(window.first, 2);
}

TEST_F(CoreBlockIcon, BadBitmapsCostAWarningAtEachTry) {
  const auto gray = folder.write("gray.pgm", gray_image);
  const auto broken = folder.write("broken.png", "no image");
  setIcon(broken);
  setIcon(broken);
  EXPECT_THAT(take_warnings(), ElementsAre("kinemo:common:gl:gti:core_block:InvalidIconFile",
                                           "kinemo:common:gl:gti:core_block:InvalidIconFile"));
  setIcon(gray);
  const auto warnings = take_warning_messages();
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].identifier().id, "InvalidIconImageType");
  EXPECT_EQ(kmf::argument_text(warnings[0].identifier().arguments.at(0)), gray.string());
  EXPECT_EQ(firstCall(), "frame");
  EXPECT_EQ(styleName(), "KinemoBlockWithBorder");
}

TEST_F(CoreBlockIcon, BadBitmapTakesTheFormerOneAway) {
  setIcon(folder.write("icon.ppm", colour_image));
  setIcon(folder.write("broken.png", "no image"));
  EXPECT_EQ(take_warnings().size(), 1u);
  EXPECT_EQ(firstCall(), "frame");
}

TEST_F(CoreBlockIcon, ErrorsOfAnyKindInReadingCostAWarning) {
  const auto imread = embedded::scripting_runtime::find_function("imread");
  kmf::register_corvane_function("imread", [](int, cvArray_tag**, int, cvArray_tag**) { throw 7; });
  EXPECT_EQ(read_icon_bitmap("icon.png"), nullptr);
  kmf::register_corvane_function("imread", *imread);
  EXPECT_THAT(take_warnings(), ElementsAre("kinemo:common:gl:gti:core_block:InvalidIconFile"));
}

TEST_F(CoreBlockIcon, IconGoesWithTheDescriptorsButAVectorPathStays) {
  setIcon(folder.write("icon.ppm", colour_image));
  descriptor().iconFile(boost::none);
  descriptor().enableFrame(false);
  EXPECT_EQ(check(block), "");
  EXPECT_EQ(firstCall(), "frame");
  EXPECT_EQ(styleName(), "KinemoBlockWithBorder") << "no path is in force";
  setIcon("icon.svg");
  descriptor().iconFile(boost::none);
  EXPECT_EQ(check(block), "");
  EXPECT_EQ(styleName(), "KinemoBlockNoBorder") << "without an image the path stays in force";
}

TEST_F(CoreBlockIcon, CopyHasABitmapOfItsOwnAndReadsItsFileAgain) {
  const auto file = folder.write("icon.ppm", colour_image);
  setIcon(file);
  std::unique_ptr<GTBlock> copy(block.clone());
  descriptor().iconFile(boost::none);
  EXPECT_EQ(check(block), "");
  auto& copied = dynamic_cast<CoreBlock&>(*copy);
  EXPECT_EQ(draw(copied).at(0), "image 2x3 at 4") << "its switches come with its first check";
  std::filesystem::remove(file);
  descriptor().iconFile(file);
  EXPECT_EQ(check(copied), "");
  EXPECT_THAT(take_warnings(), ElementsAre("kinemo:common:gl:gti:core_block:InvalidIconFile"));
}

TEST_F(CoreBlockIcon, VectorIconWithoutStylingIsATextIcon) {
  descriptor().enableFrame(false);
  setIcon("icon.svg");
  EXPECT_FALSE(GTBlockIcon::isBlockIconRegistered(u"icon.svg"));
  EXPECT_EQ(firstCall(), "frame");
  EXPECT_EQ(styleName(), "KinemoBlockNoBorder") << "the path is in force";
}

TEST_F(CoreBlockIcon, VectorIconIsRegisteredWithItsStyles) {
  icon_styling_switch() = true;
  descriptor().enableFrame(false);
  setIcon("icon.svg");
  const GTIconResource* resource = GTBlockIcon::findResource(u"icon.svg");
  ASSERT_NE(resource, nullptr);
  EXPECT_EQ(resource->file, u"icon.svg");
  const std::map<ustring, ustring> expected{{u"Resize", u"FitToBlock"},
                                            {u"Geometric", u"Off"},
                                            {u"TextScalingOnResize", u"Constant"},
                                            {u"StrokeScalingOnResize", u"NonScaling"},
                                            {u"PreAdjustStrokeWidth", u"Normalized"},
                                            {u"PreAdjustSize", u"CropToContent"},
                                            {u"Clipping", u"None"},
                                            {u"Frame", u"Off"},
                                            {u"Rotate", u"On"},
                                            {u"LineExtension", u"On"},
                                            {u"StrokeScaling", u"PortStyled"},
                                            {u"Foreground", u"PortStyled"},
                                            {u"Port", u"Auto.Majority"}};
  EXPECT_EQ(resource->styles, expected);
  EXPECT_EQ(styleName(), "icon.svg");
  EXPECT_THAT(draw(block), IsEmpty());
}

TEST_F(CoreBlockIcon, RotationOfAVectorIconFollowsNewPathsOnly) {
  icon_styling_switch() = true;
  setIcon("icon.svg");
  EXPECT_EQ(style("icon.svg", u"Rotate"), "On");
  descriptor().rotateImage(false);
  setIcon("icon.svg");
  EXPECT_EQ(style("icon.svg", u"Rotate"), "On") << "the path is the same";
  setIcon("other.svg");
  setIcon("icon.svg");
  EXPECT_EQ(style("icon.svg", u"Rotate"), "Off");
  EXPECT_EQ(style("other.svg", u"Rotate"), "Off");
}

TEST_F(CoreBlockIcon, RegisteredIconWithTheRightRotationStaysAsItIs) {
  icon_styling_switch() = true;
  GTBlockIcon::registerBlockIconFromResource(u"icon.svg", u"elsewhere.svg", {{u"Rotate", u"On"}});
  setIcon("icon.svg");
  EXPECT_EQ(GTBlockIcon::findResource(u"icon.svg")->file, u"elsewhere.svg");
  descriptor().rotateImage(false);
  setIcon("other.svg");
  setIcon("icon.svg");
  EXPECT_EQ(GTBlockIcon::findResource(u"icon.svg")->file, u"icon.svg");
  EXPECT_EQ(style("icon.svg", u"Frame"), "none") << "the other styles are taken over";
}

TEST_F(CoreBlockIcon, VectorIconIsLabelledByOneOfTheTwo) {
  icon_styling_switch() = true;
  setIcon("icon.svg");
  EXPECT_THAT(draw(block), IsEmpty());
  IconData data;
  block.setIconPortLabels(data);
  ASSERT_EQ(data.portLabels().size(), 2u);
  EXPECT_EQ(data.portLabels()[0].side, 2);
  EXPECT_EQ(data.portLabels()[0].label, u"+");
  EXPECT_EQ(data.portLabels()[1].side, 0);
  EXPECT_EQ(data.portLabels()[1].index, 0);
  embedded::block_diagram::setIconSetting("KMDVGLabel", u"off");
  EXPECT_THAT(draw(block), ElementsAre("green", "left 0 +", "right 0 -", "black"));
}

TEST_F(CoreBlockIcon, VectorGraphicsAreKnownByTheirExactExtension) {
  for (const char* name : {"a.svg", "/b.c/a.x.svg"}) EXPECT_TRUE(is_svg(std::filesystem::path(name))) << name;
  for (const char* name : {"a.SVG", "a.svgz", "svg", ".svg", "a.svg/b", ""})
    EXPECT_FALSE(is_svg(std::filesystem::path(name))) << name;
  EXPECT_FALSE(is_svg(boost::none));
}

TEST(IconStylingPreference, EndsTheProcessWhereTheCallFails) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";  // a process in which nobody has asked yet
  EXPECT_DEATH(icon_styling_preference(), "Call to icon style preference failed\\.");
}

}  // namespace gl::gti::test
