#pragma once

// What an address in a graph or a component leads to.
//
// An address can lead to several things at once: a subgraph component is a component and a graph; the connector of a
// subgraph may be called like an inner node; a parameter is a parameter and its value. The predicate decides. All
// candidates are asked in a fixed order, and the first that passes is the answer.

#include "platform/graph_core/graph.hpp"

namespace gl::core::detail {

FindResult resolve(const Graph& graph, kmf::VnIdPathIterator at, const IdPredicate<GraphEntryRef>& predicate);
FindResult resolve(const Component& component, kmf::VnIdPathIterator at, const IdPredicate<GraphEntryRef>& predicate);

/// The entry of type `T` at the address. @throws "EntryNameNotFound", "EntryTypeMismatch"
template <class T, class Start>
const T& resolved(const Start& start, const kmf::VnIdPathIterator& at);

}  // namespace gl::core::detail
