#include "formats/spice/write_elements.hpp"
#include "formats/spice/write_level.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::spice {

using gl::core::Component;

/// Names that stay as they are go first.
LevelElements::LevelElements(const gl::core::Graph& level) {
  struct Other {
    kmf::VnId id;
    std::string block;
    std::string wanted;
  };
  std::vector<Other> others;
  const auto set = [this](const kmf::VnId& id, const std::string& block, const std::string& name) {
    m_names.emplace(id, name);
    m_aliases.add(block, name);
  };
  for (const auto& [id, component] : level.components()) {
    const char letter = element_letter(component);
    if (letter == '\0') {
      continue;
    }
    const std::string block = block_name(component);
    const std::string name = legal_name(block.empty() ? std::string(id) : block);
    const bool leads = kmf::lower(name).front() == letter;
    if (leads && m_taken.claim(name)) {
      set(id, block, name);
    } else {
      others.push_back({id, block, leads ? name : letter + name});
    }
  }
  for (const Other& other : others) {
    set(other.id, other.block, m_taken.make(other.wanted));
  }
}

const std::string& LevelElements::of(const kmf::VnId& component) const {
  static const std::string none;
  const auto found = m_names.find(component);
  return found != m_names.end() ? found->second : none;
}

}  // namespace kinemo::formats::spice
