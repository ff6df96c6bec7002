// The whole compile of a diagram, shape by shape. Time per block is what to look at: it should not grow with the size.
//
//   compile_benchmark --benchmark_filter=Compile/chain

#include "benchmarks/measure.hpp"
#include "benchmarks/shapes.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "formats/diagnostics.hpp"
#include "formats/spice/read_netlist.hpp"

#include <benchmark/benchmark.h>

#include <functional>

namespace {

using benchmarks::Diagram;

using Builder = std::function<Diagram&(const std::string&, std::size_t)>;

void build_diagram(benchmark::State& state, const Builder& builder) {
  const auto blocks = static_cast<std::size_t>(state.range(0));
  for (auto _ : state) {
    Diagram& diagram = builder("built", blocks);
    state.PauseTiming();
    Diagram::close(diagram);
    state.ResumeTiming();
  }
  benchmarks::report_time_per(state, blocks);
}

void compile_diagram(benchmark::State& state, const Builder& builder) {
  const auto blocks = static_cast<std::size_t>(state.range(0));
  Diagram& diagram = builder("compiled", blocks);
  double grown = 0.0;
  for (auto _ : state) {
    state.PauseTiming();
    const auto before = static_cast<double>(benchmarks::heap_bytes());
    state.ResumeTiming();
    const auto result = embedded::compile_layer::compile(diagram);
    grown = static_cast<double>(benchmarks::heap_bytes()) - before;
    benchmark::DoNotOptimize(&result);
  }
  Diagram::close(diagram);
  benchmarks::report_time_per(state, blocks);
  state.counters["model_bytes_per_block"] = grown / static_cast<double>(blocks);
}

void read_shared_tree(benchmark::State& state) {
  const auto blocks = static_cast<std::size_t>(state.range(0));
  const std::string text = benchmarks::tree_netlist(blocks);
  for (auto _ : state) {
    kinemo::formats::DiagnosticList diagnostics;
    Diagram* diagram = kinemo::formats::spice::read_netlist_text(text, "tree.cir", {}, diagnostics);
    state.PauseTiming();
    if (diagram != nullptr) Diagram::close(*diagram);
    state.ResumeTiming();
  }
  benchmarks::report_time_per(state, blocks);
}

void register_shape(const std::string& name, const Builder& builder) {
  for (const auto& [stage, run] : {std::pair{"Build/", &build_diagram}, std::pair{"Compile/", &compile_diagram}}) {
    auto* benchmark = benchmark::RegisterBenchmark((stage + name).c_str(), run, builder);
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();
  }
}

void register_all() {
  register_shape("flat", benchmarks::flat);
  register_shape("ladder", benchmarks::ladder);
  register_shape("chain_of_1000_levels", [](const std::string& name, std::size_t blocks) -> Diagram& {
    return benchmarks::chain(name, blocks, 1000);
  });
  register_shape("tree", benchmarks::tree);
  register_shape("wires", benchmarks::wires);
  register_shape("star", benchmarks::star);
  benchmark::RegisterBenchmark("Read/tree_of_shared_definitions", read_shared_tree)
      ->Arg(1000)
      ->Arg(10000)
      ->Arg(100000)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

}  // namespace

int main(int argc, char** argv) {
  return benchmarks::run_in_environment(argc, argv, register_all);
}
