#pragma once

// Layers of a graph by Graphviz' dot, from left to right. It isn't reentrant: one run at a time in a process.

#include <cstddef>
#include <optional>
#include <vector>

namespace kinemo::views::layout {

enum class DotLayer { any, first, last };

struct DotNode {
  double width = 0;
  double height = 0;
  std::vector<double> ports;       ///< heights of the ends of edges, from the upper edge downward
  DotLayer layer = DotLayer::any;  ///< no other nodes stand in the first and the last layer, where any want to be there
};

struct DotEnd {
  std::size_t node = 0;
  std::size_t port = 0;  ///< nodes without ports: any
};

/// Runs from the right side of its tail to the left side of its head.
struct DotEdge {
  DotEnd tail;
  DotEnd head;
  int weight = 1;  ///< heavy ones run straight first
};

struct DotPlace {
  int layer = 0;
  double top = 0;
};

/// The places of the nodes, or nothing if Graphviz can't do it (a missing plug-in, for example).
std::optional<std::vector<DotPlace>> dot_layers(const std::vector<DotNode>& nodes, const std::vector<DotEdge>& edges,
                                                double node_distance);

}  // namespace kinemo::views::layout
