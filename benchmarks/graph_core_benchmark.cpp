// The graph core by itself, at sizes a thousand times apart. Time per entry is what to look at: apart from the
// logarithm of ordered containers it should not grow with the size. The counter "bytes" tells the heap that an entry
// costs.
//
//   graph_core_benchmark --benchmark_filter=Connect

#include "benchmarks/measure.hpp"
#include "platform/graph_core/graph.hpp"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

using gl::core::Component;
using gl::core::ConnectorSpec;
using gl::core::Graph;
using gl::core::Node;

constexpr std::size_t all_levels = static_cast<std::size_t>(-1);

void per_entry(benchmark::State& state, std::size_t entries) {
  benchmarks::report_time_per(state, entries, "per_entry");
}

Component resistor() {
  Component component("physical.resistor");
  component.addConnector("p", "physical.electrical");
  component.addConnector("n", "physical.electrical");
  component.addParameter("R", gl::core::Parameter(data2::core::Value(data2::core::ValueData(1e3))));
  return component;
}

/// Ids are made outside of what is measured: interning them is the business of the foundation.
std::vector<kmf::VnId> ids(const std::string& stem, std::size_t count) {
  std::vector<kmf::VnId> result;
  for (std::size_t i = 0; i < count; ++i) result.emplace_back(stem + std::to_string(i));
  return result;
}

/// A chain r0 - n1 - r1 - n2 - …, one level.
Graph chain(const std::vector<kmf::VnId>& components, const std::vector<kmf::VnId>& nodes) {
  Graph graph;
  for (const kmf::VnId& id : components) graph.insert(id, resistor());
  for (const kmf::VnId& id : nodes) graph.insert(id, Node());
  for (std::size_t i = 0; i + 1 < components.size(); ++i) {
    graph.insert(nodes[i], ConnectorSpec(components[i], "n"), "");
    graph.insert(nodes[i], ConnectorSpec(components[i + 1], "p"), "");
  }
  return graph;
}

Graph chain(std::size_t count) {
  return chain(ids("component_", count), ids("node_", count));
}

/// Resistors spread evenly over subgraphs inside each other, every level in two separate networks.
Graph nested(std::size_t count, std::size_t depth) {
  const std::size_t here = count / depth;
  Graph graph = chain(here);
  for (std::size_t level = 1; level < depth; ++level) {
    Component inner(graph, {});
    inner.exportNode("node_0", "a", "physical.electrical");
    graph = chain(here);
    graph.insert("inner", inner);
    graph.insert("node_0", ConnectorSpec("inner", "a"), "");
  }
  return graph;
}

void Insert(benchmark::State& state) {
  const std::vector<kmf::VnId> names = ids("component_", static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    Graph graph;
    for (const kmf::VnId& id : names) graph.insert(id, resistor());
    benchmark::DoNotOptimize(graph.components().size());
  }
  per_entry(state, names.size());
}
BENCHMARK(Insert)->RangeMultiplier(100)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void Connect(benchmark::State& state) {
  const std::size_t count = static_cast<std::size_t>(state.range(0));
  const std::vector<kmf::VnId> components = ids("component_", count);
  const std::vector<kmf::VnId> nodes = ids("node_", count);
  const std::size_t before = benchmarks::heap_bytes();
  std::size_t bytes = 0;
  for (auto _ : state) {
    const Graph graph = chain(components, nodes);
    state.PauseTiming();
    bytes = benchmarks::heap_bytes() - before;
    state.ResumeTiming();
  }
  per_entry(state, count);
  state.counters["bytes"] = static_cast<double>(bytes) / static_cast<double>(count);
}
BENCHMARK(Connect)->RangeMultiplier(100)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void Incident(benchmark::State& state) {
  const std::size_t count = static_cast<std::size_t>(state.range(0));
  const Graph graph = chain(count);
  const std::vector<kmf::VnId> components = ids("component_", count);
  for (auto _ : state) {
    for (const kmf::VnId& id : components) benchmark::DoNotOptimize(graph.incident(ConnectorSpec(id, "n").path()));
  }
  per_entry(state, count);
}
BENCHMARK(Incident)->RangeMultiplier(100)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void Copy(benchmark::State& state) {
  const Graph graph = chain(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    Graph copy = graph;
    benchmark::DoNotOptimize(copy);
  }
}
BENCHMARK(Copy)->RangeMultiplier(100)->Range(1000, 100000);

void Equality(benchmark::State& state) {
  const std::size_t count = static_cast<std::size_t>(state.range(0));
  const Graph one = chain(count);
  const Graph other = chain(count);
  for (auto _ : state) benchmark::DoNotOptimize(one == other);
  per_entry(state, count);
}
BENCHMARK(Equality)->RangeMultiplier(100)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

void ListComponents(benchmark::State& state) {
  const std::size_t count = static_cast<std::size_t>(state.range(0));
  const Graph graph = nested(count, static_cast<std::size_t>(state.range(1)));
  for (auto _ : state) {
    gl::core::Ids found;
    gl::core::detail::GraphIdBuilder builder(gl::core::detail::GraphIdTypePredicate<Component>(), {}, found);
    graph.buildIds(builder, {}, all_levels);
    benchmark::DoNotOptimize(found.size());
  }
  per_entry(state, count);
}
BENCHMARK(ListComponents)->ArgsProduct({{1000, 100000}, {1, 100}})->Unit(benchmark::kMillisecond);

void Pieces(benchmark::State& state) {
  const std::size_t count = static_cast<std::size_t>(state.range(0));
  const Graph graph = nested(count, static_cast<std::size_t>(state.range(1)));
  for (auto _ : state) benchmark::DoNotOptimize(gl::core::ConnectedComponents()(graph).size());
  per_entry(state, count);
}
BENCHMARK(Pieces)->ArgsProduct({{1000, 100000}, {1, 100}})->Unit(benchmark::kMillisecond);

/// Every resistor is a piece of its own.
void LonelyPieces(benchmark::State& state) {
  Graph inner;
  for (const kmf::VnId& id : ids("component_", static_cast<std::size_t>(state.range(0)))) inner.insert(id, resistor());
  Graph graph;
  graph.insert("inner", Component(inner, {}));
  for (auto _ : state) benchmark::DoNotOptimize(gl::core::ConnectedComponents()(graph).size());
  per_entry(state, static_cast<std::size_t>(state.range(0)));
}
BENCHMARK(LonelyPieces)->RangeMultiplier(100)->Range(1000, 100000)->Unit(benchmark::kMillisecond);

}  // namespace
