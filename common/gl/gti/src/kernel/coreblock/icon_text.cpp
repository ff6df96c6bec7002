#include "common/gl/gti/src/kernel/coreblock/icon_text.hpp"

#include <cstdint>

namespace gl::gti {

std::vector<ustring> text_lines(const ustring& text) {
  std::vector<ustring> lines;
  if (text.empty()) return lines;
  std::size_t begin = 0;
  for (std::size_t end; (end = text.find(u'\n', begin)) != ustring::npos; begin = end + 1)
    lines.push_back(text.substr(begin, end - begin));
  lines.push_back(text.substr(begin));
  return lines;
}

void draw_icon_text(GTWindow* window, const GTBounds& bounds, const ustring& text) {
  const std::vector<ustring> lines = text_lines(text);
  const int spacing = gt_wm_LineSpacing(window);
  const int x = h_center(bounds);
  const int y = v_center(bounds);
  gt_wm_MoveTo(window, x, y);
  const int half = static_cast<int>(lines.size()) / 2;
  int position = y + spacing / 2 - half * spacing;
  for (const ustring& line : lines) {
    // Windows of hosts have positions of 16 bits.
    gt_wm_MoveTo(window, x, static_cast<std::int16_t>(position));
    gt_wm_DrawString(window, line);
    position += spacing;
  }
}

}  // namespace gl::gti
