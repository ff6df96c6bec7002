#include "formats/spice/inner_nodes.hpp"

#include <algorithm>

namespace kinemo::formats::spice {

namespace {

/// Ways to take one name apart that are tried; then it is an ordinary node.
constexpr int most_tries = 10'000;

}  // namespace

InnerNodes::InnerNodes(const Netlist& netlist) : m_netlist(netlist) {
  for (NameId id = 0; id < netlist.names.size(); ++id) {
    m_ids.emplace(netlist.names.text(id), id);
  }
  for (const Definition& definition : netlist.definitions) {
    Contents& contents = m_contents[&definition];
    for (const Element& element : definition.elements) {
      add_nodes(contents, definition, element.nodes);
    }
    for (std::size_t i = 0; i < definition.calls.size(); ++i) {
      add_nodes(contents, definition, definition.calls[i].nodes);
      contents.calls.emplace(netlist.names.text(definition.calls[i].name), i);
    }
    for (const NameId formal : definition.formals) {
      contents.local_nodes.erase(formal);
    }
  }
  for (const Definition& definition : netlist.definitions) {
    Contents& own = m_contents[&definition];
    for (const NameId node : own.local_nodes) {
      if (find(definition, netlist.names.text(node))) {
        own.inner_names.push_back(netlist.names.text(node));
      }
    }
    std::sort(own.inner_names.begin(), own.inner_names.end());
  }
}

void InnerNodes::add_nodes(Contents& contents, const Definition&, const std::vector<NameId>& nodes) const {
  for (const NameId node : nodes) {
    if (!m_netlist.is_global(node)) {
      contents.local_nodes.insert(node);
    }
  }
}

const InnerNodes::Contents& InnerNodes::contents(const Definition& definition) const {
  return m_contents.find(&definition)->second;
}

const std::vector<std::string>& InnerNodes::named_in(const Definition& definition) const {
  return contents(definition).inner_names;
}

std::optional<InnerNode> InnerNodes::find(const Definition& definition, const std::string& name) const {
  int tries = 0;
  return find(definition, name, tries);
}

/// A call's name may hold dots itself, so every dot is tried; the first call that has such a node is meant.
std::optional<InnerNode> InnerNodes::find(const Definition& definition, const std::string& name, int& tries) const {
  const Contents& own = contents(definition);
  for (std::size_t dot = name.find('.'); dot != std::string::npos && ++tries < most_tries;
       dot = name.find('.', dot + 1)) {
    const auto call = own.calls.find(std::string_view(name).substr(0, dot));
    if (call == own.calls.end() || definition.calls[call->second].definition < 0) {
      continue;
    }
    const auto target = static_cast<std::size_t>(definition.calls[call->second].definition);
    std::string rest = name.substr(dot + 1);
    if (exists(m_netlist.definitions[target], rest, tries)) {
      return InnerNode{call->second, std::move(rest)};
    }
  }
  return std::nullopt;
}

bool InnerNodes::exists(const Definition& definition, const std::string& name, int& tries) const {
  const auto id = m_ids.find(name);
  return (id != m_ids.end() && contents(definition).local_nodes.count(id->second) != 0) ||
         find(definition, name, tries).has_value();
}

}  // namespace kinemo::formats::spice
