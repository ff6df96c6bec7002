#pragma once

// What a block draws itself on.
//
// Glossary
//   window          a surface of the host, with a position, a foreground colour and a text alignment; lent for one drawing
//   bounds          the rectangle of a block in a window: x grows to the right, y downward, both in units of the diagram
//   line spacing    distance of two lines of text, in the same units
//   foreground      colour in which lines and texts are drawn
//   frame           the line around a block
//
// An implementation provides every operation declared here, and the drawing operations of `GTBlock`.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

class GTBlock;
struct GTWindow;

struct GTBounds {
  int left = 0;
  int top = 0;
  int right = 0;
  int bottom = 0;
};

/// Centre of the bounds, rounded toward zero.
KINEMO_PLATFORM_API int h_center(const GTBounds& bounds);
KINEMO_PLATFORM_API int v_center(const GTBounds& bounds);

/// A colour record, kept by pointer: it outlives the drawing that uses it.
struct GTColor {
  double red;    ///< 0 to 1
  double green;  ///< 0 to 1
  double blue;   ///< 0 to 1
  int palette;   ///< place in the host's palette; -1 for a colour of its own
  int flags;     ///< the host's; 0 for none
};

/// Which point of a text stands at the window's position.
enum GTHorizontalAlignment { GT_ALIGN_LEFT = 0, GT_ALIGN_CENTER = 1, GT_ALIGN_RIGHT = 2 };
enum GTVerticalAlignment { GT_ALIGN_TOP = 0, GT_ALIGN_MIDDLE = 1, GT_ALIGN_BOTTOM = 2, GT_ALIGN_BASELINE = 3 };

/// Where an image stands in its bounds, by rows from the upper left corner.
enum GTImageLocation {
  GT_IMAGE_TOP_LEFT = 0,
  GT_IMAGE_TOP = 1,
  GT_IMAGE_TOP_RIGHT = 2,
  GT_IMAGE_LEFT = 3,
  GT_IMAGE_CENTER = 4,
  GT_IMAGE_RIGHT = 5,
  GT_IMAGE_BOTTOM_LEFT = 6,
  GT_IMAGE_BOTTOM = 7,
  GT_IMAGE_BOTTOM_RIGHT = 8
};

/// A new window begins with GT_ALIGN_LEFT and GT_ALIGN_BASELINE.
KINEMO_PLATFORM_API void gt_wm_SetTextAlignment(GTWindow* window, int horizontal, int vertical);
KINEMO_PLATFORM_API int gt_wm_LineSpacing(GTWindow* window);
KINEMO_PLATFORM_API void gt_wm_MoveTo(GTWindow* window, int x, int y);
/// One line of text at the window's position, which stays.
KINEMO_PLATFORM_API void gt_wm_DrawString(GTWindow* window, const ustring& text);
KINEMO_PLATFORM_API void gt_wm_SetFGColorPtr(GTWindow* window, const GTColor* color);
/// Fills the bounds with the block's background and draws its frame.
KINEMO_PLATFORM_API void blk_frame_and_fill_icon(const GTBlock* block, GTWindow* window, const GTBounds& bounds);
