#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

NameId NameTable::add(std::string_view name) {
  const std::string_view wanted = name == "gnd" ? std::string_view("0") : name;
  if (const auto found = m_ids.find(wanted); found != m_ids.end()) {
    return found->second;
  }
  const auto id = static_cast<NameId>(m_texts.size());
  m_texts.emplace_back(wanted);
  m_ids.emplace(m_texts.back(), id);
  return id;
}

}  // namespace kinemo::formats::spice
