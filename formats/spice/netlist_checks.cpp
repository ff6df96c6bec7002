#include "formats/spice/netlist_checks.hpp"

#include <algorithm>

namespace kinemo::formats::spice {

namespace {

class NetlistChecker {
 public:
  NetlistChecker(Netlist& netlist, Reporter& reporter) : m_netlist(netlist), m_reporter(reporter) {}

  void check() {
    for (Definition& definition : m_netlist.definitions) {
      m_reporter.set_used(definition.used);
      check_formals(definition);
      check_calls(definition);
      check_duplicates(definition);
    }
    m_reporter.set_used(true);
    order_definitions();
    check_size();
    find_reached_globals();
  }

 private:
  const Definition& called(const Call& call) const {
    return m_netlist.definitions[static_cast<std::size_t>(call.definition)];
  }

  void check_formals(Definition& definition) {
    for (const NameId formal : definition.formals) {
      if (m_netlist.is_global(formal)) {
        m_reporter.warning("spice:formal_is_global", definition.place,
                           "node '" + m_netlist.names.text(formal) + "' of '" + definition.name +
                               "' is the global node of that name; what a call gives for it is ignored");
      }
    }
  }

  // --- calls

  void check_calls(Definition& definition) {
    for (Call& call : definition.calls) {
      if (call.definition >= 0) {
        check_call_parameters(call);
        check_node_count(call);
      }
    }
  }

  void check_node_count(Call& call) {
    const Definition& target = called(call);
    if (call.nodes.size() == target.formals.size()) {
      return;
    }
    std::string formals;
    for (const NameId formal : target.formals) {
      formals += " " + m_netlist.names.text(formal);
    }
    m_reporter
        .mistake("spice:node_count", call.place,
                 "'" + m_netlist.names.text(call.name) + "' gives " + std::to_string(call.nodes.size()) +
                     " node(s) to '" + call.target + "', which has " + std::to_string(target.formals.size()))
        .notes.push_back({"it is defined as '" + target.name + formals + "'", source_place(target.place)});
    call.definition = -1;
  }

  void check_call_parameters(const Call& call) {
    const Definition& target = called(call);
    for (const Parameter& given : call.parameters) {
      const auto same = [&](const Parameter& known) { return known.name == given.name; };
      if (given.name == "m" || std::any_of(target.parameters.begin(), target.parameters.end(), same)) {
        continue;
      }
      std::vector<std::string_view> names;
      for (const Parameter& known : target.parameters) {
        names.push_back(known.name);
      }
      Diagnostic& warning =
          m_reporter.warning("spice:unknown_parameter", given.place,
                             "'" + call.target + "' has no parameter '" + given.name + "'; it is ignored");
      const std::string nearest(nearest_name(given.name, names));
      if (!nearest.empty()) {
        warning.notes.push_back({"did you mean '" + nearest + "'?", {}});
      }
    }
  }

  // --- duplicates

  /// Where a name stands, under the branch it stands in and under all branches around that.
  struct SeenNames {
    std::unordered_map<std::uint64_t, const Place*> exactly;
    std::unordered_map<std::uint64_t, const Place*> inside;
  };

  /// Two of one name that are there under the same conditions. What depends on values is seen at the expansion.
  void check_duplicates(const Definition& definition) {
    SeenNames seen;
    for (const Element& element : definition.elements) {
      check_duplicate(definition, seen, element.name, element.branch, element.place);
    }
    for (const FaultyElement& element : definition.faulty) {
      check_duplicate(definition, seen, element.name, element.branch, element.place);
    }
    for (const Call& call : definition.calls) {
      check_duplicate(definition, seen, call.name, call.branch, call.place);
    }
  }

  void check_duplicate(const Definition& definition, SeenNames& seen, NameId name, std::int32_t branch,
                       const Place& place) {
    const auto key = [name](std::int32_t at) {
      return (std::uint64_t{name} << 32) | static_cast<std::uint32_t>(at + 1);
    };
    const auto below = seen.inside.find(key(branch));
    const Place* other = below == seen.inside.end() ? nullptr : below->second;
    for (std::int32_t at = branch;; at = definition.branches[static_cast<std::size_t>(at)].parent) {
      const auto same = seen.exactly.find(key(at));
      other = other == nullptr && same != seen.exactly.end() ? same->second : other;
      seen.inside.emplace(key(at), &place);
      if (at < 0) {
        break;
      }
    }
    seen.exactly.emplace(key(branch), &place);
    if (other != nullptr) {
      m_reporter.mistake("spice:duplicate_element", place, "a second element '" + m_netlist.names.text(name) + "'")
          .notes.push_back({"the first one is here", source_place(*other)});
    }
  }

  // --- recursion and size

  enum class State { fresh, open, done };
  struct Visit {
    std::size_t definition;
    std::size_t call;
  };

  /// Definitions that are called come before those that call them. Calls by which some call themselves are undone.
  void order_definitions() {
    m_states.assign(m_netlist.definitions.size(), State::fresh);
    for (std::size_t i = 0; i < m_states.size(); ++i) {
      visit(i);
    }
  }

  void visit(std::size_t first) {
    if (m_states[first] != State::fresh) {
      return;
    }
    std::vector<Visit> path{{first, 0}};
    m_states[first] = State::open;
    while (!path.empty()) {
      Visit& top = path.back();
      Definition& definition = m_netlist.definitions[top.definition];
      if (top.call == definition.calls.size()) {
        m_states[top.definition] = State::done;
        m_order.push_back(top.definition);
        path.pop_back();
        continue;
      }
      Call& call = definition.calls[top.call++];
      const auto index = static_cast<std::size_t>(call.definition);
      if (call.definition < 0) {
        continue;
      }
      if (m_states[index] == State::open) {
        report_recursion(path, call);
        call.definition = -1;
      } else if (m_states[index] == State::fresh) {
        m_states[index] = State::open;
        path.push_back({index, 0});
      }
    }
  }

  void report_recursion(const std::vector<Visit>& path, const Call& call) {
    const auto target = static_cast<std::size_t>(call.definition);
    std::string names = called(call).name;
    std::size_t at = path.size();
    while (at-- > 0 && path[at].definition != target) {
    }
    const std::size_t shown = std::min(path.size(), at + 10);
    for (++at; at < shown; ++at) {
      names += " -> " + m_netlist.definitions[path[at].definition].name;
    }
    m_reporter.set_used(m_netlist.definitions[path.back().definition].used);
    m_reporter.mistake("spice:recursion", call.place,
                       "subcircuit '" + call.target + "' calls itself: " + names + (at < path.size() ? " -> ..." : "") +
                           " -> " + call.target);
    m_reporter.set_used(true);
  }

  void check_size() {
    std::vector<double> sizes(m_netlist.definitions.size(), 0);
    for (const std::size_t index : m_order) {
      const Definition& definition = m_netlist.definitions[index];
      double size = static_cast<double>(definition.elements.size() + definition.calls.size());
      for (const Call& call : definition.calls) {
        size += call.definition < 0 ? 0 : sizes[static_cast<std::size_t>(call.definition)];
      }
      sizes[index] = size;
    }
    m_netlist.too_large = sizes[0] > largest_circuit;
    if (m_netlist.too_large) {
      m_reporter.mistake(
          "spice:too_large", m_netlist.top().place,
          "the expanded circuit has more than " + std::to_string(static_cast<long>(largest_circuit)) + " elements");
    }
  }

  // --- global nodes

  void find_reached_globals() {
    for (const std::size_t index : m_order) {
      Definition& definition = m_netlist.definitions[index];
      std::set<NameId> reached;
      const auto add = [&](const std::vector<NameId>& nodes) {
        std::copy_if(nodes.begin(), nodes.end(), std::inserter(reached, reached.end()),
                     [this](NameId node) { return m_netlist.is_global(node); });
      };
      for (const Element& element : definition.elements) {
        add(element.nodes);
      }
      for (const FaultyElement& element : definition.faulty) {
        add(element.nodes);
      }
      for (const Call& call : definition.calls) {
        add(call.nodes);
        if (call.definition >= 0) {
          reached.insert(called(call).reached_globals.begin(), called(call).reached_globals.end());
        }
      }
      definition.reached_globals.assign(reached.begin(), reached.end());
    }
  }

  Netlist& m_netlist;
  Reporter& m_reporter;
  std::vector<State> m_states;
  std::vector<std::size_t> m_order;
};

}  // namespace

void check_netlist(Netlist& netlist, Reporter& reporter) {
  NetlistChecker(netlist, reporter).check();
}

}  // namespace kinemo::formats::spice
