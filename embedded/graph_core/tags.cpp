#include "embedded/graph_core/tags.hpp"

#include "embedded/graph_core/errors.hpp"

#include <algorithm>

namespace gl::core::detail {

namespace {

template <class List>
auto place_of(List& list, const kmf::VnId& key) {
  return std::lower_bound(list.begin(), list.end(), key,
                          [](const auto& tag, const kmf::VnId& wanted) { return tag.first < wanted; });
}

}  // namespace

void set_tag(Tags& tags, const kmf::VnId& key, const ParameterVariant& value) {
  ParameterVariant kept = value;  // may lie in the list that is written
  if (!tags) {
    tags = std::make_shared<NodeData>();
  } else if (tags.use_count() != 1) {
    tags = std::make_shared<NodeData>(*tags);
  }
  auto& list = tags->tags;
  const auto at = place_of(list, key);
  if (at != list.end() && at->first == key) {
    at->second = std::move(kept);
  } else {
    list.emplace(at, key, std::move(kept));
  }
}

const ParameterVariant* find_tag(const Tags& tags, const kmf::VnId& key) {
  if (!tags) return nullptr;
  const auto& list = tags->tags;
  const auto at = place_of(list, key);
  return at != list.end() && at->first == key ? &at->second : nullptr;
}

const ParameterVariant& tag_at(const Tags& tags, const kmf::VnId& key) {
  const ParameterVariant* found = find_tag(tags, key);
  if (found == nullptr) throw_no_such_tag(key);
  return *found;
}

std::vector<kmf::VnId> tag_keys(const Tags& tags) {
  std::vector<kmf::VnId> keys;
  if (!tags) return keys;
  keys.reserve(tags->tags.size());
  for (const auto& tag : tags->tags) keys.push_back(tag.first);
  return keys;
}

bool same_tags(const Tags& a, const Tags& b) {
  if (a == b) return true;
  return a && b && a->tags == b->tags;
}

}  // namespace gl::core::detail
