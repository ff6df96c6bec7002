#include "formats/spice/diagram_builder.hpp"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "embedded/block_diagram/diagram.hpp"
#include "formats/spice/element_parameters.hpp"
#include "formats/spice/expansion.hpp"
#include "formats/spice/host_names.hpp"
#include "formats/spice/inner_nodes.hpp"
#include "formats/spice/instance_masks.hpp"
#include "formats/spice/text_file.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

namespace kinemo::formats::spice {

namespace {

namespace host = embedded::block_diagram;

ustring host_string(std::string_view text) {
  return kmf::utf8_string_to_ustring(std::string(text));
}

/// The ports that meet in the nodes of one system, in the order in which the nodes came.
class LevelNets {
 public:
  void join(NameId node, gtPort* port) {
    const auto [entry, is_new] = m_indices.emplace(node, m_nets.size());
    if (is_new) {
      m_nets.push_back({node, {}});
    }
    m_nets[entry->second].ports.push_back(port);
  }

  struct Net {
    NameId node;
    std::vector<gtPort*> ports;
  };
  const std::vector<Net>& nets() const { return m_nets; }

 private:
  std::unordered_map<NameId, std::size_t> m_indices;
  std::vector<Net> m_nets;
};

/// A node of an instance that the level around it names, beside its formal nodes.
struct ExtraNode {
  NameId inside;
  NameId outside;
};

/// A system that is being filled.
struct Level {
  host::System* system = nullptr;
  const Definition* definition = nullptr;
  LevelNets nets;
  std::unordered_map<const Call*, std::vector<ExtraNode>> extra_nodes;  ///< of the calls on this level
};

class DiagramBuilder : public ExpansionVisitor {
 public:
  DiagramBuilder(Netlist& netlist, host::Diagram& diagram, Reporter& reporter, bool has_mistakes)
      : m_netlist(netlist),
        m_diagram(diagram),
        m_inner_nodes(netlist),
        m_names(netlist),
        m_masks(m_names),
        m_parameters(netlist.names, m_names, reporter),
        m_has_mistakes(has_mistakes) {
    for (const auto& file : netlist.files) {
      m_file_names[file.get()] = std::make_shared<const std::string>(file->shown_name);
    }
  }

  bool begin(const Instance& instance, const ParameterScopes& scopes) override {
    if (instance.call == nullptr) {
      begin_top(*instance.definition, scopes);
    } else {
      if (is_taken(instance.call->name)) return false;
      begin_call(*instance.definition, *instance.call, scopes);
    }
    add_stand_ins(instance);
    m_parameters.begin(*instance.definition);
    return true;
  }

  void element(const Element& element, const ParameterScopes& scopes) override {
    if (is_taken(element.name)) return;
    GTBlock& block =
        m_levels.back().system->addBlock(name(element.name), std::string(element.kind->block), place(element.place));
    m_parameters.set(block, element, scopes);
    join(element.nodes, views::ports_in_kind_order(block));
  }

  void end(const Instance& instance) override {
    Level& level = m_levels.back();
    if (instance.call == nullptr) {
      ground_top(level);
    }
    for (const LevelNets::Net& net : level.nets.nets()) {
      level.system->addLine(net.ports, name(net.node));
    }
    m_levels.pop_back();
    m_parameters.end();
  }

 private:
  ustring name(NameId id) const { return host_string(m_netlist.names.text(id)); }

  host::SourcePlace place(const Place& place) const {
    const auto file = m_file_names.find(place.file);
    return file == m_file_names.end()
               ? host::SourcePlace()
               : host::SourcePlace{file->second, static_cast<int>(place.line), static_cast<int>(place.column)};
  }

  void join(const std::vector<NameId>& nodes, const std::vector<gtPort*>& ports) {
    for (std::size_t i = 0; i < nodes.size() && i < ports.size(); ++i) {
      m_levels.back().nets.join(nodes[i], ports[i]);
    }
  }

  // --- netlists with mistakes

  /// Whether a name that isn't told as a second one before has a block already.
  bool is_taken(NameId name_id) const {
    return m_has_mistakes && m_levels.back().system->find(name(name_id)) != nullptr;
  }

  /// Blocks that show where elements with mistakes and impossible calls are.
  void add_stand_ins(const Instance& instance) {
    if (!m_has_mistakes) return;
    const auto is_there = [&](NameId name_id, std::int32_t branch) {
      return (branch < 0 || instance.branches[static_cast<std::size_t>(branch)] != 0) && !is_taken(name_id);
    };
    for (const FaultyElement& element : instance.definition->faulty) {
      if (!is_there(element.name, element.branch)) continue;
      if (element.kind == nullptr) {
        add_box(element.name, element.nodes, element.place);
      } else {
        add_without_values(element);
      }
    }
    for (const Call& call : instance.definition->calls) {
      if (call.definition < 0 && is_there(call.name, call.branch)) add_box(call.name, call.nodes, call.place);
    }
  }

  void add_without_values(const FaultyElement& element) {
    const GTBlock& block =
        m_levels.back().system->addBlock(name(element.name), std::string(element.kind->block), place(element.place));
    join(element.nodes, views::ports_in_kind_order(block));
  }

  /// The first half of the nodes goes to the left, as for other calls.
  void add_box(NameId name_id, const std::vector<NameId>& nodes, const Place& at) {
    GTBlock& block = m_levels.back().system->addSubsystem(name(name_id), place(at));
    host::setParameter(block, "Opaque", u"on");
    host::System& inside = *host::contents(block);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
      if (inside.find(name(nodes[i])) != nullptr) continue;
      const host::Side side = i < (nodes.size() + 1) / 2 ? host::Side::Left : host::Side::Right;
      const GTBlock& port = inside.addPort(name(nodes[i]), side, static_cast<int>(i), place(at));
      m_levels.back().nets.join(nodes[i], host::outerPort(port));
    }
  }

  // --- the top level

  void begin_top(const Definition& definition, const ParameterScopes& scopes) {
    for (const Parameter& parameter : definition.parameters) {
      if (const auto value = scopes.value(parameter.name)) {
        m_diagram.setVariable(m_names.name(parameter.name), host_string(number_text(*value)), "", true);
      }
    }
    m_levels.push_back({&m_diagram.root(), &definition, {}, {}});
    find_extra_nodes(m_levels.back(), {});
  }

  /// The reference comes last, so that its name can give way to those of elements.
  void ground_top(Level& level) {
    for (const NameId node : level.definition->reached_globals) {
      if (node == ground) {
        GTBlock& reference =
            level.system->addBlock(host_string(free_name(*level.definition, "0", {})), "physical/electrical_reference");
        level.nets.join(ground, views::ports_in_kind_order(reference).front());
      }
    }
  }

  // --- calls

  void begin_call(const Definition& definition, const Call& call, const ParameterScopes& scopes) {
    Level& outer = m_levels.back();
    GTBlock& block = outer.system->addSubsystem(name(call.name), place(call.place));
    set_mask(block, definition, call, scopes);
    Level level{host::contents(block), &definition, {}, {}};
    const auto extra = outer.extra_nodes.find(&call);
    const std::vector<ExtraNode> extra_nodes =
        extra == outer.extra_nodes.end() ? std::vector<ExtraNode>() : extra->second;
    add_ports(outer, level, call, extra_nodes);
    find_extra_nodes(level, extra_nodes);
    m_levels.push_back(std::move(level));
  }

  void set_mask(GTBlock& block, const Definition& definition, const Call& call, const ParameterScopes& scopes) {
    MaskInterface::setMask(&block, m_masks.mask(definition));
    const InstanceMasks::Values values = m_masks.values(definition, scopes);
    for (const auto& [parameter, expression] : values.changed) {
      host::setParameter(block, parameter, host_string(expression));
    }
    if (values.has_fixed) {
      m_parameters.note_fixed(call.place, "the call '" + m_netlist.names.text(call.name) + "'");
    }
  }

  /// A netlist knows no sides: the first half of the formal nodes goes to the left, so that chains of calls can be
  /// drawn in a row.
  void add_ports(Level& outer, Level& level, const Call& call, const std::vector<ExtraNode>& extra_nodes) {
    const std::vector<NameId>& formals = level.definition->formals;
    int order = 0;
    for (std::size_t i = 0; i < formals.size(); ++i) {
      if (m_netlist.is_global(formals[i])) continue;
      const host::Side side = i < (formals.size() + 1) / 2 ? host::Side::Left : host::Side::Right;
      add_port(outer, level, call.nodes[i], formals[i], side, ++order);
    }
    for (const NameId node : level.definition->reached_globals) {
      add_port(outer, level, node, node, host::Side::Right, ++order);
    }
    for (const ExtraNode& node : extra_nodes) {
      add_port(outer, level, node.outside, node.inside, host::Side::Right, ++order);
    }
  }

  void add_port(Level& outer, Level& level, NameId outside, NameId inside, host::Side side, int order) {
    const std::string port_name = free_name(*level.definition, m_netlist.names.text(inside), level.system);
    GTBlock& port = level.system->addPort(host_string(port_name), side, order, place(level.definition->place));
    level.nets.join(inside, host::ports(port).front());
    outer.nets.join(outside, host::outerPort(port));
  }

  /// The name, or one made from it, that no element or call of the definition has, and no block of the system yet.
  std::string free_name(const Definition& definition, const std::string& wanted, const host::System* system) {
    const std::unordered_set<NameId>& taken = taken_names(definition);
    std::string result = wanted;
    for (int number = 1; taken.count(m_netlist.names.add(result)) != 0 ||
                         (system != nullptr && system->find(host_string(result)) != nullptr);
         ++number) {
      result = wanted + "_" + std::to_string(number);
    }
    return result;
  }

  const std::unordered_set<NameId>& taken_names(const Definition& definition) {
    auto [entry, is_new] = m_taken_names.try_emplace(&definition);
    if (is_new) {
      for (const Element& element : definition.elements) {
        entry->second.insert(element.name);
      }
      for (const FaultyElement& element : definition.faulty) {
        entry->second.insert(element.name);
      }
      for (const Call& call : definition.calls) {
        entry->second.insert(call.name);
      }
    }
    return entry->second;
  }

  /// Which nodes inside of its calls the level names: in cards of its own, or because the level around it does.
  void find_extra_nodes(Level& level, const std::vector<ExtraNode>& from_outside) {
    const auto add = [&](const std::string& text) {
      const auto inner = m_inner_nodes.find(*level.definition, text);
      if (inner) {
        level.extra_nodes[&level.definition->calls[inner->call]].push_back(
            {m_netlist.names.add(inner->rest), m_netlist.names.add(text)});
      }
    };
    const std::vector<std::string>& own = m_inner_nodes.named_in(*level.definition);
    for (const std::string& text : own) {
      add(text);
    }
    for (const ExtraNode& node : from_outside) {
      const std::string text = m_netlist.names.text(node.inside);
      if (std::find(own.begin(), own.end(), text) == own.end()) {
        add(text);
      }
    }
  }

  Netlist& m_netlist;
  host::Diagram& m_diagram;
  InnerNodes m_inner_nodes;
  HostNames m_names;
  InstanceMasks m_masks;
  ElementParameters m_parameters;
  std::unordered_map<const TextFile*, std::shared_ptr<const std::string>> m_file_names;
  std::unordered_map<const Definition*, std::unordered_set<NameId>> m_taken_names;
  std::vector<Level> m_levels;
  bool m_has_mistakes;
};

/// For parameters whose own can't be read.
void fill_in_values(Netlist& netlist) {
  const auto nothing = std::make_shared<const Expression>(Expression::of_number(0));
  const auto fill_in = [&](std::vector<Parameter>& parameters) {
    for (Parameter& parameter : parameters) {
      parameter.value = parameter.value == nullptr ? nothing : parameter.value;
    }
  };
  for (Definition& definition : netlist.definitions) {
    fill_in(definition.parameters);
    for (Call& call : definition.calls) {
      fill_in(call.parameters);
    }
  }
}

}  // namespace

void build_diagram(Netlist& netlist, host::Diagram& diagram, DiagnosticList& diagnostics, bool has_mistakes) {
  Reporter reporter(diagnostics);
  if (has_mistakes) {
    fill_in_values(netlist);
  }
  DiagramBuilder builder(netlist, diagram, reporter, has_mistakes);
  expand(netlist, builder, reporter);
}

}  // namespace kinemo::formats::spice
