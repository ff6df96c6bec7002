#include "embedded/block_diagram/paths.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <cstdint>

namespace embedded::block_diagram {

namespace {

char16_t plain(char16_t unit) {
  return unit == u'\n' ? u' ' : unit;
}

/// Names from the front, slashes paired from the front. Differs from `splitPath` for odd runs of slashes only.
std::vector<ustring> splitFromFront(const ustring& path) {
  std::vector<ustring> names(1);
  for (std::size_t i = 0; i < path.size(); ++i) {
    const bool slash = path[i] == u'/';
    if (slash && i + 1 < path.size() && path[i + 1] == u'/') {
      names.back() += u'/';
      ++i;
    } else if (slash) {
      names.emplace_back();
    } else {
      names.back() += path[i];
    }
  }
  return names;
}

GTBlock* descend(const System& top, const std::vector<ustring>& names, std::size_t first) {
  const System* system = &top;
  GTBlock* block = nullptr;
  for (std::size_t i = first; i < names.size(); ++i) {
    if (!system) return nullptr;
    block = system->find(names[i]);
    if (!block) return nullptr;
    system = contents(*block);
  }
  return block;
}

/// Applies `find` to the two readings of a path, which are the same but for odd runs of slashes.
template <class Find>
auto byEitherReading(const ustring& path, Find find) {
  const std::vector<ustring> names = splitPath(path);
  const auto found = find(names);
  if (found || path.find(u"///") == ustring::npos) return found;
  return find(splitFromFront(path));
}

}  // namespace

ustring escapedName(const ustring& name) {
  ustring escaped;
  escaped.reserve(name.size());
  for (const char16_t unit : name) {
    if (unit == u'/') escaped += u'/';
    escaped += unit;
  }
  return escaped;
}

std::vector<ustring> splitPath(const ustring& path) {
  std::vector<ustring> names(1);
  for (std::size_t i = path.size(); i-- > 0;) {
    const bool slash = path[i] == u'/';
    if (slash && i > 0 && path[i - 1] == u'/') {
      names.back() += u'/';
      --i;
    } else if (slash) {
      names.emplace_back();
    } else {
      names.back() += path[i];
    }
  }
  for (ustring& name : names) std::reverse(name.begin(), name.end());
  std::reverse(names.begin(), names.end());
  return names;
}

ustring fullPath(const System* system, const GTBlock* block) {
  std::vector<const ustring*> names;
  if (block) names.push_back(&block->getGrName());
  while (system && system->owner()) {
    names.push_back(&system->owner()->getGrName());
    system = system->owner()->host().system;
  }
  ustring path;
  if (system) path = kmf::utf8_string_to_ustring(system->diagram().name());
  for (std::size_t i = names.size(); i-- > 0;) {
    if (!path.empty()) path += u'/';
    path += escapedName(*names[i]);
  }
  return path;
}

GTBlock* findBelow(const System& top, const ustring& path) {
  return byEitherReading(path, [&](const std::vector<ustring>& names) { return descend(top, names, 0); });
}

GantrelObject* findByPath(const ustring& path) {
  return byEitherReading(path, [](const std::vector<ustring>& names) -> GantrelObject* {
    Diagram* diagram = Diagram::find(kmf::ustring_to_utf8_string(names.front()));
    if (!diagram) return nullptr;
    if (names.size() == 1) return diagramObject(*diagram);
    return descend(diagram->root(), names, 1);
  });
}

DeadEnd deadEnd(const System& top, const std::vector<ustring>& names, std::size_t first) {
  DeadEnd end{&top, first, nullptr};
  for (; end.name + 1 < names.size(); ++end.name) {
    const GTBlock* block = end.system->find(names[end.name]);
    if (!block) break;
    const System* inside = contents(*block);
    if (!inside) return {end.system, end.name + 1, block};
    end.system = inside;
  }
  return end;
}

std::size_t NameHash::operator()(std::u16string_view name) const noexcept {
  std::uint64_t hash = 0xcbf29ce484222325u;
  for (const char16_t unit : name) hash = (hash ^ plain(unit)) * 0x100000001b3u;
  return static_cast<std::size_t>(hash ^ (hash >> 32));
}

bool sameName(std::u16string_view a, std::u16string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t x, char16_t y) { return plain(x) == plain(y); });
}

}  // namespace embedded::block_diagram
