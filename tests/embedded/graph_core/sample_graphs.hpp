#pragma once

// Graphs that serve many tests of the graph core, and helpers to read errors and addresses.

#include "platform/foundation/exception.hpp"
#include "platform/graph_core/graph.hpp"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace gl::core::test {

constexpr std::size_t all_levels = static_cast<std::size_t>(-1);

inline ParameterVariant text(const char16_t* value) {
  return ustring(value);
}

inline ParameterVariant number(double value, const char* unit = "") {
  return data2::core::Value(data2::core::ValueData(value, units2::core::parse(unit)));
}

/// A leaf with the connectors p and n and the parameter R.
inline Component resistor() {
  Component component("physical.resistor");
  component.addConnector("p", "physical.electrical");
  component.addConnector("n", "physical.electrical");
  component.addParameter("R", Parameter(number(1e3, "Ohm"), ParameterType::number(units2::core::parse("Ohm"))));
  return component;
}

/// Connects connectors told as "component.connector" to a node, which is made where it is missing.
inline void connect(Graph& graph, const char* node, const std::vector<std::string>& connectors) {
  if (graph.nodes().count(node) == 0) graph.insert(kmf::VnId(node), Node());
  for (const std::string& connector : connectors) {
    const std::size_t dot = connector.find('.');
    graph.insert(node, ConnectorSpec(connector.substr(0, dot), connector.substr(dot + 1)), "");
  }
}

/// r1 and r2 in series between the exported nodes left (as a) and right (as b), with the mask parameter gain:
///
///   a = left --p r1 n-- middle --p r2 n-- right = b
inline Component divider() {
  Graph graph;
  graph.insert("r1", resistor());
  graph.insert("r2", resistor());
  connect(graph, "left", {"r1.p"});
  connect(graph, "middle", {"r1.n", "r2.p"});
  connect(graph, "right", {"r2.n"});
  Component component(graph, {{"gain", Parameter(number(2))}});
  component.exportNode("left", "a", "physical.electrical");
  component.exportNode("right", "b", "physical.electrical");
  return component;
}

/// The divider d and a resistor load beside it, on the nodes top and bottom.
inline Graph loaded_divider() {
  Graph graph;
  graph.insert("d", divider());
  graph.insert("load", resistor());
  connect(graph, "top", {"d.a", "load.p"});
  connect(graph, "bottom", {"d.b", "load.n"});
  return graph;
}

/// A resistor inside so many subgraphs, each called s; every level exports the resistor's two nodes as p and n.
inline Graph nested(std::size_t levels) {
  Graph graph;
  Component innermost = resistor();
  innermost.tag(OBJECT(), ustring(u"block"));
  graph.insert("s", innermost);
  for (std::size_t level = 0; level < levels; ++level) {
    connect(graph, "x", {"s.p"});
    connect(graph, "y", {"s.n"});
    Component component(graph, {});
    component.exportNode("x", "p", "physical.electrical");
    component.exportNode("y", "n", "physical.electrical");
    graph = Graph();
    graph.insert("s", component);
  }
  return graph;
}

/// Id and arguments of the error that a call ends in, as "id(arguments)"; empty when it ends in none.
template <class Call>
std::string error_of(Call call) {
  try {
    call();
  } catch (const kmf::MessageException& error) {
    const kmf::MessageId& id = error.message().identifier();
    EXPECT_EQ(id.group, "kinemo:graph:core");
    std::string arguments;
    for (const auto& argument : id.arguments) {
      arguments += (arguments.empty() ? "" : ", ") + kmf::argument_text(argument);
    }
    return id.id + "(" + arguments + ")";
  }
  return {};
}

/// The addresses, joined by blanks.
inline std::string joined(const Ids& ids) {
  std::string result;
  for (const kmf::VnIdPath& id : ids) result += (result.empty() ? "" : " ") + std::string(id);
  return result;
}

}  // namespace gl::core::test
