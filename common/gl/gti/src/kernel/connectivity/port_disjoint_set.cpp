#include "common/gl/gti/src/kernel/connectivity/port_disjoint_set.hpp"

#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "platform/foundation/checked.hpp"

namespace gl::gti {

void PortDisjointSet::unite(double a, double b) {
  const std::size_t rootA = root(kmf::boost_unordered_map_at(index_, a));
  const std::size_t rootB = root(kmf::boost_unordered_map_at(index_, b));
  if (rootA == rootB) return;
  if (nodes_[rootA].value > nodes_[rootB].value) {
    nodes_[rootA].parent = rootB;
  } else {
    nodes_[rootB].parent = rootA;
  }
}

double PortDisjointSet::find(double value) {
  return nodes_[root(kmf::boost_unordered_map_at(index_, value))].value;
}

const double* PortDisjointSet::findIfKnown(double value) {
  const auto found = index_.find(value);
  return found == index_.end() ? nullptr : &nodes_[root(found->second)].value;
}

std::vector<double> PortDisjointSet::representatives() const {
  std::vector<double> found;
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    if (nodes_[i].parent == i) found.push_back(nodes_[i].value);
  }
  sortHandles(found);
  return found;
}

std::vector<double> PortDisjointSet::values() const {
  std::vector<double> found;
  found.reserve(nodes_.size());
  for (const Node& node : nodes_) found.push_back(node.value);
  sortHandles(found);
  return found;
}

std::size_t PortDisjointSet::indexOf(double value) {
  const auto [at, isNew] = index_.emplace(value, nodes_.size());
  if (isNew) nodes_.push_back({value, nodes_.size()});
  return at->second;
}

std::size_t PortDisjointSet::root(std::size_t node) {
  while (nodes_[node].parent != node) {
    nodes_[node].parent = nodes_[nodes_[node].parent].parent;
    node = nodes_[node].parent;
  }
  return node;
}

}  // namespace gl::gti
