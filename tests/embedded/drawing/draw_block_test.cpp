#include "embedded/drawing/draw_block.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/icons.hpp"
#include "embedded/drawing/icon_look.hpp"
#include "embedded/drawing/icon_size.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/embedded/drawing/picture.hpp"
#include "tests/support/no_leaks.hpp"
#include "tests/support/temporary_folder.hpp"

#include <gmock/gmock.h>

#include <cmath>

namespace embedded::drawing::test {

namespace {

/// A block with a style name, and with labels at its ports; it draws a text in its centre.
class Part final : public GTBlock {
 public:
  explicit Part(int left = 1, int right = 1) : GTBlock("Part", nullptr) {
    setGrNumLeftConnectionPorts(left, nullptr);
    setGrNumRightConnectionPorts(right, nullptr);
  }

  void drawIcon(GTWindow* window, const GTBounds& bounds) const override {
    if (text.empty()) return;
    gt_wm_SetTextAlignment(window, GT_ALIGN_CENTER, GT_ALIGN_MIDDLE);
    gt_wm_MoveTo(window, h_center(bounds), v_center(bounds));
    gt_wm_DrawString(window, text);
  }
  void setIconPortLabels(IconData& icon) const override {
    if (!label.empty()) icon.setPortLabel(GT_ICON_LEFT, 0, label, second_label);
  }
  void getIconStyleName(gtsvString& out) const override { out = gtsvString(style); }
  bool usesPhysicalPortRotation() const override { return physical; }

  ustring style = u"KinemoBlockNoBorder";
  ustring text;
  ustring label;
  ustring second_label;
  bool physical = false;
};

/// A page of 40 x 40 with a red square of 20 in its upper left quarter's inner corner, a thick line of black on its
/// left.
const char* const graphics =
    "<?xml version='1.0'?>\n<!-- <svg> -->\n"
    "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
    "<rect x='10' y='10' width='20' height='20' fill='#ff0000'/>"
    "<path d='M11 10 V30' stroke='#000000' stroke-width='2'/></svg>";

class DrawBlock : public kinemo::test::NoLeaks {
 protected:
  ~DrawBlock() override { block_diagram::forgetIcons(); }

  void registerIcon(Part& part, const std::string& svg, std::map<ustring, ustring> styles) {
    const ustring file = kmf::utf8_string_to_ustring(folder.write("icon.svg", svg).string());
    GTBlockIcon::registerBlockIconFromResource(file, file, styles);
    part.style = file;
  }
  static Picture drawn(const GTBlock& block, const GTBounds& bounds, Size size) {
    Canvas canvas(Format::Png, size);
    draw_block(canvas, block, bounds);
    return Picture(canvas);
  }

  kinemo::test::TemporaryFolder folder;
  const std::map<ustring, ustring> fitted{{u"Resize", u"FitToBlock"},
                                          {u"Geometric", u"Off"},
                                          {u"PreAdjustSize", u"CropToContent"},
                                          {u"StrokeScalingOnResize", u"NonScaling"},
                                          {u"Clipping", u"None"}};
};

}  // namespace

TEST_F(DrawBlock, FrameFollowsTheStyleName) {
  Part part;
  EXPECT_EQ(drawn(part, {10, 10, 50, 30}, {60, 40}).ink().right, -1);
  part.style = u"KinemoBlockWithBorder";
  const Picture::Ink ink = drawn(part, {10, 10, 50, 30}, {60, 40}).ink();
  EXPECT_NEAR(ink.left, 10, 1);
  EXPECT_NEAR(ink.bottom, 30, 1);
  EXPECT_EQ(drawn(part, {50, 10, 10, 30}, {60, 40}).ink().right, -1) << "empty bounds";
}

TEST_F(DrawBlock, TextIsDrawnFarFromTheOriginToo) {
  Part part;
  part.text = u"MM";
  Canvas canvas(Format::Png, {40, 20});
  canvas.drawAt({-100000, -100000}, [&] { draw_block(canvas, part, {100000, 100000, 100040, 100020}); });
  const Picture::Ink ink = Picture(canvas).ink();
  EXPECT_NEAR(ink.left + ink.right, 40, 3);
  EXPECT_NEAR(ink.top + ink.bottom, 20, 3);
}

TEST_F(DrawBlock, VectorIconFillsTheBlockWithItsContent) {
  Part part;
  registerIcon(part, graphics, fitted);
  const Picture picture = drawn(part, {10, 10, 110, 60}, {120, 70});
  const Picture::Ink ink = picture.ink();
  EXPECT_NEAR(ink.left, 10, 2);
  EXPECT_NEAR(ink.right, 109, 1);
  EXPECT_NEAR(ink.top, 10, 1);
  EXPECT_NEAR(ink.bottom, 59, 1);
  EXPECT_EQ(picture.at(60, 35), 0xFF0000u);
}

TEST_F(DrawBlock, ShapesWithoutPaintAreContentToo) {
  Part part;
  registerIcon(
      part,
      "<svg xmlns='http://www.w3.org/2000/svg' width='60' height='40'><rect width='60' height='40' fill='none'/>"
      "<rect x='15' y='10' width='30' height='20'/></svg>",
      fitted);
  const Picture::Ink ink = drawn(part, {0, 0, 120, 120}, {120, 120}).ink();
  EXPECT_NEAR(ink.left, 30, 1);
  EXPECT_NEAR(ink.top, 30, 1);
  EXPECT_NEAR(ink.bottom, 89, 1);
}

TEST_F(DrawBlock, VectorIconStaysAsItsFileSaysWithoutStyles) {
  Part part;
  registerIcon(part, graphics, {});
  const Picture::Ink ink = drawn(part, {10, 10, 110, 60}, {120, 70}).ink();
  EXPECT_NEAR(ink.left, 50, 1) << "in the centre, at its own size";
  EXPECT_NEAR(ink.right, 69, 1);
}

TEST_F(DrawBlock, StylesTellHowTheIconLiesInTheBlock) {
  struct Case {
    std::map<ustring, ustring> styles;
    GTBounds bounds;
    Picture::Ink ink;
  };
  const std::pair<const ustring, ustring> fit{u"Resize", u"FitToBlock"};
  const std::pair<const ustring, ustring> crop{u"PreAdjustSize", u"CropToContent"};
  const Case cases[] = {
      {{fit}, {0, 0, 100, 50}, {37, 12, 62, 37}},                          // the page grows alike in both directions
      {{fit, crop}, {0, 0, 100, 50}, {25, 0, 74, 49}},                     // without its margin
      {{fit, {u"Geometric", u"Off"}}, {0, 0, 100, 50}, {25, 12, 74, 37}},  // fills the block
      {{}, {40, 40, 50, 50}, {40, 40, 49, 49}},                            // is cut at the block
      {{{u"Clipping", u"None"}}, {40, 40, 50, 50}, {35, 35, 54, 54}},      // or not
      {{fit, {u"Frame", u"On"}}, {10, 10, 90, 50}, {9, 9, 90, 50}},        // has a frame
  };
  for (const Case& row : cases) {
    Part part;
    registerIcon(part, graphics, row.styles);
    const Picture::Ink ink = drawn(part, row.bounds, {110, 60}).ink();
    const std::size_t number = static_cast<std::size_t>(&row - cases);
    EXPECT_NEAR(ink.left, row.ink.left, 1) << number;
    EXPECT_NEAR(ink.top, row.ink.top, 1) << number;
    EXPECT_NEAR(ink.right, row.ink.right, 1) << number;
    EXPECT_NEAR(ink.bottom, row.ink.bottom, 1) << number;
  }
}

TEST_F(DrawBlock, NaturalSizeIsThatOfThePage) {
  Part part;
  EXPECT_FALSE(natural_size(part)) << "no registered icon";
  const auto size_of = [&](const std::string& attributes) -> std::pair<double, double> {
    registerIcon(part, "<svg xmlns='http://www.w3.org/2000/svg' " + attributes + "/>", fitted);
    const auto size = natural_size(part);
    return size ? std::pair(size->width, size->height) : std::pair(0.0, 0.0);
  };
  EXPECT_EQ(size_of("width='60' height='40px' viewBox='0 0 6 4'"), std::pair(60.0, 40.0));
  EXPECT_EQ(size_of("width='1in' height='48pt'"), std::pair(96.0, 64.0));
  EXPECT_EQ(size_of("viewBox='5 5 30 20'"), std::pair(30.0, 20.0));
  EXPECT_EQ(size_of("width='80000' height='40000'"), std::pair(1000.0, 500.0)) << "much larger than any block";
  EXPECT_EQ(size_of("width='0' height='40'"), std::pair(0.0, 0.0)) << "none";
  EXPECT_EQ(size_of("width='1e9' height='40'"), std::pair(0.0, 0.0)) << "of no block";
  EXPECT_EQ(size_of("width='40' height='-40'"), std::pair(0.0, 0.0)) << "of no block";
  EXPECT_EQ(size_of("><g"), std::pair(0.0, 0.0)) << "not readable; that is told when it is drawn";
}

TEST_F(DrawBlock, StrokesKeepTheirWidthWhereTheyDoNotScale) {
  Part part;
  const auto width_of_line = [&](const std::map<ustring, ustring>& styles) {
    registerIcon(part, graphics, styles);
    const Picture picture = drawn(part, {0, 0, 200, 200}, {200, 200});
    int count = 0;
    for (int x = 0; x < 200; ++x) count += picture.at(x, 100) == 0;
    return count;
  };
  std::map<ustring, ustring> styles = fitted;
  // The line stands at a twentieth of 200, two units wide, of which ten make one unit of the file.
  EXPECT_NEAR(width_of_line(styles), 2, 1);
  styles[u"StrokeScalingOnResize"] = u"Scaling";
  EXPECT_NEAR(width_of_line(styles), 20, 2);
}

TEST_F(DrawBlock, StrokesBecomeEquallyWideInAllFiles) {
  Part part;
  std::map<ustring, ustring> styles = fitted;
  styles[u"PreAdjustStrokeWidth"] = u"Normalized";
  for (const char* stroke : {"", "stroke-width='0.1'", "stroke-width='4'", "style='stroke-width:2.5'"}) {
    registerIcon(part,
                 std::string("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40' viewBox='0 0 20 20'>"
                             "<path d='M0 0 H20 M0 10 H20 M0 20 H20' stroke='#000000' ") +
                     stroke + "/></svg>",
                 styles);
    Canvas canvas(Format::Png, {100, 100}, 4);
    draw_block(canvas, part, {0, 0, 100, 100});
    const Picture picture(canvas);
    int dark = 0;
    for (int y = 100; y < 300; ++y) dark += (picture.at(200, y) & 0xFF) < 0x80;
    EXPECT_NEAR(dark, 6, 1) << stroke;
  }
}

TEST_F(DrawBlock, TextsKeepTheirSizeWhereItIsConstant) {
  const auto width_of_text = [&](const ustring& style, const char* attributes) {
    Part part;
    std::map<ustring, ustring> styles = fitted;
    styles[u"TextScalingOnResize"] = style;
    registerIcon(part,
                 std::string("<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
                             "<rect width='40' height='40' fill='none'/><text font-size='10' text-anchor='middle' ") +
                     attributes + ">HH</text></svg>",
                 styles);
    const Picture::Ink ink = drawn(part, {0, 0, 160, 40}, {160, 40}).ink();
    if (style == u"Constant") {
      EXPECT_NEAR(ink.left + ink.right, 160, 4) << attributes;
    }
    return ink.right - ink.left;
  };
  for (const char* attributes : {"x='20' y='25'", "y = '5' transform='translate(20 20)'"}) {
    const int constant = width_of_text(u"Constant", attributes);
    EXPECT_LT(constant, 20);
    EXPECT_NEAR(width_of_text(u"Scaling", attributes), 4 * constant, 8);
  }
}

TEST_F(DrawBlock, VectorIconTurnsWithTheBlockWhereItsStyleSaysSo) {
  Part part;
  block_diagram::setProperty(part, "Rotation", u"90");
  std::map<ustring, ustring> styles = fitted;
  styles[u"StrokeScalingOnResize"] = u"Scaling";
  registerIcon(part, graphics, styles);
  EXPECT_EQ(drawn(part, {0, 0, 40, 80}, {40, 80}).at(2, 40), 0u) << "the line stays on the left";
  styles[u"Rotate"] = u"On";
  registerIcon(part, graphics, styles);
  const Picture turned = drawn(part, {0, 0, 40, 80}, {40, 80});
  EXPECT_EQ(turned.at(20, 3), 0u) << "the line of the left stands on top";
  EXPECT_EQ(turned.at(3, 40), 0xFF0000u);
  block_diagram::setProperty(part, "Mirror", u"on");
  const Picture both = drawn(part, {0, 0, 40, 80}, {40, 80});
  EXPECT_EQ(both.at(20, 77), 0u) << "mirrored, the line stands on the right before the block turns";
}

TEST_F(DrawBlock, BlackTakesTheColourOfMostPorts) {
  Part part(1, 2);
  gtSetPortDomainPortType(part.getGrLeftConnectionPort(0), "test.liquid");
  gtSetPortDomainPortType(part.getGrRightConnectionPort(0), "test.heat");
  gtSetPortDomainPortType(part.getGrRightConnectionPort(1), "test.heat");
  std::map<ustring, ustring> styles = fitted;
  styles[u"Foreground"] = u"PortStyled";
  styles[u"StrokeScalingOnResize"] = u"Scaling";
  registerIcon(part, graphics, styles);
  const GTColor color = port_color("test.heat");
  const auto byte = [](double share) { return static_cast<std::uint32_t>(std::lround(255 * share)); };
  const Picture picture = drawn(part, {0, 0, 80, 80}, {80, 80});
  EXPECT_EQ(picture.at(3, 40), byte(color.red) << 16 | byte(color.green) << 8 | byte(color.blue));
  EXPECT_EQ(picture.at(40, 40), 0xFF0000u) << "other colours stay";
  EXPECT_FALSE(majority_color(Part(0, 0)));
}

TEST_F(DrawBlock, PortsOfThePhysicalDomainsHaveDifferentColours) {
  std::set<std::tuple<double, double, double>> colors;
  for (const char* type : {"electrical", "rotational", "translational", "thermal"}) {
    const GTColor color = port_color(std::string("physical.") + type);
    colors.emplace(color.red, color.green, color.blue);
  }
  EXPECT_EQ(colors.size(), 4u);
}

TEST_F(DrawBlock, ServiceDrawsLabelsBesideTheLeadsUnlessTheSettingIsOff) {
  Part part;
  part.label = u"HHH";
  registerIcon(part, "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'/>", fitted);
  const Picture::Ink above = drawn(part, {0, 0, 80, 40}, {80, 40}).ink();
  EXPECT_NEAR(above.left, 3, 1) << "at the left port";
  EXPECT_GT(above.top, 8);
  EXPECT_LT(above.bottom, 20) << "above the lead";
  part.second_label = u"HHH";
  EXPECT_GT(drawn(part, {0, 0, 80, 40}, {80, 40}).ink().right, 2 * above.right);
  part.second_label.clear();
  block_diagram::setProperty(part, "Rotation", u"90");
  const Picture::Ink beside = drawn(part, {0, 0, 80, 40}, {80, 40}).ink();
  EXPECT_GT(beside.left, 40) << "right of the lead on top";
  EXPECT_LT(beside.bottom, 12);
  block_diagram::setIconSetting("KMDVGLabel", u"off");
  EXPECT_EQ(drawn(part, {0, 0, 80, 40}, {80, 40}).ink().right, -1);
}

TEST_F(DrawBlock, IconThatCannotBeDrawnCostsOneWarningAndLeavesAFrame) {
  for (const char* contents :
       {"no graphics", "", "<svg xmlns='http://www.w3.org/2000/svg'><g>",
        "<svg xmlns='http://www.w3.org/2000/svg' width='0' height='40'><path d='M0 5 H9'/></svg>"}) {
    Part part;
    registerIcon(part, contents, fitted);
    Canvas canvas(Format::Png, {60, 80});
    draw_block(canvas, part, {10, 10, 50, 30});
    draw_block(canvas, part, {10, 50, 50, 70});
    EXPECT_THAT(take_warnings(), testing::ElementsAre("kinemo:host:drawing:CannotDrawIcon")) << contents;
    EXPECT_NEAR(Picture(canvas).ink().bottom, 70, 1);
  }
}

TEST_F(DrawBlock, IconsOfOddSizesLeaveTheRestOfThePageIntact) {
  const auto page = [](const char* attributes, const char* contents) {
    return std::string("<svg xmlns='http://www.w3.org/2000/svg' ") + attributes + ">" + contents + "</svg>";
  };
  const std::string line = "<path d='M0 5 H10' stroke='black'/>";
  for (const std::string& svg :
       {page("width='1e-30' height='1e-30'", line.c_str()), page("width='1e30' height='1e30'", line.c_str()),
        page("width='40' height='40' viewBox='0 0 1e-30 1e30'", line.c_str()),
        page("width='40' height='40'", "<path d='M0 5 H10' stroke='black' stroke-width='1e-300'/>"),
        page("width='40' height='40'", "<path d='M0 5 H1e-30' stroke='black' stroke-width='1e-30'/>"),
        page("width='40' height='40'", "<rect width='1e30' height='1' fill='none'/>"), page("", "")}) {
    Part part;
    std::map<ustring, ustring> styles = fitted;
    styles[u"PreAdjustStrokeWidth"] = u"Normalized";
    styles[u"TextScalingOnResize"] = u"Constant";
    registerIcon(part, svg, styles);
    Canvas canvas(Format::Png, {60, 80});
    draw_block(canvas, part, {10, 10, 50, 30});
    canvas.drawFrame({10, 50, 50, 70});
    EXPECT_NEAR(Picture(canvas).ink().bottom, 70, 1) << svg;
  }
}

TEST_F(DrawBlock, FilesThatAreNotThereCostAWarningToo) {
  Part part;
  for (const std::string& file : {(folder.path() / "missing.svg").string(), folder.path().string()}) {
    part.style = kmf::utf8_string_to_ustring(file);
    GTBlockIcon::registerBlockIconFromResource(part.style, part.style, fitted);
    EXPECT_FALSE(natural_size(part));
    EXPECT_NEAR(drawn(part, {10, 10, 50, 30}, {60, 40}).ink().right, 50, 1);
    EXPECT_THAT(take_warnings(), testing::ElementsAre("kinemo:host:drawing:CannotDrawIcon")) << file;
  }
}

TEST_F(DrawBlock, TextsOfAnyScriptAreDrawnAsTheyStand) {
  // Markup, Arabic, Hebrew, Chinese, a combining sequence, half of a surrogate pair, a direction mark, a control
  // character.
  for (const char16_t* text : {u"<b>&amp;</i>", u"\u0645\u0642\u0627\u0648\u0645", u"\u05E0\u05D2\u05D3",
                               u"\u96FB\u963B", u"e\u0301", u"\xD83D?", u"\u202Eabc", u"a\u0001b"}) {
    Part part;
    part.text = part.label = text;
    registerIcon(part, graphics, fitted);
    EXPECT_GE(drawn(part, {0, 0, 120, 40}, {120, 40}).ink().right, 0) << kmf::ustring_to_utf8_string(part.text);
    part.style = u"KinemoBlockNoBorder";
    const Picture::Ink ink = drawn(part, {0, 0, 120, 40}, {120, 40}).ink();
    EXPECT_NEAR(ink.left + ink.right, 120, 8) << kmf::ustring_to_utf8_string(part.text);
  }
}

TEST_F(DrawBlock, IconOfWhichTheServiceKnowsNothingLeavesAFrame) {
  Part part;
  part.style = u"unknown.svg";
  EXPECT_NEAR(drawn(part, {10, 10, 50, 30}, {60, 40}).ink().right, 50, 1);
}

TEST_F(DrawBlock, SubsystemShowsTheNamesOfItsPorts) {
  block_diagram::Diagram& diagram = block_diagram::Diagram::create("m");
  GTBlock& subsystem = diagram.root().addSubsystem(u"s");
  block_diagram::contents(subsystem)->addPort(u"HHH", block_diagram::Side::Right, 1);
  const Picture picture = drawn(subsystem, {10, 10, 110, 50}, {120, 60});
  int dark = 0;
  for (int x = 85; x < 107; ++x) dark += picture.at(x, 30) != 0xFFFFFF;
  EXPECT_GT(dark, 5);
  EXPECT_EQ(picture.at(40, 30), 0xFFFFFFu);
  block_diagram::Diagram::close(diagram);
}

}  // namespace embedded::drawing::test
