#include "common/gl/gti/src/kernel/translation/connector_sets.hpp"

#include "common/gl/gti/src/kernel/translation/graph_access.hpp"

namespace gl::gti {

void ConnectorSets::beginComponent(const kmf::VnId& component) {
  component_ = component;
  index_.clear();
}

std::size_t ConnectorSets::add(const kmf::VnId& connector) {
  const auto [at, isNew] = index_.emplace(connector, nodes_.size());
  const std::size_t number = at->second;
  if (isNew) {
    nodes_.push_back({gl::core::ConnectorSpec(component_, connector), number, boost::none});
    // Components come by name, as most precedences have it: often the end is the place.
    elements_.insert(elements_.end(), number);
  }
  return number;
}

void ConnectorSets::unite(std::size_t a, std::size_t b) {
  const std::size_t rootA = root(a);
  const std::size_t rootB = root(b);
  if (rootA == rootB) return;
  if (precedes(rootB, rootA)) {
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

bool ConnectorSets::precedes(std::size_t x, std::size_t y) {
  Node& a = nodes_[x];
  Node& b = nodes_[y];
  if (a.spec == b.spec) return false;
  const kmf::VnIdPath1& typeA = type(a);
  return precedence_(typeA, a.spec, type(b), b.spec);
}

const kmf::VnIdPath1& ConnectorSets::type(Node& node) const {
  if (!node.type) node.type = fetch<gl::core::Connector>(graph_, node.spec.path()).type();
  return *node.type;
}

}  // namespace gl::gti
