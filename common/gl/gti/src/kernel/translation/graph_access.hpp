#pragma once

// Typed access to the entries of graphs and components, over the graph core's untyped one.

#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <cstddef>

namespace gl::gti {

/// Depth of a listing without a limit.
constexpr std::size_t allDepths = static_cast<std::size_t>(-1);

/// What an address in a graph or component leads to. Valid until the graph is changed or ends.
/// @throws the graph core's "EntryNameNotFound" and "EntryTypeMismatch" (address)
template <class T, class Container>
const T& fetch(const Container& container, const kmf::VnIdPathIterator& address) {
  static const gl::core::detail::GraphIdTypePredicate<T> predicate{};
  const gl::core::detail::FindResult found = container.findEntry(address, predicate);
  if (boost::get<gl::core::detail::NotFound>(&found) != nullptr) {
    gl::core::detail::throw_entry_name_not_found(address);
  }
  if (boost::get<gl::core::detail::TypeMismatch>(&found) != nullptr) gl::core::detail::throw_type_mismatch(address);
  return *boost::get<const T*>(boost::get<gl::core::GraphEntryRef>(found));
}

/// The addresses of all entries of a type below `start`, down to `depth` levels.
template <class T, class Container>
gl::core::Ids idsOf(const Container& container, const kmf::VnIdPathIterator& start, std::size_t depth) {
  gl::core::Ids ids;
  gl::core::detail::GraphIdBuilder builder(gl::core::detail::GraphIdTypePredicate<T>{}, kmf::VnIdPath(), ids);
  container.buildIds(builder, start, depth);
  return ids;
}

}  // namespace gl::gti
