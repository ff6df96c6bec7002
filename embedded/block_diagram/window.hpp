#pragma once

#include "platform/block_diagram/window.hpp"
#include "platform/scripting_array/scripting_array.hpp"

/// A window of this host: what the drawing operations of the platform end in.
struct GTWindow {
  virtual ~GTWindow();

  virtual void setTextAlignment(int horizontal, int vertical) = 0;
  virtual int lineSpacing() = 0;
  virtual void moveTo(int x, int y) = 0;
  virtual void drawString(const ustring& text) = 0;
  virtual void setForeground(const GTColor& color) = 0;
  virtual void frameAndFill(const GTBlock& block, const GTBounds& bounds) = 0;
  /// `image` is an array of rows x columns x 3; `location` a GTImageLocation.
  virtual void drawImage(const GTBlock& block, const cvArray_tag* image, const GTBounds& bounds, bool rotate,
                         int location) = 0;
  /// A label inside of the bounds, beside the port `index` of a side.
  virtual void drawPortLabel(const GTBlock& block, const GTBounds& bounds, bool left, int index,
                             const ustring& label) = 0;
};
