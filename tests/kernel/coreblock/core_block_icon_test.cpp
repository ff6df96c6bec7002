#include "common/gl/gti/src/kernel/coreblock/icon_bitmap.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_text.hpp"
#include "embedded/block_diagram/icons.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "tests/kernel/coreblock/core_block_icon_fixture.hpp"

#include <utility>

namespace gl::gti::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Another "imread" for a scope.
class Imread {
 public:
  explicit Imread(kmf::CvFunction function) { kmf::register_corvane_function("imread", std::move(function)); }
  Imread(const Imread&) = delete;
  Imread& operator=(const Imread&) = delete;
  ~Imread() { kmf::register_corvane_function("imread", *before_); }

 private:
  const std::shared_ptr<const kmf::CvFunction> before_ = embedded::scripting_runtime::find_function("imread");
};

const std::string gray_image = std::string("P5 2 1 255\n") + std::string{7, 8};

}  // namespace

TEST_F(CoreBlockIcon, TextIconIsFramedAndThenLabelled) {
  EXPECT_THAT(draw(block), ElementsAre("frame", "align 1 2", "move 50 30", "move 50 35", "text R", "align 0 3", "green",
                                       "left 0 +", "right 0 -", "-"));
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
      {u"a\n", {"move 50 30", "move 50 24", "text a", "move 50 35", "text "}},
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
  EXPECT_THAT(draw(block), ElementsAre("image 2x3 turning at 4", "green", "left 0 +", "right 0 -", "-"));
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
  setIcon(gray);
  EXPECT_THAT(warnings(),
              ElementsAre("InvalidIconFile(" + broken.string() + ")", "InvalidIconFile(" + broken.string() + ")",
                          "InvalidIconImageType(" + gray.string() + ")"));
  EXPECT_EQ(firstCall(), "frame");
  EXPECT_EQ(styleName(), "KinemoBlockWithBorder");
}

TEST_F(CoreBlockIcon, BadBitmapTakesTheFormerOneAway) {
  setIcon(folder.write("icon.ppm", colour_image));
  setIcon(folder.write("broken.png", "no image"));
  EXPECT_EQ(take_warnings().size(), 1u);
  EXPECT_EQ(firstCall(), "frame");
}

TEST_F(CoreBlockIcon, OnlyThreeLayersOfColourMakeABitmap) {
  using Shape = std::vector<std::size_t>;
  const std::string noImage = "InvalidIconFile(a.png)";
  const std::string otherImage = "InvalidIconImageType(a.png)";
  const std::pair<Shape, std::string> cases[] = {{{2, 3, 3}, ""},
                                                 {{2, 3}, otherImage},
                                                 {{2, 3, 4}, otherImage},
                                                 {{2, 3, 3, 2}, otherImage},
                                                 {{3, 3, 1, 3}, otherImage},
                                                 {{}, noImage}};
  for (const auto& [shape, warning] : cases) {
    const Imread reader([shape = shape](int, cvArray_tag** outputs, int, cvArray_tag**) {
      if (!shape.empty()) outputs[0] = cvCreateNumericArray(shape, cvUINT8_CLASS);
    });
    EXPECT_EQ(read_icon_bitmap("a.png") != nullptr, warning.empty()) << shape.size();
    EXPECT_EQ(warnings(), warning.empty() ? std::vector<std::string>{} : std::vector<std::string>{warning});
  }
  const Imread failing([](int, cvArray_tag**, int, cvArray_tag**) { throw 7; });
  EXPECT_EQ(read_icon_bitmap("a.png"), nullptr);
  EXPECT_THAT(warnings(), ElementsAre(noImage)) << "an error of any kind";
}

TEST_F(CoreBlockIcon, InterruptWaitsForReadingAndDrawing) {
  bool interruptible = true;
  const Imread reader([&](int, cvArray_tag** outputs, int, cvArray_tag**) {
    interruptible = kmf::interrupt_requested();
    outputs[0] = cvCreateNumericArray({2, 3, 3}, cvUINT8_CLASS);
  });
  embedded::scripting_runtime::request_interrupt(true);
  draw(block);
  setIcon("a.png");
  draw(block);
  EXPECT_FALSE(interruptible || window.interruptible);
  EXPECT_TRUE(kmf::interrupt_requested()) << "it counts afterwards";
  embedded::scripting_runtime::request_interrupt(false);
}

TEST_F(CoreBlockIcon, ChangesFromWhatTheFormerOneHasLeft) {
  const auto bitmap = folder.write("icon.ppm", colour_image);
  struct Step {
    boost::optional<std::filesystem::path> icon;
    bool styling;
    std::string drawn;  ///< in front of the labels; "" where the icon service draws
    std::string style;  ///< without a frame
    bool registered;    ///< a.svg
  };
  const boost::optional<std::filesystem::path> none;
  const std::filesystem::path svg = "a.svg";
  const std::string image = "image 2x3 turning at 4";
  const std::string border = "KinemoBlockWithBorder";
  const std::string bare = "KinemoBlockNoBorder";
  const Step steps[] = {
      {bitmap, false, image, bare, false},   // a bitmap
      {svg, false, image, bare, false},      // isn't taken away by a vector icon
      {svg, true, "", "a.svg", false},       // whose path doesn't change with the switch
      {none, true, "frame", border, false},  // path and image go
      {svg, false, "frame", bare, false},    // no image now
      {none, false, "frame", bare, false},   // so that the path stays
      {none, true, "", "a.svg", false},      // and is still the style
      {bitmap, true, image, bare, false},    // a bitmap
      {svg, true, "", "a.svg", true},        // and a new path
      {none, true, "frame", border, true},   // path and image go
      {bitmap, true, image, bare, true},     // a bitmap
      {none, false, "frame", border, true},  // by itself
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(&step - steps);
    icon_styling_switch() = step.styling;
    descriptor().iconFile(step.icon);
    EXPECT_EQ(check(block), "");
    const std::vector<std::string> calls = draw(block);
    EXPECT_EQ(calls.empty() ? "" : calls[0], step.drawn);
    descriptor().enableFrame(false);
    EXPECT_EQ(styleName(), step.style);
    descriptor().enableFrame(true);
    EXPECT_EQ(styleName(), step.drawn.empty() ? step.style : border);
    EXPECT_EQ(GTBlockIcon::isBlockIconRegistered(u"a.svg"), step.registered);
  }
}

TEST_F(CoreBlockIcon, ChangesAlsoWhenTheCheckFails) {
  const auto bitmap = folder.write("icon.ppm", colour_image);
  behaviour->check = [&](CoreBlockFacade&) {
    descriptor().iconFile(bitmap);
    kmf::throw_message("kinemo:test", "BadValue");
  };
  EXPECT_NE(check(block), "");
  EXPECT_EQ(firstCall(), "image 2x3 turning at 4");
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
  EXPECT_THAT(warnings(), ElementsAre("InvalidIconFile(" + file.string() + ")"));
}

TEST_F(CoreBlockIcon, LabelsOfAVectorIconAreDrawnByOneOfTheTwo) {
  icon_styling_switch() = true;
  setIcon("icon.svg");
  EXPECT_THAT(draw(block), IsEmpty());
  for (const char16_t* setting : {u"on", u"", u"OFF", u"off "}) {
    embedded::block_diagram::setIconSetting("KMDVGLabel", setting);
    EXPECT_THAT(draw(block), IsEmpty()) << utf8(setting);
  }
  embedded::block_diagram::setIconSetting("KMDVGLabel", u"off");
  EXPECT_THAT(draw(block), ElementsAre("green", "left 0 +", "right 0 -", "-"));
}

TEST_F(CoreBlockIcon, PortsAreLabelledInTheirOrderOnEachSide) {
  descriptor().addLeftPort("a", u"A", "liquid", u"");
  descriptor().addRightPort("b", u"", "liquid", u"");
  EXPECT_EQ(check(block), "");
  const std::vector<std::string> calls = draw(block);
  EXPECT_THAT(std::vector<std::string>(calls.end() - 6, calls.end()),
              ElementsAre("green", "left 0 +", "left 1 A", "right 0 -", "right 1 ", "-"));
  IconData data;
  block.setIconPortLabels(data);
  std::vector<std::string> labels;
  for (const IconData::PortLabel& port : data.portLabels()) {
    labels.push_back(std::to_string(port.side) + " " + std::to_string(port.index) + " " + utf8(port.label) + "|" +
                     utf8(port.second));
  }
  EXPECT_THAT(labels, ElementsAre("2 0 +|", "2 1 A|", "0 0 -|", "0 1 |"));
}

}  // namespace gl::gti::test
