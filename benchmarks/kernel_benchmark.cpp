// The kernel's share of a compile, sized by (blocks, depth): taking a network in (connectivity and block entries), and
// making its model (components, the fold, boundaries). The host has evaluated the parameters before. Time per block is
// what to look at: it should grow neither with the size nor with the depth.

#include "benchmarks/measure.hpp"
#include "benchmarks/network.hpp"
#include "benchmarks/shapes.hpp"

namespace {

using benchmarks::Network;

benchmarks::Diagram& diagram_of(const benchmark::State& state) {
  const auto blocks = static_cast<std::size_t>(state.range(0));
  const auto depth = static_cast<std::size_t>(state.range(1));
  return depth == 0 ? benchmarks::flat("m", blocks) : benchmarks::chain("m", blocks, depth);
}

void Intake(benchmark::State& state) {
  const Network network(diagram_of(state), static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) network.takeIn();
  network.report(state);
}

void Fold(benchmark::State& state) {
  const Network network(diagram_of(state), static_cast<std::size_t>(state.range(0)));
  network.takeIn();
  for (auto _ : state) {
    const gl::core::Model model = network.model();
    benchmark::DoNotOptimize(&model);
  }
  network.report(state);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
  benchmark->ArgNames({"blocks", "depth"})->Unit(benchmark::kMillisecond)->UseRealTime();
  for (const int blocks : {1000, 10000, 100000}) benchmark->Args({blocks, 0})->Args({blocks, 10});
  benchmark->Args({10000, 100})->Args({10000, 1000})->Args({100000, 1000});
}

BENCHMARK(Intake)->Apply(sizes);
BENCHMARK(Fold)->Apply(sizes);

}  // namespace

int main(int argc, char** argv) {
  return benchmarks::run_in_environment(argc, argv);
}
