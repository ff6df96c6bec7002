#include "embedded/graph_core/tags.hpp"

namespace gl::core {

Node::Node() = default;

void Node::tag(const kmf::VnId& key, const ParameterVariant& value) {
  detail::set_tag(data_, key, value);
}

const ParameterVariant& Node::tag(const kmf::VnId& key) const {
  return detail::tag_at(data_, key);
}

bool Node::hasTag(const kmf::VnId& key) const {
  return detail::find_tag(data_, key) != nullptr;
}

std::vector<kmf::VnId> Node::tags() const {
  return detail::tag_keys(data_);
}

bool operator==(const Node& a, const Node& b) {
  return detail::same_tags(a.data_, b.data_);
}

}  // namespace gl::core
