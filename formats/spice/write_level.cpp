#include "formats/spice/write_level.hpp"

#include <algorithm>

#include "formats/spice/write_elements.hpp"
#include "platform/foundation/strings.hpp"
#include "views/graph_access.hpp"

namespace kinemo::formats::spice {

using gl::core::Component;
using gl::core::Graph;

LevelNames::LevelNames(const Component* owner, const Graph& level, const Ids& outside, const Grounds& grounds,
                       const SourceNames& source)
    : m_graph(&level), m_grounded(grounds.nodes(owner, level, outside)) {
  m_node_names.claim("0");
  m_node_names.claim("gnd");
  name_elements(source);
  name_nodes(owner, grounds, source);
  if (owner != nullptr) {
    add_formals(*owner);
  }
}

// --- elements

/// Names that stay as they are go first.
void LevelNames::name_elements(const SourceNames& source) {
  std::vector<std::pair<kmf::VnId, std::string>> others;
  const auto set = [this](const kmf::VnId& id, const std::string& block, const std::string& name) {
    m_elements.emplace(id, name);
    m_elements_by_name.emplace(kmf::lower(block), name);
  };
  for (const auto& [id, component] : m_graph->components()) {
    const char letter = element_letter(component);
    if (letter == '\0') {
      continue;
    }
    const std::string block = source.block_name(views::object_text(gl::core::GraphEntry(component)));
    const std::string name = legal_name(block.empty() ? std::string(id) : block);
    if (component.isSubgraph()) {
      m_calls.emplace(kmf::lower(block), id);
    }
    if (kmf::lower(name).front() == letter && m_element_names.claim(name)) {
      set(id, block, name);
    } else {
      others.emplace_back(id, block);
    }
  }
  for (const auto& [id, block] : others) {
    const char letter = element_letter(m_graph->components().at(id));
    const std::string name = legal_name(block.empty() ? std::string(id) : block);
    const bool leads = kmf::lower(name).front() == letter;
    set(id, block, m_element_names.make(leads ? name : letter + name));
  }
}

const std::string& LevelNames::element(const kmf::VnId& component) const {
  static const std::string none;
  const auto found = m_elements.find(component);
  return found != m_elements.end() ? found->second : none;
}

// --- nodes

/// `call.node` is the simulator's name for a node inside of a call, so that another node can't have it.
std::string LevelNames::without_clash(const std::string& name, const kmf::VnId& node) const {
  const auto call = m_calls.find(kmf::lower(name.substr(0, name.find('.'))));
  if (name.find('.') == std::string::npos || call == m_calls.end()) {
    return name;
  }
  const auto& connections = m_graph->connections(node);
  const bool reaches = std::any_of(connections.begin(), connections.end(), [&](const gl::core::Connection& connection) {
    return connection.connectorSpec().componentId() == call->second;
  });
  std::string other = name;
  std::replace(other.begin(), other.end(), '.', '_');
  return reaches ? name : other;
}

LevelNames::Candidate LevelNames::candidate(const kmf::VnId& node, const SourceNames& source) const {
  Candidate result{node, {}};
  for (const std::string& name : source.node_names(*m_graph, node)) {
    if (const std::string legal = legal_name(name); !legal.empty()) {
      result.names.push_back(without_clash(legal, node));
    }
  }
  return result;
}

/// A node that is ground around its definition only is a formal node, unless its name says that it is always ground.
bool LevelNames::stays_formal(const Component* owner, const Grounds& grounds, const Candidate& candidate) const {
  return owner != nullptr && owner->isExported(candidate.node) &&
         grounds.inside(*owner).count(owner->mapExported(candidate.node)) == 0 &&
         (candidate.names.empty() || !names_ground(candidate.names.front()));
}

void LevelNames::set(const Candidate& candidate, const std::string& name) {
  m_nodes.emplace(candidate.node, name);
  m_nodes_by_name[kmf::lower(name)] = name;
  for (const std::string& alias : candidate.names) {
    m_nodes_by_name.emplace(kmf::lower(alias), name);
  }
}

/// Takes the first of the names that is free.
bool LevelNames::claim(const Candidate& candidate, std::size_t most_names) {
  for (std::size_t i = 0; i < std::min(most_names, candidate.names.size()); ++i) {
    if (m_node_names.claim(candidate.names[i])) {
      set(candidate, candidate.names[i]);
      return true;
    }
  }
  return false;
}

/// Best names of all nodes first, then any name, at last made ones.
void LevelNames::name_nodes(const Component* owner, const Grounds& grounds, const SourceNames& source) {
  std::vector<Candidate> open;
  for (const auto& entry : m_graph->nodes()) {
    Candidate next = candidate(entry.first, source);
    if (m_grounded.count(entry.first) != 0 && !stays_formal(owner, grounds, next)) {
      set(next, "0");
    } else {
      open.push_back(std::move(next));
    }
  }
  for (const std::size_t most_names : {std::size_t{1}, std::string::npos}) {
    open.erase(std::remove_if(open.begin(), open.end(), [&](const Candidate& one) { return claim(one, most_names); }),
               open.end());
  }
  for (const Candidate& one : open) {
    const bool has_name = !one.names.empty() && !names_ground(one.names.front());
    set(one, m_node_names.make(has_name ? one.names.front() : std::string(one.node)));
  }
}

std::string LevelNames::node(const kmf::VnId& component, const kmf::VnId& connector) {
  const kmf::VnId* node = m_graph->nodeOf(gl::core::ConnectorSpec(component, connector));
  return node != nullptr ? m_nodes.at(*node) : m_node_names.make(std::string(component) + "_" + std::string(connector));
}

void LevelNames::add_formals(const Component& owner) {
  std::unordered_map<kmf::VnId, kmf::VnId> nodes;
  for (const auto& entry : m_graph->nodes()) {
    if (owner.isExported(entry.first)) {
      nodes.emplace(owner.mapExported(entry.first), entry.first);
    }
  }
  for (const kmf::VnId& connector : owner.connectorOrder()) {
    const auto node = nodes.find(connector);
    const std::string name = node != nodes.end() ? m_nodes.at(node->second) : new_node(std::string(connector));
    if (name != "0") {
      m_formals.emplace_back(connector, name);
    }
  }
}

Ids LevelNames::grounded_connectors(const kmf::VnId& component, const Component& subgraph) const {
  Ids connectors;
  for (const kmf::VnId& connector : subgraph.connectorOrder()) {
    const kmf::VnId* node = m_graph->nodeOf(gl::core::ConnectorSpec(component, connector));
    if (node != nullptr && m_grounded.count(*node) != 0) {
      connectors.insert(connector);
    }
  }
  return connectors;
}

// --- names in texts

std::optional<std::string> LevelNames::find_node(const std::string& name) const {
  const auto found = m_nodes_by_name.find(kmf::lower(name));
  return found != m_nodes_by_name.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<std::string> LevelNames::find_element(const std::string& name) const {
  const auto found = m_elements_by_name.find(kmf::lower(name));
  return found != m_elements_by_name.end() ? std::optional(found->second) : std::nullopt;
}

}  // namespace kinemo::formats::spice
