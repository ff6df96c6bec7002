#pragma once

// The tags of a node or a component: a few values by key, shared by copies until one of them is written.

#include "platform/graph_core/graph.hpp"

#include <memory>
#include <utility>
#include <vector>

namespace gl::core::detail {

/// Ordered by key. An entry of a graph has one or two tags, so a vector is smaller and quicker than a map.
struct NodeData {
  std::vector<std::pair<kmf::VnId, ParameterVariant>> tags;
};

/// A null pointer stands for no tags.
using Tags = std::shared_ptr<NodeData>;

void set_tag(Tags& tags, const kmf::VnId& key, const ParameterVariant& value);
/// Null when there is no tag of that key.
const ParameterVariant* find_tag(const Tags& tags, const kmf::VnId& key);
/// @throws "NoSuchTag" (key)
const ParameterVariant& tag_at(const Tags& tags, const kmf::VnId& key);
std::vector<kmf::VnId> tag_keys(const Tags& tags);
bool same_tags(const Tags& a, const Tags& b);

}  // namespace gl::core::detail
