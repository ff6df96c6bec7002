#pragma once

#include "common/gl/gti/export/translation_configuration.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/unordered_map.hpp>

#include <cstddef>
#include <vector>

namespace gl::gti {

/// The connectors of one system, merged into nodes. A connector is named by its number, which counts from 0.
///
/// The algebra: a merge makes the connector that precedes the other the representative of both sides. For a strict
/// ordering of distinct connectors, which a configuration must give, "the one that precedes" is the minimum:
/// commutative, associative and idempotent, with a connector on its own as identity. So the representative doesn't
/// depend on the order of merges, and paths to it may be shortened at any time.
class ConnectorSets {
 public:
  /// `graph` must outlive the sets.
  ConnectorSets(const gl::core::Graph& graph, const ConnectorPrecedenceFcn& precedence)
      : graph_(graph), precedence_(precedence) {}

  void reserve(std::size_t count) { nodes_.reserve(count); }
  /// From here on connectors of this component are added. Each component comes once.
  void beginComponent(const kmf::VnId& component);
  /// The number of a connector of the component, a new one for a connector that isn't there yet.
  std::size_t add(const kmf::VnId& connector);
  /// To be called once all connectors are added and their components are in the graph, which must not change after that
  /// while connectors are compared. @throws the graph core's errors for a connector that its component doesn't have
  void readTypes();

  /// Merges the sets of two connectors. On a tie the side of `a` wins.
  void unite(std::size_t a, std::size_t b);
  std::size_t root(std::size_t number);
  const gl::core::ConnectorSpec& spec(std::size_t number) const { return nodes_[number].spec; }
  std::size_t size() const { return nodes_.size(); }

  /// The representatives, ascending by number.
  std::vector<std::size_t> classes();
  /// All connectors in order of precedence.
  std::vector<std::size_t> elements() const;

 private:
  struct Node {
    gl::core::ConnectorSpec spec;
    std::size_t parent;
    const kmf::VnIdPath1* type;
  };

  bool precedes(const Node& x, const Node& y) const;

  const gl::core::Graph& graph_;
  ConnectorPrecedenceFcn precedence_;
  std::vector<Node> nodes_;
  kmf::VnId component_;
  boost::unordered_map<kmf::VnId, std::size_t> index_;  ///< of the component's connectors
};

}  // namespace gl::gti
