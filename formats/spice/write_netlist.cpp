#include "formats/spice/write_netlist.hpp"

#include <algorithm>
#include <memory>
#include <ostream>
#include <tuple>
#include <unordered_map>

#include "formats/spice/write_elements.hpp"
#include "formats/spice/write_ground.hpp"
#include "formats/spice/write_parameters.hpp"
#include "formats/spice/write_text.hpp"

namespace kinemo::formats::spice {

namespace {

using gl::core::Component;
using gl::core::Graph;
using gl::core::Model;

using Entry = std::map<kmf::VnId, Component>::value_type;

/// A level that is being written.
struct Level {
  const Component* owner = nullptr;  ///< null for the top
  kmf::VnId id;                      ///< of the owner, in the level around it
  std::unique_ptr<LevelText> text;
  std::vector<const Entry*> order;
  std::size_t next = 0;
  std::vector<WrittenParameter> parameters;
};

class NetlistWriter {
 public:
  NetlistWriter(const Model& model, const SourceNames& source, DiagnosticList& diagnostics)
      : m_model(model),
        m_source(source),
        m_grounds(model.graph()),
        m_ports(model.graph(), source),
        m_parameters(model, m_names),
        m_context{m_parameters, source, diagnostics, nullptr, {}, {}, false} {}

  /// The whole netlist but its title.
  std::string write() {
    const std::vector<WrittenParameter> parameters = m_parameters.enter_model(m_model.runtimeParameters());
    enter(nullptr, {}, m_model.graph(), {}, {});
    m_context.top = &m_levels.back()->text->nodes;
    while (m_levels.size() > 1 || !at_end(*m_levels.back())) {
      step();
    }
    return head(parameters) + m_context.models.lines() + m_definitions + m_levels.back()->text->lines + ".end\n";
  }

 private:
  static bool at_end(const Level& level) { return level.next == level.order.size(); }

  void step() {
    Level& level = *m_levels.back();
    if (at_end(level)) {
      leave();
      return;
    }
    const auto& [id, component] = *level.order[level.next++];
    if (component.isSubgraph()) {
      enter(&component, id, component.graph(), level.text->nodes.grounded_connectors(id, component),
            level.text->nodes.open_ports(id));
    } else {
      write_element(m_context, *level.text, id, component);
    }
  }

  /// As in the source, as far as that tells an order.
  std::vector<const Entry*> written_order(const Graph& graph) const {
    std::vector<std::pair<SourcePlace, const Entry*>> placed;
    for (const Entry& entry : graph.components()) {
      placed.emplace_back(m_source.place(entry.second), &entry);
    }
    std::stable_sort(placed.begin(), placed.end(), [](const auto& a, const auto& b) {
      return std::tie(a.first.file, a.first.line, a.first.column) <
             std::tie(b.first.file, b.first.line, b.first.column);
    });
    std::vector<const Entry*> order;
    for (const auto& entry : placed) {
      order.push_back(entry.second);
    }
    return order;
  }

  void enter(const Component* owner, const kmf::VnId& id, const Graph& graph, const Ids& grounded,
             const std::vector<OpenPort>& open) {
    auto level = std::make_unique<Level>();
    level->owner = owner;
    level->id = id;
    level->text = std::make_unique<LevelText>(LevelNodes(owner, graph, grounded, open, m_grounds, m_ports, m_source),
                                              LevelElements(graph));
    level->order = written_order(graph);
    if (owner != nullptr) {
      level->parameters = m_parameters.enter(*owner);
    }
    m_levels.push_back(std::move(level));
  }

  /// What was inside becomes a definition, or is one already, and the level around it gets a call of it.
  void leave() {
    const std::unique_ptr<Level> inner = std::move(m_levels.back());
    m_levels.pop_back();
    m_parameters.leave(*inner->owner);
    const std::string& definition = define(*inner);
    LevelText& outer = *m_levels.back()->text;
    std::string call = outer.elements.of(inner->id);
    for (const FormalNode& formal : inner->text->nodes.formals()) {
      const bool is_open = formal.connector.empty();
      call += " " + (is_open ? formal.actual : outer.nodes.at(inner->id, formal.connector));
    }
    call += " " + definition;
    for (const WrittenParameter& parameter : inner->parameters) {
      call += " " + parameter.name + "=" + card_value(parameter.value);
    }
    outer.card(call);
  }

  /// Two definitions are one when their nodes, parameters and contents are.
  const std::string& define(const Level& level) {
    std::string key;
    for (const FormalNode& formal : level.text->nodes.formals()) {
      key += " " + formal.name;
    }
    key += " params:";
    for (const WrittenParameter& parameter : level.parameters) {
      key += " " + parameter.name;
    }
    key += "\n" + level.text->lines;
    const auto [entry, is_new] = m_known.try_emplace(std::move(key));
    if (is_new) {
      entry->second = definition_name(*level.owner);
      add_definition(entry->second, level);
    }
    return entry->second;
  }

  std::string definition_name(const Component& owner) {
    std::string name = legal_identifier(m_source.definition_name(owner));
    name = name.empty() ? legal_identifier(block_name(owner)) : name;
    return m_names.make(name.empty() ? "part" : name);
  }

  /// Defaults are the first call's numbers; every call gives all values.
  void add_definition(const std::string& name, const Level& level) {
    std::string card = ".subckt " + name;
    for (const FormalNode& formal : level.text->nodes.formals()) {
      card += " " + formal.name;
    }
    card += level.parameters.empty() ? "" : " params:";
    for (const WrittenParameter& parameter : level.parameters) {
      card += " " + parameter.name + "=" + (parameter.value.is_number ? parameter.value.text : "1");
    }
    m_definitions += folded(card) + level.text->lines + ".ends " + name + "\n";
  }

  std::string head(const std::vector<WrittenParameter>& parameters) const {
    std::string text;
    for (const auto& [name, written] : m_parameters.renamed()) {
      text += "* the parameter " + name + " is named " + written + " here\n";
    }
    for (const WrittenParameter& parameter : parameters) {
      text += ".param " + parameter.name + "=" + parameter.value.text + "\n";
    }
    for (const std::string& node : m_context.global_nodes) {
      text += ".global " + node + "\n";
    }
    return text;
  }

  const Model& m_model;
  const SourceNames& m_source;
  UniqueNames m_names;  ///< of parameters and definitions, which the simulator keeps in one table
  Grounds m_grounds;
  SubgraphPorts m_ports;
  WrittenParameters m_parameters;
  WriteContext m_context;
  std::vector<std::unique_ptr<Level>> m_levels;
  std::unordered_map<std::string, std::string> m_known;  ///< names of definitions by what they hold
  std::string m_definitions;
};

/// The title is one line, whatever it holds.
std::string title_line(std::string title) {
  std::replace_if(
      title.begin(), title.end(), [](unsigned char c) { return c < ' '; }, ' ');
  return title + "\n";
}

}  // namespace

bool write_netlist(std::ostream& out, const Model& model, const std::string& title, const SourceNames& source,
                   DiagnosticList& diagnostics) {
  const std::size_t errors_before = diagnostics.error_count();
  const std::string text = NetlistWriter(model, source, diagnostics).write();
  if (diagnostics.error_count() != errors_before) {
    return false;
  }
  out << title_line(title) << text;
  return true;
}

}  // namespace kinemo::formats::spice
