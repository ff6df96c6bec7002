#include "benchmarks/network.hpp"

#include "benchmarks/measure.hpp"
#include "common/gl/gti/export/translation_configuration.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"

namespace benchmarks {

namespace {

using embedded::network_data::MachineData;
using gl::gti::TranslationManager;

constexpr const char* domain = "physical";

}  // namespace

Network::Network(embedded::block_diagram::Diagram& diagram, std::size_t blocks)
    : blocks_(blocks), key_(TranslationManager::get().domainKey(domain)), diagram_(diagram) {
  embedded::compile_layer::evaluateParameters(diagram);
  machine_ = std::make_unique<MachineData>(diagram, domain);
}

Network::~Network() {
  machine_.reset();
  embedded::block_diagram::Diagram::close(diagram_);
}

void Network::takeIn(bool propagate) const {
  gl::gti::TranslationConfiguration configuration;
  configuration.propagateRuntimeParametersFcn([propagate] { return propagate; });
  TranslationManager& manager = TranslationManager::get();
  manager.registerModel(key_, diagram_.name(), configuration);
  manager.addConnectivity(key_, machine_->get());
}

gl::core::Model Network::model() const {
  return TranslationManager::get().model(key_, diagram_.name());
}

void Network::report(benchmark::State& state) const {
  report_time_per(state, blocks_);
}

}  // namespace benchmarks
