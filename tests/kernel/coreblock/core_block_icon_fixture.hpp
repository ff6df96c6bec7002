#pragma once

// A core block whose icon a test changes, and a window that remembers what it draws.

#include "common/gl/gti/src/kernel/coreblock/icon_styling.hpp"
#include "embedded/block_diagram/window.hpp"
#include "platform/block_diagram/icon.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"
#include "tests/support/temporary_folder.hpp"

#include <filesystem>
#include <string>
#include <vector>

namespace gl::gti::test {

inline std::string utf8(const ustring& text) {
  return kmf::ustring_to_utf8_string(text);
}

/// The colour of the port labels, by all of its record; another one by a dash.
inline std::string colour_name(const GTColor& color) {
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

/// Two rows of three pixels whose red counts from 1 along the rows.
inline const std::string colour_image =
    std::string("P6 3 2 255\n") + std::string{1, 0, 0, 2, 0, 0, 3, 0, 0, 4, 0, 0, 5, 0, 0, 6, 0, 0};

constexpr GTBounds bounds{0, 0, 100, 60};

/// A block x that shows a text icon R, with the port p on the left and n on the right.
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

}  // namespace gl::gti::test
