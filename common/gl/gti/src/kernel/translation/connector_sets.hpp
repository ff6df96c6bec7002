#pragma once

#include "common/gl/gti/export/translation_configuration.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/noncopyable.hpp>
#include <boost/optional.hpp>
#include <boost/unordered_map.hpp>

#include <cstddef>
#include <set>
#include <vector>

namespace gl::gti {

/// The connectors of one system, merged into nodes. A connector is named by its number, which counts from 0.
///
/// The algebra: a merge makes the connector that precedes the other the representative of both sides. For a strict
/// ordering of distinct connectors, which a configuration must give, "the one that precedes" is the minimum:
/// commutative, associative and idempotent, with a connector on its own as identity. So the representative doesn't
/// depend on the order of merges, and paths to it may be shortened at any time.
class ConnectorSets : private boost::noncopyable {
  /// Compares connectors by number.
  struct Precedes {
    ConnectorSets* sets;
    bool operator()(std::size_t x, std::size_t y) const { return sets->precedes(x, y); }
  };

 public:
  /// In order of precedence. A configuration's function must break its ties; where it doesn't, connectors of which
  /// neither precedes stand in the order in which they were added.
  using Elements = std::multiset<std::size_t, Precedes>;

  /// `graph` must outlive the sets. It may grow in between.
  ConnectorSets(const gl::core::Graph& graph, const ConnectorPrecedenceFcn& precedence)
      : graph_(graph), precedence_(precedence), elements_(Precedes{this}) {}

  void reserve(std::size_t count) { nodes_.reserve(count); }
  /// From here on connectors of this component are added, which must be in the graph. Each component comes once.
  void beginComponent(const kmf::VnId& component);
  /// The number of a connector of the component, a new one for a connector that isn't there yet, which then is compared
  /// with those before it. @throws the graph core's errors for a connector that its component doesn't have; whatever
  /// the precedence raises
  std::size_t add(const kmf::VnId& connector);

  /// Merges the sets of two connectors. On a tie the side of `a` wins.
  void unite(std::size_t a, std::size_t b);
  std::size_t root(std::size_t number);
  const gl::core::ConnectorSpec& spec(std::size_t number) const { return nodes_[number].spec; }
  std::size_t size() const { return nodes_.size(); }

  /// The representatives, ascending by number.
  std::vector<std::size_t> classes();
  const Elements& elements() const { return elements_; }

 private:
  struct Node {
    gl::core::ConnectorSpec spec;
    std::size_t parent;
    boost::optional<kmf::VnIdPath1> type;  ///< once it was asked for
  };

  bool precedes(std::size_t x, std::size_t y);
  const kmf::VnIdPath1& type(Node& node) const;

  const gl::core::Graph& graph_;
  ConnectorPrecedenceFcn precedence_;
  std::vector<Node> nodes_;
  Elements elements_;
  kmf::VnId component_;
  boost::unordered_map<kmf::VnId, std::size_t> index_;  ///< of the component's connectors
};

}  // namespace gl::gti
