// The names of one level of a netlist that is written: its nodes, its elements, and the formal nodes of its definition.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "formats/spice/source_names.hpp"
#include "formats/spice/write_ground.hpp"
#include "formats/spice/write_names.hpp"

namespace kinemo::formats::spice {

/// Lives while its level is written. Refers to the graph, which must outlive it.
class LevelNames {
 public:
  /// The owner is null for the top; `outside` are its connectors that are ground around it.
  LevelNames(const gl::core::Component* owner, const gl::core::Graph& level, const Ids& outside, const Grounds& grounds,
             const SourceNames& source);

  const gl::core::Graph& graph() const { return *m_graph; }
  /// The node that a connector is tied to; one of its own where it is tied to none.
  std::string node(const kmf::VnId& component, const kmf::VnId& connector);
  /// The element of a component; empty for those that are no element.
  const std::string& element(const kmf::VnId& component) const;
  /// Nodes and elements by the names that texts of the diagram may use for them, in any case of letters.
  std::optional<std::string> find_node(const std::string& name) const;
  std::optional<std::string> find_element(const std::string& name) const;
  std::string new_node(const std::string& wanted) { return m_node_names.make(legal_name(wanted)); }
  std::string new_element(const std::string& wanted) { return m_element_names.make(legal_name(wanted)); }
  /// Connectors of the owner and the names of the formal nodes for them; what is ground inside is left out.
  const std::vector<std::pair<kmf::VnId, std::string>>& formals() const { return m_formals; }
  /// The connectors of a subgraph of this level whose nodes are ground here.
  Ids grounded_connectors(const kmf::VnId& component, const gl::core::Component& subgraph) const;

 private:
  struct Candidate {
    kmf::VnId node;
    std::vector<std::string> names;  ///< legal ones, the best first
  };
  using Names = std::unordered_map<std::string, std::string>;  ///< lower case, to the name that is written

  void name_elements(const SourceNames& source);
  void name_nodes(const gl::core::Component* owner, const Grounds& grounds, const SourceNames& source);
  Candidate candidate(const kmf::VnId& node, const SourceNames& source) const;
  std::string without_clash(const std::string& name, const kmf::VnId& node) const;
  bool stays_formal(const gl::core::Component* owner, const Grounds& grounds, const Candidate& candidate) const;
  bool claim(const Candidate& candidate, std::size_t most_names);
  void set(const Candidate& candidate, const std::string& name);
  void add_formals(const gl::core::Component& owner);

  const gl::core::Graph* m_graph;
  Ids m_grounded;
  std::unordered_map<kmf::VnId, std::string> m_nodes;
  std::unordered_map<kmf::VnId, std::string> m_elements;
  std::unordered_map<std::string, kmf::VnId> m_calls;  ///< subgraphs by the names of their blocks, in lower case
  Names m_nodes_by_name;
  Names m_elements_by_name;
  UniqueNames m_node_names;
  UniqueNames m_element_names;
  std::vector<std::pair<kmf::VnId, std::string>> m_formals;
};

}  // namespace kinemo::formats::spice
