#include "common/gl/gti/src/kernel/translation/connector_sets.hpp"

#include "common/gl/gti/src/kernel/translation/graph_access.hpp"

#include <algorithm>
#include <numeric>

namespace gl::gti {

void ConnectorSets::beginComponent(const kmf::VnId& component) {
  component_ = component;
  index_.clear();
}

std::size_t ConnectorSets::add(const kmf::VnId& connector) {
  const auto [at, isNew] = index_.emplace(connector, nodes_.size());
  if (isNew) nodes_.push_back({gl::core::ConnectorSpec(component_, connector), nodes_.size(), nullptr});
  return at->second;
}

void ConnectorSets::readTypes() {
  for (Node& node : nodes_) node.type = &fetch<gl::core::Connector>(graph_, node.spec.path()).type();
}

void ConnectorSets::unite(std::size_t a, std::size_t b) {
  const std::size_t rootA = root(a);
  const std::size_t rootB = root(b);
  if (rootA == rootB) return;
  if (precedes(nodes_[rootB], nodes_[rootA])) {
    nodes_[rootA].parent = rootB;
  } else {
    nodes_[rootB].parent = rootA;
  }
}

std::size_t ConnectorSets::root(std::size_t number) {
  while (nodes_[number].parent != number) {
    nodes_[number].parent = nodes_[nodes_[number].parent].parent;
    number = nodes_[number].parent;
  }
  return number;
}

std::vector<std::size_t> ConnectorSets::classes() {
  std::vector<std::size_t> roots;
  for (std::size_t i = 0; i < nodes_.size(); ++i) {
    if (nodes_[i].parent == i) roots.push_back(i);
  }
  return roots;
}

std::vector<std::size_t> ConnectorSets::elements() const {
  std::vector<std::size_t> ordered(nodes_.size());
  std::iota(ordered.begin(), ordered.end(), std::size_t{0});
  // Merging keeps within the range whatever a client's function answers.
  const auto before = [this](std::size_t x, std::size_t y) { return precedes(nodes_[x], nodes_[y]); };
  // Components come by name, as most precedences have it: often it's enough to sort the connectors of each.
  for (auto first = ordered.begin(); first != ordered.end();) {
    const kmf::VnId& component = nodes_[*first].spec.componentId();
    const auto last = std::find_if(first, ordered.end(),
                                   [&](std::size_t number) { return nodes_[number].spec.componentId() != component; });
    std::stable_sort(first, last, before);
    first = last;
  }
  if (!std::is_sorted(ordered.begin(), ordered.end(), before)) {
    std::stable_sort(ordered.begin(), ordered.end(), before);
  }
  return ordered;
}

bool ConnectorSets::precedes(const Node& x, const Node& y) const {
  return x.spec != y.spec && precedence_(*x.type, x.spec, *y.type, y.spec);
}

}  // namespace gl::gti
