#pragma once

// A generated diagram with its network ready to be taken in by the kernel: what the host does before is done.

#include "common/gl/gti/export/translation_manager.hpp"
#include "embedded/network_data/machine_data.hpp"
#include "platform/graph_core/graph.hpp"

#include <benchmark/benchmark.h>

#include <memory>

namespace embedded::block_diagram {
class Diagram;
}

namespace benchmarks {

class Network {
 public:
  /// Takes over the diagram and closes it at its end.
  Network(embedded::block_diagram::Diagram& diagram, std::size_t blocks);
  ~Network();
  Network(const Network&) = delete;
  Network& operator=(const Network&) = delete;

  /// Intake and entries. With `propagate`, models keep run-time parameters.
  void takeIn(bool propagate = false) const;
  /// Factories and fold, and the propagation.
  gl::core::Model model() const;

  /// Adds the time per block.
  void report(benchmark::State& state) const;

 private:
  std::size_t blocks_;
  gl::gti::DomainKey key_;
  embedded::block_diagram::Diagram& diagram_;
  std::unique_ptr<embedded::network_data::MachineData> machine_;
};

}  // namespace benchmarks
