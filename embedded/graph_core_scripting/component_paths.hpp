#pragma once

// How users name components: "Filter/R1". Each name is an identifier of the graph, or else the name of the block that
// the component was made of. A slash within a block's name is written twice. A cell array of names is a path, too.

#include "platform/graph_core/graph.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <string>
#include <vector>

namespace embedded::graph_core_scripting {

/// The names of a path; an empty text has none.
/// @throws "kinemo:scripting:array" "NotText" for anything but a text or a cell array of texts
std::vector<std::string> names_in(const cvArray_tag* path);
std::vector<std::string> names_in(const std::string& path);

/// The way to a component. Pointers are valid as long as the graph that was asked.
struct FoundComponent {
  kmf::VnIdPath address;
  /// The graphs on the way: that which was asked first, that which holds the component last.
  std::vector<const gl::core::Graph*> graphs;
  /// The components on the way, as long as `address`; the last one is what was asked for.
  std::vector<const gl::core::Component*> components;

  const gl::core::Component& component() const { return *components.back(); }
};

/// @throws "kinemo:graph:scripting" "NoSuchComponent" (name, path of the graph, "/" at the top), with the nearest name
/// as its cause, "NotASubgraph" (path), and "EmptyPath"
FoundComponent find_component(const gl::core::Graph& graph, const std::vector<std::string>& names);
/// The graph inside a component; `graph` itself for no names. @throws as `find_component`
const gl::core::Graph& find_graph(const gl::core::Graph& graph, const std::vector<std::string>& names);

/// A name of an entry in one level: an identifier, or a block's name. Null where there is none.
const std::pair<const kmf::VnId, gl::core::Component>* component_named(const gl::core::Graph& graph,
                                                                       const std::string& name);

}  // namespace embedded::graph_core_scripting
