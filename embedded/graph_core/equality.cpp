// Equality of graphs and components by their structure. What two values share is never looked into, and a pair of
// nested graphs is compared once however often it occurs.
//
// The order of a leaf's connectors belongs to its value, since it numbers the pins of the component. The order in which
// the nodes of a subgraph were exported doesn't: its connectors are told apart by their ids alone.

#include "embedded/graph_core/contents.hpp"

#include <boost/functional/hash.hpp>

#include <unordered_set>
#include <utility>
#include <vector>

namespace gl::core {

namespace detail {

namespace {

class Comparison {
 public:
  /// Whether two components are equal; inner graphs are put off.
  bool equal(const Component& a, const Component& b) {
    const ComponentData& x = Access::of(a);
    const ComponentData& y = Access::of(b);
    if (&x == &y) return true;
    if (a.isSubgraph() != b.isSubgraph() || !same_tags(x.tags, y.tags) || !same_parameters(x, y)) return false;
    if (!a.isSubgraph()) return same_order(x.shape, y.shape);
    put_off(a.graph(), b.graph());
    return same_connectors(x.shape, y.shape) && same_exports(a, b);
  }

  void put_off(const Graph& a, const Graph& b) {
    const Pair pair(&Access::of(a), &Access::of(b));
    if (pair.first != pair.second && seen_.insert(pair).second) pending_.push_back(pair);
  }

  /// Compares what was put off.
  bool finish() {
    while (!pending_.empty()) {
      const Pair pair = pending_.back();
      pending_.pop_back();
      if (!equal(*pair.first, *pair.second)) return false;
    }
    return true;
  }

 private:
  using Pair = std::pair<const GraphData*, const GraphData*>;

  static bool same_parameters(const ComponentData& a, const ComponentData& b) {
    return a.parameters == b.parameters || parameters_of(a) == parameters_of(b);
  }

  /// For subgraphs of equally many connectors.
  static bool same_exports(const Component& a, const Component& b) {
    for (const kmf::VnId& node : Access::of(a).subgraph->exportedNodes) {
      if (!b.isExported(node) || a.mapExported(node) != b.mapExported(node)) return false;
    }
    return true;
  }

  bool equal(const GraphData& a, const GraphData& b) {
    if (a.components.size() != b.components.size() || a.connections.size() != b.connections.size()) return false;
    if (a.nodes != b.nodes || !(a.connections == b.connections)) return false;
    auto other = b.components.begin();
    for (const auto& entry : a.components) {
      if (entry.first != other->first || !equal(entry.second, other->second)) return false;
      ++other;
    }
    return true;
  }

  std::vector<Pair> pending_;
  std::unordered_set<Pair, boost::hash<Pair>> seen_;
};

}  // namespace

}  // namespace detail

bool operator==(const Component& a, const Component& b) {
  detail::Comparison comparison;
  return comparison.equal(a, b) && comparison.finish();
}

bool operator==(const Graph& a, const Graph& b) {
  detail::Comparison comparison;
  comparison.put_off(a, b);
  return comparison.finish();
}

}  // namespace gl::core
