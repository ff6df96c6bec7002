#include "views/layout/dot_engine.hpp"

#include <graphviz/gvc.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace kinemo::views::layout {

namespace {

constexpr double points_per_inch = 72;

int quiet(char*) {
  return 0;
}

/// cgraph takes texts that it doesn't change as `char*`.
char* text(const char* it) {
  return const_cast<char*>(it);
}

struct Close {
  void operator()(Agraph_t* graph) const { agclose(graph); }
};

/// One for the process, as Graphviz keeps its plug-ins once they are loaded.
GVC_t* context() {
  static const std::unique_ptr<GVC_t, int (*)(GVC_t*)> it(gvContext(), gvFreeContext);
  return it.get();
}

void set(void* object, const char* name, const std::string& value) {
  agsafeset(object, text(name), text(value.c_str()), text(""));
}

/// Graphviz counts the steps that it takes to straighten edges by node. Few boxes deserve more care.
std::string steps_by_node(std::size_t nodes) {
  constexpr std::size_t steps = 6'000;
  return std::to_string(std::max<std::size_t>(steps / std::max<std::size_t>(nodes, 1), 1));
}

void declare(Agraph_t* graph) {
  const auto attribute = [&](int kind, const char* name, const char* value) {
    agattr(graph, kind, text(name), text(value));
  };
  attribute(AGRAPH, "rankdir", "LR");
  attribute(AGRAPH, "splines", "none");
  attribute(AGRAPH, "ranksep", "0.2");
  attribute(AGNODE, "shape", "none");
  attribute(AGNODE, "label", "");
  attribute(AGNODE, "margin", "0");
  attribute(AGNODE, "fixedsize", "true");
  attribute(AGEDGE, "weight", "1");
  attribute(AGEDGE, "tailport", "");
  attribute(AGEDGE, "headport", "");
}

std::string row(long height, const std::string& attributes) {
  return "<TR><TD" + attributes + " HEIGHT=\"" + std::to_string(height) + "\"></TD></TR>";
}

/// Graphviz' name for a layer without others.
void gather(Agraph_t* graph, const std::vector<Agnode_t*>& places, const std::vector<DotNode>& nodes, DotLayer layer) {
  const char* const rank = layer == DotLayer::first ? "source" : "sink";
  Agraph_t* group = nullptr;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    if (nodes[i].layer != layer) continue;
    if (!group) group = agsubg(graph, text(rank), 1);
    agsubnode(group, places[i], 1);
  }
  if (group) set(group, "rank", rank);
}

/// Ports of equal height are one.
std::string port_name(double height) {
  return std::to_string(std::lround(height));
}

/// A table with a row of two points at each port, so that ports are where the pins are.
std::string table(const DotNode& node) {
  std::set<long> ports;
  for (const double port : node.ports) ports.insert(std::lround(port));
  const std::string width = " WIDTH=\"" + std::to_string(std::lround(node.width)) + '"';
  std::string rows;
  long y = 0;
  for (const long port : ports) {
    if (port - 1 > y) {
      rows += row(port - 1 - y, width);
      y = port - 1;
    }
    rows += row(2, width + " PORT=\"" + std::to_string(port) + '"');
    y += 2;
  }
  const long rest = std::lround(node.height) - y;
  if (rest > 0) rows += row(rest, width);
  return "<TABLE BORDER=\"0\" CELLBORDER=\"0\" CELLSPACING=\"0\" CELLPADDING=\"0\">" + rows + "</TABLE>";
}

Agnode_t* add(Agraph_t* graph, const DotNode& node, std::size_t index) {
  Agnode_t* it = agnode(graph, text(std::to_string(index).c_str()), 1);
  set(it, "width", std::to_string(node.width / points_per_inch));
  set(it, "height", std::to_string(node.height / points_per_inch));
  if (!node.ports.empty()) {
    char* html = agstrdup_html(graph, text(table(node).c_str()));
    agset(it, text("label"), html);
    agstrfree(graph, html);
  }
  return it;
}

void connect(Agraph_t* graph, const std::vector<Agnode_t*>& places, const std::vector<DotNode>& nodes,
             const DotEdge& edge) {
  Agedge_t* it = agedge(graph, places[edge.tail.node], places[edge.head.node], nullptr, 1);
  const auto port = [&](const DotEnd& end, const char* side) {
    return nodes[end.node].ports.empty() ? std::string() : port_name(nodes[end.node].ports[end.port]) + side;
  };
  set(it, "weight", std::to_string(edge.weight));
  set(it, "tailport", port(edge.tail, ":e"));
  set(it, "headport", port(edge.head, ":w"));
}

std::vector<DotPlace> places_of(const std::vector<Agnode_t*>& nodes, const std::vector<DotNode>& sizes) {
  std::vector<DotPlace> result;
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    result.push_back({ND_rank(nodes[i]), -ND_coord(nodes[i]).y - sizes[i].height / 2});
  }
  return result;
}

}  // namespace

std::optional<std::vector<DotPlace>> dot_layers(const std::vector<DotNode>& nodes, const std::vector<DotEdge>& edges,
                                                double node_distance) {
  static std::mutex one_at_a_time;
  const std::lock_guard lock(one_at_a_time);
  agseterrf(quiet);
  GVC_t* const engine = context();
  if (!engine) return std::nullopt;
  const std::unique_ptr<Agraph_t, Close> graph(agopen(text("layout"), Agdirected, nullptr));
  if (!graph) return std::nullopt;
  declare(graph.get());
  for (const char* limit : {"nslimit", "nslimit1"})
    agattr(graph.get(), AGRAPH, text(limit), text(steps_by_node(nodes.size()).c_str()));
  set(graph.get(), "nodesep", std::to_string(node_distance / points_per_inch));
  std::vector<Agnode_t*> places;
  for (std::size_t i = 0; i < nodes.size(); ++i) places.push_back(add(graph.get(), nodes[i], i));
  for (const DotLayer it : {DotLayer::first, DotLayer::last}) gather(graph.get(), places, nodes, it);
  for (const DotEdge& edge : edges) connect(graph.get(), places, nodes, edge);
  if (gvLayout(engine, graph.get(), "dot") != 0) return std::nullopt;
  std::optional<std::vector<DotPlace>> result = places_of(places, nodes);
  gvFreeLayout(engine, graph.get());
  return result;
}

}  // namespace kinemo::views::layout
