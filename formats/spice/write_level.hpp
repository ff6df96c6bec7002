// The names of one level of a netlist that is written: its nodes, its elements, and the formal nodes of its definition.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formats/spice/source_names.hpp"
#include "formats/spice/write_ground.hpp"
#include "formats/spice/write_names.hpp"
#include "formats/spice/write_ports.hpp"

namespace kinemo::formats::spice {

/// A port of a subgraph that the graph doesn't have, since it joins nothing inside or nothing outside. It is a formal
/// node all the same: users and texts of cards know it by its name.
struct OpenPort {
  SourceNet inside;
  std::string actual;  ///< the node of the level around it
  bool joins_outside;  ///< whether a component is at that node
};

/// A formal node of a definition and what the call gives for it.
struct FormalNode {
  std::string name;
  kmf::VnId connector;  ///< of the owner; empty for an open port
  std::string actual;   ///< of an open port
};

/// The nodes of one level. Lives while its level is written; refers to the graph, which must outlive it.
class LevelNodes {
 public:
  /// The owner is null for the top. `outside` are its connectors that are ground around it, `open` its open ports.
  LevelNodes(const gl::core::Component* owner, const gl::core::Graph& level, const Ids& outside,
             const std::vector<OpenPort>& open, const Grounds& grounds, const SubgraphPorts& ports,
             const SourceNames& source);

  /// The node at a connector; one of its own where the connector is tied to none.
  const std::string& at(const kmf::VnId& component, const kmf::VnId& connector) const;
  /// The node that the diagram has under that name, in any case of letters.
  std::optional<std::string> find(const std::string& name) const { return m_aliases.find(name); }
  std::string make(const std::string& wanted) { return m_taken.make(legal_name(wanted)); }
  /// What is ground inside of a definition is left out.
  const std::vector<FormalNode>& formals() const { return m_formals; }
  /// The connectors of a subgraph of this level whose nodes are ground here.
  Ids grounded_connectors(const kmf::VnId& component, const gl::core::Component& subgraph) const;
  std::vector<OpenPort> open_ports(const kmf::VnId& subgraph) const;

 private:
  /// A node of the graph, a connector that is tied to none, or the net at open ports.
  struct Point {
    std::vector<SourceNet> nets;
    std::vector<std::string> names;  ///< legal ones, the best one first
    std::vector<kmf::VnId> calls;    ///< the subgraphs at it
    kmf::VnId node;
    std::string fallback;
    std::string name;         ///< the one that is written
    bool is_touched = false;  ///< a component is at it
  };
  using Spec = std::pair<kmf::VnId, kmf::VnId>;  ///< component and connector

  void collect_nodes();
  void collect_connectors();
  void collect_open_ports();
  void touch(Point& point, const kmf::VnId& component, const kmf::VnId& connector) const;
  void find_names(Point& point, const std::map<std::string, kmf::VnId>& calls) const;
  bool is_always_ground(const Point& point) const;
  void add_aliases();
  bool claim(Point& point, std::size_t most_names);
  void name_points();
  void collect_inner_ends(const std::vector<OpenPort>& open);
  const Point* open_point(const OpenPort& port) const;
  void add_formals(const std::vector<OpenPort>& open);

  const gl::core::Component* m_owner;
  const gl::core::Graph& m_graph;
  const Grounds& m_grounds;
  const SubgraphPorts& m_ports;
  const SourceNames& m_source;
  Ids m_grounded;
  std::vector<Point> m_points;
  std::unordered_map<kmf::VnId, std::size_t> m_of_node;
  std::map<Spec, std::size_t> m_of_connector;
  std::unordered_map<SourceNet, std::size_t> m_of_net;
  std::map<kmf::VnId, std::vector<std::pair<SourceNet, std::size_t>>> m_open_ports;  ///< by subgraph: inside, point
  Aliases m_aliases;
  UniqueNames m_taken;
  std::vector<FormalNode> m_formals;
};

/// The elements of one level, as above.
class LevelElements {
 public:
  explicit LevelElements(const gl::core::Graph& level);

  /// The element of a component; empty for those that are no element.
  const std::string& of(const kmf::VnId& component) const;
  /// The element of the block of that name, in any case of letters.
  std::optional<std::string> find(const std::string& name) const { return m_aliases.find(name); }
  std::string make(const std::string& wanted) { return m_taken.make(legal_name(wanted)); }

 private:
  std::unordered_map<kmf::VnId, std::string> m_names;
  Aliases m_aliases;
  UniqueNames m_taken;
};

}  // namespace kinemo::formats::spice
