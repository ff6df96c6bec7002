#include "common/gl/gti/src/kernel/block_model/path_text.hpp"

#include <cstddef>

namespace gl::gti {

namespace {

constexpr char16_t separator = u'/';
constexpr std::size_t none = std::u16string_view::npos;

/// The first separator at or behind `start`, in a text that begins a component at `start`.
std::size_t nextSeparator(std::u16string_view text, std::size_t start) {
  for (std::size_t at = text.find(separator, start); at != none; at = text.find(separator, at)) {
    std::size_t end = text.find_first_not_of(separator, at);
    if (end == none) end = text.size();
    if (at > start && (end - at) % 2 == 1) return at;
    at = end;
  }
  return none;
}

}  // namespace

std::u16string_view parent_text(std::u16string_view text) {
  if (text.empty()) return {};
  std::size_t from = text.size() - 1;
  for (;;) {
    const std::size_t at = text.rfind(separator, from);
    if (at == none) return {};
    if (at == 0 || text[at - 1] != separator) return text.substr(0, at);
    from = at >= 2 ? at - 2 : 0;
  }
}

std::u16string_view front_text(std::u16string_view text) {
  return text.substr(0, nextSeparator(text, 0));
}

std::u16string_view rest_text(std::u16string_view text) {
  const std::size_t at = nextSeparator(text, 0);
  return at == none ? std::u16string_view() : text.substr(at + 1);
}

std::u16string_view back_text(std::u16string_view text) {
  return split_last(text).second;
}

std::pair<std::u16string_view, std::u16string_view> split_last(std::u16string_view text) {
  for (;;) {
    const std::u16string_view parent = parent_text(text);
    if (parent.empty()) return {parent, text};
    const std::u16string_view name = text.substr(parent.size() + 1);
    if (!name.empty()) return {parent, name};
    text = parent;
  }
}

std::vector<std::u16string_view> split_path_text(std::u16string_view text) {
  std::vector<std::u16string_view> components;
  std::size_t start = 0;
  while (start < text.size()) {
    const std::size_t at = nextSeparator(text, start);
    if (at == none) {
      components.push_back(text.substr(start));
      break;
    }
    components.push_back(text.substr(start, at - start));
    start = at + 1;
  }
  return components;
}

}  // namespace gl::gti
