// What it costs to keep run-time parameters, sized by (blocks, depth): the making of a model without and with
// propagation, and the evaluation of the model for other values. The resistance of every block depends on one run-time
// variable, through the masks of all subsystems around it. Time per block is what to look at: it should grow neither
// with the size nor with the depth, and propagation should cost less than the rest of the making.

#include "benchmarks/measure.hpp"
#include "benchmarks/network.hpp"
#include "benchmarks/shapes.hpp"

#include "embedded/graph_core_scripting/model_values.hpp"

namespace {

using benchmarks::Network;

benchmarks::Diagram& diagram_of(const benchmark::State& state) {
  return benchmarks::tunable("m", static_cast<std::size_t>(state.range(0)), static_cast<std::size_t>(state.range(1)));
}

void make(benchmark::State& state, bool propagate) {
  const Network network(diagram_of(state), static_cast<std::size_t>(state.range(0)));
  network.takeIn(propagate);
  for (auto _ : state) {
    const gl::core::Model model = network.model();
    benchmark::DoNotOptimize(&model);
  }
  network.report(state);
}

void Translate(benchmark::State& state) {
  make(state, false);
}

void TranslateAndPropagate(benchmark::State& state) {
  make(state, true);
}

void Evaluate(benchmark::State& state) {
  const Network network(diagram_of(state), static_cast<std::size_t>(state.range(0)));
  network.takeIn(true);
  const gl::core::Model model = network.model();
  for (auto _ : state) {
    const gl::core::Graph graph = embedded::graph_core_scripting::ModelValues(model, {{"x", 5.0}}).evaluated();
    benchmark::DoNotOptimize(&graph);
  }
  network.report(state);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"blocks", "depth"})->Unit(benchmark::kMillisecond)->UseRealTime();
  for (const int depth : {0, 3, 10}) {
    for (const int blocks : {1000, 10000, 100000}) benchmark->Args({blocks, depth});
  }
  benchmark->Args({1000, 1000})->Args({10000, 1000})->Args({100000, 1000});
}

BENCHMARK(Translate)->Apply(sizes);
BENCHMARK(TranslateAndPropagate)->Apply(sizes);
BENCHMARK(Evaluate)->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
  return benchmarks::run_in_environment(argc, argv);
}
