// The images of the domain's blocks, as they lie beside the module.

#include "embedded/block_diagram/icons.hpp"
#include "domains/physical/kinds.hpp"
#include "domains/physical/prepared_kind.hpp"
#include "embedded/block_diagram/placement.hpp"
#include "embedded/drawing/draw_block.hpp"
#include "embedded/drawing/icon_size.hpp"
#include "embedded/environment/vector_icons.hpp"
#include "platform/block_diagram/block.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/domains/physical/physical_fixture.hpp"
#include "tests/embedded/drawing/picture.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <set>

namespace kinemo::physical::test {

namespace {

namespace drawing = embedded::drawing;

std::filesystem::path folder() {
  return std::filesystem::path(KINEMO_PHYSICAL_MODULE).parent_path() / "icons" / "physical";
}

/// A block with the ports of a look, drawn by the icon service.
class Shown final : public GTBlock {
 public:
  explicit Shown(const gl::gti::BlockDescriptor& descriptor) : GTBlock("Part", nullptr) {
    setGrNumLeftConnectionPorts(static_cast<int>(descriptor.numLeftPorts()), nullptr);
    setGrNumRightConnectionPorts(static_cast<int>(descriptor.numRightPorts()), nullptr);
    style_ = kmf::utf8_string_to_ustring((folder() / descriptor.iconFile()->filename()).string());
    GTBlockIcon::registerBlockIconFromResource(style_, style_,
                                               {{u"Resize", u"FitToBlock"},
                                                {u"Geometric", u"Off"},
                                                {u"PreAdjustSize", u"CropToContent"},
                                                {u"StrokeScalingOnResize", u"NonScaling"}});
  }
  void getIconStyleName(gtsvString& out) const override { out = gtsvString(style_); }

 private:
  ustring style_;
};

class PhysicalIcons : public kinemo::test::NoLeaks {
 protected:
  ~PhysicalIcons() override { embedded::block_diagram::forgetIcons(); }

  static void expectLead(const drawing::test::Picture& picture, const Shown& block, const GTBounds& bounds, bool left,
                         int index) {
    const auto place = embedded::block_diagram::portPlace(block, bounds, left, index);
    EXPECT_EQ(std::fmod(place.y, 10), 0) << "not on the grid";
    const int x = static_cast<int>(place.x) - (left ? 0 : 1);
    EXPECT_LT(picture.at(x, static_cast<int>(place.y)) & 0xFF, 0x80u) << (left ? "left " : "right ") << index;
  }

  /// The image has lines to all ports.
  static void expectImage(const Look& look) {
    const Shown block(look.descriptor);
    const auto size = drawing::natural_size(block);
    ASSERT_TRUE(size);
    EXPECT_GT(size->width, 0);
    EXPECT_EQ(std::fmod(size->width, 10), 0);
    EXPECT_EQ(std::fmod(size->height, 10), 0);
    const GTBounds bounds{0, 0, static_cast<int>(size->width), static_cast<int>(size->height)};
    drawing::Canvas canvas(drawing::Format::Png, *size);
    drawing::draw_block(canvas, block, bounds);
    const drawing::test::Picture picture(canvas);
    for (int i = 0; i < block.getGrNumLeftConnectionPorts(); ++i) expectLead(picture, block, bounds, true, i);
    for (int i = 0; i < block.getGrNumRightConnectionPorts(); ++i) expectLead(picture, block, bounds, false, i);
  }

  static std::map<std::string, ustring> parameters(const BlockKind& kind, const Icon& icon) {
    std::map<std::string, ustring> values;
    if (kind.rule.port)
      values[kind.rule.parameter] = kmf::utf8_string_to_ustring(std::to_string(icon.ports ? icon.ports : 4));
    values["model_card"] = kmf::utf8_string_to_ustring(icon.device + " level=1");
    return values;
  }
};

/// Blocks of the module, with vector icons.
class PlacedIcons : public PhysicalTest {
 protected:
  PlacedIcons() { embedded::show_vector_icons(); }
  ~PlacedIcons() override {
    embedded::show_vector_icons(false);
    embedded::block_diagram::forgetIcons();
  }
};

std::string icon_of(const char* kind_name, const ustring& terminals, const ustring& card) {
  for (const BlockKind& kind : spice_kinds()) {
    if (kind.name != kind_name) continue;
    const auto look = PreparedKind(kind).look({{"terminals", terminals}, {"model_card", card}});
    return look->descriptor.iconFile()->filename();
  }
  return "no such kind";
}

}  // namespace

TEST_F(PhysicalIcons, HaveALeadToEveryPortOfEveryKind) {
  for (const BlockKind& kind : all_kinds()) {
    const PreparedKind prepared(kind);
    EXPECT_FALSE(kind.icons.empty()) << kind.name;
    for (const Icon& icon : kind.icons) {
      SCOPED_TRACE(kind.name + " " + icon.file);
      EXPECT_TRUE(std::filesystem::is_regular_file(folder() / icon.file));
      const bool any_count = kind.rule.port && icon.ports == 0;  // a box, which has no leads
      if (!any_count) expectImage(*prepared.look(parameters(kind, icon)));
    }
  }
}

TEST_F(PlacedIcons, AreFoundBesideTheModuleAndDrawn) {
  int at = 0;
  drawing::Canvas canvas(drawing::Format::Png, {100, 100});
  for (const BlockKind& kind : all_kinds()) {
    const GTBlock& block = place(kmf::utf8_string_to_ustring("b" + std::to_string(++at)), "physical/" + kind.name);
    EXPECT_TRUE(drawing::natural_size(block)) << kind.name;
    drawing::draw_block(canvas, block, {10, 10, 90, 90});  // a warning would fail the test
  }
}

TEST_F(PhysicalIcons, AreAllShown) {
  std::set<std::string> shown;
  for (const BlockKind& kind : all_kinds())
    for (const Icon& icon : kind.icons) shown.insert(icon.file);
  for (const auto& entry : std::filesystem::directory_iterator(folder()))
    EXPECT_EQ(shown.count(entry.path().filename()), 1u) << entry.path();
}

TEST_F(PhysicalIcons, TransistorsShowTheirPolarityAndTheirTerminals) {
  struct Case {
    const char* kind;
    const char16_t* terminals;
    const char16_t* card;
    const char* file;
  };
  const Case cases[] = {
      {"spice/bjt", u"3", u"npn bf=100", "npn_transistor.svg"},
      {"spice/bjt", u"4", u"  PNP(bf=100)", "pnp_transistor_substrate.svg"},
      {"spice/bjt", u"3", u"npnx", "bipolar_transistor.svg"},
      {"spice/bjt", u"5", u"npn", "box.svg"},
      {"spice/mosfet", u"3", u"pmos", "pmos.svg"},
      {"spice/mosfet", u"4", u"NMOS level=54", "nmos_bulk.svg"},
      {"spice/mosfet", u"3", u"", "mosfet.svg"},
      {"spice/jfet", u"", u"pjf", "pjfet.svg"},
      {"spice/mesfet", u"", u"nmf", "njfet.svg"},
      {"spice/vcvs", u"2", u"", "behavioral_voltage_output.svg"},
      {"spice/vcvs", u"6", u"", "box.svg"},
      {"spice/diode", u"3", u"d", "box.svg"},
  };
  for (const Case& row : cases) EXPECT_EQ(icon_of(row.kind, row.terminals, row.card), row.file);
}

}  // namespace kinemo::physical::test
