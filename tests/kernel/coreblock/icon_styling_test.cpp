#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"

#include "tests/kernel/coreblock/core_block_icon_fixture.hpp"

#include <cstdio>
#include <cstdlib>

namespace gl::gti::test {

namespace {

using testing::IsEmpty;

class IconStyling : public CoreBlockIcon {};

}  // namespace

TEST_F(IconStyling, VectorIconIsRegisteredWithItsStyles) {
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

TEST_F(IconStyling, RotationOfAVectorIconFollowsNewPathsOnly) {
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

TEST_F(IconStyling, RegisteredIconIsRegisteredAgainForAnotherRotationOnly) {
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

TEST_F(IconStyling, VectorGraphicsAreKnownByTheirExactExtension) {
  for (const char* name : {"a.svg", "/b.c/a.x.svg"}) EXPECT_TRUE(is_svg(std::filesystem::path(name))) << name;
  for (const char* name : {"a.SVG", "a.svgz", "svg", ".svg", "a.svg/b", ""})
    EXPECT_FALSE(is_svg(std::filesystem::path(name))) << name;
  EXPECT_FALSE(is_svg(boost::none));
}

TEST_F(IconStyling, PreferenceIsAskedOnceForTheFirstStylesThatAreMade) {
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
    std::filesystem::remove_all(folder.path());
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
