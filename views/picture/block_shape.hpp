// How large a block is drawn, where its ports stand, and what is written beside it.
#pragma once

#include "embedded/drawing/text_measure.hpp"
#include "views/layout/layout.hpp"

#include "platform/foundation/ustring.hpp"

#include <vector>

class GTBlock;
class gtPort;

namespace kinemo::views::picture {

/// One line of text beside a block.
struct Caption {
  ustring text;
  layout::Point at;  ///< relative to the block's corner
  int horizontal;    ///< alignment, as the platform's windows have it
  int vertical;
  double share;  ///< of the font's size
  bool faint;
};

struct BlockShape {
  const GTBlock* block = nullptr;
  layout::Box box;             ///< fixed where the block says its position
  std::vector<gtPort*> ports;  ///< by the box's pins
  std::vector<Caption> captions;
};

/// Blocks with an icon have its size, others have room for their ports, labels and text. Lives for one picture.
class ShapeMaker {
 public:
  BlockShape make(const GTBlock& block);
  /// Of a text beside a stub.
  layout::Size label_size(const ustring& text);
  /// Of a name beside a line.
  layout::Size net_name_size(const ustring& text);
  layout::Size text_size(const ustring& text, double share) { return measure_(text, share); }

 private:
  layout::Size size_of(const GTBlock& block);
  layout::Size size_by_texts(const GTBlock& block);
  double text_width(const GTBlock& block);
  void add_captions(BlockShape& shape);
  void add_caption(BlockShape& shape, const ustring& text, bool beside, double share, bool faint);

  embedded::drawing::TextMeasure measure_;
};

/// Between a block and its captions.
constexpr double caption_distance = 4;

/// Font of labels at stubs, as a share.
constexpr double stub_share = 0.85;
/// Font of names beside lines.
constexpr double net_name_share = 0.75;

/// The sign of an I/O port: a box with a point toward the inside of its subsystem.
bool points_right(const GTBlock& io_port);

}  // namespace kinemo::views::picture
