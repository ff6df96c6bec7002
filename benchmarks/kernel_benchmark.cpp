// The kernel's share of a compile, sized by (blocks, depth): taking a network in (connectivity and block entries), and
// making its model (components, the fold, boundaries). The host has evaluated the parameters before. Time per block is
// what to look at: it should grow neither with the size nor with the depth.

#include "benchmarks/shapes.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/environment/environment.hpp"
#include "embedded/network_data/machine_data.hpp"

#include <benchmark/benchmark.h>

#include <memory>
#include <string>

namespace {

using benchmarks::Diagram;
using embedded::network_data::MachineData;
using gl::gti::TranslationManager;

constexpr const char* kDomain = "physical";

/// The diagram of one size, ready to be taken in.
class Network {
 public:
  explicit Network(const benchmark::State& state) : blocks_(static_cast<std::size_t>(state.range(0))) {
    key_ = TranslationManager::get().domainKey(kDomain);
    const auto depth = static_cast<std::size_t>(state.range(1));
    diagram_ = depth == 0 ? &benchmarks::flat("m", blocks_) : &benchmarks::chain("m", blocks_, depth);
    embedded::compile_layer::evaluateParameters(*diagram_);
    machine_ = std::make_unique<MachineData>(*diagram_, kDomain);
  }
  ~Network() {
    machine_.reset();
    Diagram::close(*diagram_);
  }
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;

  void takeIn() const {
    TranslationManager& manager = TranslationManager::get();
    manager.registerModel(key_, "m", gl::gti::TranslationConfiguration());
    manager.addConnectivity(key_, machine_->get());
  }
  gl::core::Model model() const { return TranslationManager::get().model(key_, "m"); }

  void report(benchmark::State& state) const {
    state.counters["per_block"] = benchmark::Counter(
        static_cast<double>(blocks_), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  }

 private:
  std::size_t blocks_;
  gl::gti::DomainKey key_ = 0;
  Diagram* diagram_ = nullptr;
  std::unique_ptr<MachineData> machine_;
};

void Intake(benchmark::State& state) {
  const Network network(state);
  for (auto _ : state) network.takeIn();
  network.report(state);
}

void Fold(benchmark::State& state) {
  const Network network(state);
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
  // Not a static object: the module must be closed before its own statics end.
  embedded::Environment environment;
  environment.loadDomain(KINEMO_PHYSICAL_MODULE);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
}
