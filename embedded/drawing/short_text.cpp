#include "embedded/drawing/short_text.hpp"

namespace embedded::drawing {

ustring shortened(const ustring& text, std::size_t length) {
  if (text.size() <= length) return text;
  const auto splits_a_pair = [&](std::size_t at) {
    return text[at - 1] >= 0xD800 && text[at - 1] < 0xDC00 && text[at] >= 0xDC00 && text[at] < 0xE000;
  };
  if (length < 2) return ustring(length, u'\u2026');
  std::size_t head = length / 2;
  std::size_t tail = text.size() - (length - 1 - head);
  if (splits_a_pair(head)) --head;
  if (tail < text.size() && splits_a_pair(tail)) ++tail;
  return text.substr(0, head) + u"\u2026" + text.substr(tail);
}

ustring fitted(const ustring& text, double width, const std::function<double(const ustring&)>& width_of) {
  constexpr std::size_t longest = 64;
  constexpr std::size_t least = 3;
  ustring best = shortened(text, longest);
  if (width_of(best) <= width) return best;
  std::size_t fits = least - 1;
  std::size_t fails = best.size();
  best.clear();
  while (fails - fits > 1 && fits < fails) {
    const std::size_t length = (fits + fails) / 2;
    ustring candidate = shortened(text, length);
    const bool fit = width_of(candidate) <= width;
    (fit ? fits : fails) = length;
    if (fit) best = std::move(candidate);
  }
  return best;
}

}  // namespace embedded::drawing
