#pragma once

// The graph core's errors beside those of the interface.

#include "platform/graph_core/graph.hpp"

namespace gl::core::detail {

[[noreturn]] void throw_no_such_tag(const kmf::VnId& key);
[[noreturn]] void throw_duplicate_entry(const kmf::VnId& id);
[[noreturn]] void throw_already_connected(const ConnectorSpec& connector, const kmf::VnId& node);
[[noreturn]] void throw_parameter_type_mismatch(const kmf::VnIdPathIterator& address);

/// Ends with the error that belongs to what a search came to, unless it found something.
const GraphEntryRef& found_or_throw(const FindResult& result, const kmf::VnIdPathIterator& address);

}  // namespace gl::core::detail
