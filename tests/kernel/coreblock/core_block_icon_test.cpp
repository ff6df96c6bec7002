#include "common/gl/gti/src/kernel/coreblock/icon_bitmap.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "common/gl/gti/src/kernel/coreblock/icon_text.hpp"
#include "embedded/block_diagram/icons.hpp"
#include "embedded/block_diagram/window.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace gl::gti::test {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string utf8(const ustring& text) {
  return kmf::ustring_to_utf8_string(text);
}

/// The colour of the port labels, by all of its record; another one by a dash.
std::string colour_name(const GTColor& color) {
  const bool labels =
      color.red == 0.0 && color.green == 1.0 && color.blue == 0.0 && color.palette == -1 && color.flags == 0;
  return labels ? "green" : "-";
}

/// Remembers what a block draws, as texts.
struct RecordingWindow final : GTWindow {
  void setTextAlignment(int horizontal, int vertical) override {
    note("align " + std::to_string(horizontal) + " " + std::to_string(vertical));
  }
  int lineSpacing() override { return spacing; }
  void moveTo(int x, int y) override { note("move " + std::to_string(x) + " " + std::to_string(y)); }
  void drawString(const ustring& text) override { note("text " + utf8(text)); }
  void setForeground(const GTColor& color) override { note(colour_name(color)); }
  void frameAndFill(const GTBlock&, const GTBounds&) override { note("frame"); }
  void drawImage(const GTBlock&, const cvArray_tag* image, const GTBounds&, bool rotate, int location) override {
    const auto& size = cvGetDimensions(image);
    note("image " + std::to_string(size[0]) + "x" + std::to_string(size[1]) + (rotate ? " turning" : "") + " at " +
         std::to_string(location));
    scope = cvGetArrayScope(image);
    first = cvGetElement(image, 1);
  }
  void drawPortLabel(const GTBlock&, const GTBounds&, bool left, int index, const ustring& label) override {
    note((left ? "left " : "right ") + std::to_string(index) + " " + utf8(label));
  }
  void note(const std::string& call) {
    calls.push_back(call);
    interruptible |= kmf::interrupt_requested();
  }

  int spacing = 11;
  std::vector<std::string> calls;
  bool interruptible = false;  ///< whether a call saw the user's request to stop
  int scope = -1;              ///< of the last image
  double first = 0;            ///< second element of the last image: the first one's neighbour down the column
};

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
  /// The warnings up to now, each as "id(argument)".
  std::vector<std::string> warnings() {
    std::vector<std::string> texts;
    for (const kmf::Message& warning : take_warning_messages()) {
      const kmf::MessageId& id = warning.identifier();
      EXPECT_EQ(id.group, "kinemo:common:gl:gti:core_block");
      texts.push_back(id.id + "(" + kmf::argument_text(id.arguments.at(0)) + ")");
    }
    return texts;
  }

  kinemo::test::TemporaryFolder folder;
  RecordingWindow window;
  CoreBlock& block;
};

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

TEST_F(CoreBlockIcon, RegisteredIconIsRegisteredAgainForAnotherRotationOnly) {
  icon_styling_switch() = true;
  struct Case {
    IconStyles before;
    bool rotate;
    bool again;
  };
  const IconStyles on{{u"Frame", u"kept"}, {u"Rotate", u"On"}};
  const IconStyles off{{u"Frame", u"kept"}, {u"Rotate", u"Off"}};
  const IconStyles neither{{u"Frame", u"kept"}};
  const Case cases[] = {{on, true, false},   {on, false, true},     {off, true, true},
                        {off, false, false}, {neither, true, true}, {neither, false, true}};
  for (const Case& test : cases) {
    const ustring key = kmf::utf8_string_to_ustring(std::to_string(&test - cases) + ".svg");
    GTBlockIcon::registerBlockIconFromResource(key, u"elsewhere.svg", test.before);
    descriptor().rotateImage(test.rotate);
    setIcon(utf8(key));
    const GTIconResource& resource = *GTBlockIcon::findResource(key);
    EXPECT_EQ(resource.file, test.again ? key : u"elsewhere.svg") << utf8(key);
    EXPECT_EQ(resource.styles, test.rotate ? on : off) << utf8(key);
  }
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

TEST_F(CoreBlockIcon, VectorGraphicsAreKnownByTheirExactExtension) {
  for (const char* name : {"a.svg", "/b.c/a.x.svg"}) EXPECT_TRUE(is_svg(std::filesystem::path(name))) << name;
  for (const char* name : {"a.SVG", "a.svgz", "svg", ".svg", "a.svg/b", ""})
    EXPECT_FALSE(is_svg(std::filesystem::path(name))) << name;
  EXPECT_FALSE(is_svg(boost::none));
}

TEST_F(CoreBlockIcon, PreferenceIsAskedOnceForTheFirstStylesThatAreMade) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";  // a process in which nobody has asked yet
  const auto ask = [this] {
    int asked = 0;
    const auto icon = [&](const char* file) {
      setIcon(file);
      std::fprintf(stderr, "%s: asked %d\n", file, asked);
    };
    kmf::register_corvane_function("verdane.internal.enableIconStyling",
                                   [&](int, cvArray_tag** outputs, int, cvArray_tag**) {
                                     ++asked;
                                     outputs[0] = cvCreateLogicalScalar(false);
                                   });
    icon("off.svg");
    icon_styling_switch() = true;
    GTBlockIcon::registerBlockIconFromResource(u"known.svg", u"known.svg", {});
    for (const char* file : {"known.svg", "new.svg", "newer.svg"}) icon(file);
    for (const auto& row : GTBlockIcon::findResource(u"newer.svg")->styles)
      std::fprintf(stderr, "%s ", utf8(row.first).c_str());
    std::_Exit(0);
  };
  EXPECT_EXIT(ask(), testing::ExitedWithCode(0),
              "off.svg: asked 0\nknown.svg: asked 0\nnew.svg: asked 1\nnewer.svg: asked 1\n"
              "Clipping Frame Geometric PreAdjustSize PreAdjustStrokeWidth Resize Rotate StrokeScalingOnResize "
              "TextScalingOnResize $");
}

TEST(IconStylingPreference, EndsTheProcessWhereTheCallFails) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";  // a process in which nobody has asked yet
  EXPECT_DEATH(icon_styling_preference(), "Call to icon style preference failed\\.");
}

}  // namespace gl::gti::test
