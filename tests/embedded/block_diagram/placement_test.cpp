#include "embedded/block_diagram/placement.hpp"

#include "tests/embedded/block_diagram/host_fixture.hpp"

namespace host_tests {

namespace {

/// A block with two ports on the left and one on the right.
class Placed final : public GTBlock {
 public:
  explicit Placed(bool physical) : GTBlock("Placed", nullptr), physical_(physical) {
    setGrNumLeftConnectionPorts(2, nullptr);
    setGrNumRightConnectionPorts(1, nullptr);
  }
  bool usesPhysicalPortRotation() const override { return physical_; }

 private:
  bool physical_;
};

std::string place(const GTBlock& block, bool left, int index) {
  const PortPlace at = portPlace(block, {10, 20, 50, 100}, left, index);
  const std::string away = at.away_x < 0 ? "left" : at.away_x > 0 ? "right" : at.away_y < 0 ? "up" : "down";
  return std::to_string(static_cast<int>(at.x)) + " " + std::to_string(static_cast<int>(at.y)) + " " + away;
}

}  // namespace

TEST(Placement, PortsAreMirroredAndTurnWithTheClock) {
  struct Case {
    const char16_t* rotation;
    const char16_t* mirror;
    bool physical;
    const char* first;
    const char* second;
    const char* right;
  };
  // Two ports divide the left edge in quarters.
  const Case cases[] = {
      {u"0", u"off", true, "10 40 left", "10 80 left", "50 60 right"},
      {u"90", u"off", true, "40 20 up", "20 20 up", "30 100 down"},
      {u"90", u"off", false, "20 20 up", "40 20 up", "30 100 down"},
      {u"180", u"off", true, "50 80 right", "50 40 right", "10 60 left"},
      {u"180", u"off", false, "50 40 right", "50 80 right", "10 60 left"},
      {u"270", u"off", true, "20 100 down", "40 100 down", "30 20 up"},
      {u"0", u"on", true, "50 40 right", "50 80 right", "10 60 left"},
      {u"90", u"on", true, "40 100 down", "20 100 down", "30 20 up"},
      {u"90", u"on", false, "20 100 down", "40 100 down", "30 20 up"},
      {u"45", u"off", true, "10 40 left", "10 80 left", "50 60 right"},
  };
  for (const Case& row : cases) {
    Placed block(row.physical);
    setProperty(block, "Rotation", row.rotation);
    setProperty(block, "Mirror", row.mirror);
    EXPECT_EQ(place(block, true, 0), row.first);
    EXPECT_EQ(place(block, true, 1), row.second);
    EXPECT_EQ(place(block, false, 0), row.right);
  }
}

TEST(Placement, PositionIsReadWhereItIsFourNumbers) {
  Placed block(true);
  EXPECT_FALSE(position(block));
  for (const char16_t* bad : {u"", u"[1 2 3]", u"[a b c d]", u"[1 2 3 nan]"}) {
    setProperty(block, "Position", bad);
    EXPECT_FALSE(position(block));
  }
  setProperty(block, "Position", u"[-10.4, 20 1e30 40.6]");
  const auto bounds = position(block);
  ASSERT_TRUE(bounds);
  EXPECT_EQ(bounds->left, -10);
  EXPECT_EQ(bounds->top, 20);
  EXPECT_EQ(bounds->right, 1000000000);
  EXPECT_EQ(bounds->bottom, 41);
}

}  // namespace host_tests
