#include "embedded/compile_layer/compile.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/stages.hpp"
#include "embedded/network_data/machine_data.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <memory>
#include <vector>

namespace embedded::compile_layer {

namespace {

using Managers = std::vector<std::unique_ptr<DADomainMgr>>;

/// Copies of the managers whose domains have blocks in the diagram, in the order of the registry. A diagram whose only
/// leaves are opaque subsystems is everybody's.
Managers managersFor(const block_diagram::Diagram& diagram) {
  const DomainMgrPrototypeRegistry& registry = DomainMgrPrototypeRegistry::get();
  Managers managers;
  for (const std::string& name : network_data::domainsOf(diagram, registry.names())) {
    if (const auto* manager = dynamic_cast<const DADomainMgr*>(registry.getDefaultMgr(name)))
      managers.emplace_back(manager->clone());
  }
  return managers;
}

/// Tells all managers of the compile's end, in the order in which they were told of its beginning.
class EndOfCompile {
 public:
  EndOfCompile(const Managers& managers, const std::string& model) : managers_(managers), model_(model) {}
  EndOfCompile(const EndOfCompile&) = delete;
  EndOfCompile& operator=(const EndOfCompile&) = delete;

  /// After a success: errors are the compile's.
  void end() {
    while (next_ < managers_.size()) managers_[next_++]->endCompile(model_);
  }
  ~EndOfCompile() {
    // Only on the way out of a failure, which is the one to be reported.
    while (next_ < managers_.size()) {
      try {
        managers_[next_++]->endCompile(model_);
      } catch (const std::exception&) {
        continue;
      }
    }
  }

 private:
  const Managers& managers_;
  const std::string& model_;
  std::size_t next_ = 0;
};

void compileDomain(DADomainMgr& manager, const std::string& model, const network_data::MachineData& network,
                   DACompileResult& result) {
  manager.startCompile(model);
  if (const KMMachineData_tag* machine = network.machine(manager.domainName())) manager.addMachine(machine);
  manager.compile(model, result);
}

}  // namespace

void evaluateParameters(block_diagram::Diagram& diagram, const Progress& progress) {
  BlockErrors errors(diagram.name());
  evaluateMasks(diagram, progress, errors);
  errors.raise();
}

DACompileResult compile(block_diagram::Diagram& diagram, const Progress& progress) {
  const std::string& model = diagram.name();
  const Managers managers = managersFor(diagram);
  EndOfCompile ending(managers, model);
  for (const auto& manager : managers) manager->notifyPreEvalParamsStage(model);
  BlockErrors errors(model);
  evaluateMasks(diagram, progress, errors);
  checkBlocks(diagram, progress, errors);
  errors.raise();
  if (progress) progress("network", 0, 0);
  const network_data::MachineData network(diagram, network_data::Listing::Spanning,
                                          DomainMgrPrototypeRegistry::get().names());
  DACompileResult result;
  for (const auto& manager : managers) {
    if (progress) progress(manager->domainName().c_str(), 0, 0);
    compileDomain(*manager, model, network, result);
  }
  ending.end();
  return result;
}

}  // namespace embedded::compile_layer
