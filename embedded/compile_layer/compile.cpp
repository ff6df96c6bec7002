#include "embedded/compile_layer/compile.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/block_parameters.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "embedded/compile_layer/mask_evaluator.hpp"
#include "embedded/network_data/active_systems.hpp"
#include "embedded/network_data/flat_nets.hpp"
#include "embedded/network_data/machine_data.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <memory>
#include <vector>

namespace embedded::compile_layer {

using block_diagram::Diagram;
using network_data::ActiveSystem;

namespace {

/// @throws "kinemo:host:compile" "Interrupted" (model) where the user has had enough
void lookForInterrupt(const Diagram& diagram) {
  if (kmf::interrupt_requested()) kmf::throw_message("kinemo:host:compile", "Interrupted", diagram.name());
}

/// A compile of a million blocks tells its progress some thousand times.
class ProgressTeller {
 public:
  ProgressTeller(const Progress& progress, const char* stage, std::size_t total)
      : progress_(progress), stage_(stage), total_(total) {
    tell();
  }
  ~ProgressTeller() { tell(); }
  void step() {
    if (++done_ % 1024 == 0) tell();
  }

 private:
  void tell() const {
    if (progress_) progress_(stage_, done_, total_);
  }

  const Progress& progress_;
  const char* stage_;
  std::size_t done_ = 0;
  std::size_t total_;
};

/// Evaluates and checks the blocks of a diagram, gathering what fails.
class ParameterPass {
 public:
  ParameterPass(Diagram& diagram, const Progress& progress)
      : diagram_(diagram),
        progress_(progress),
        errors_(kmf::Message(kmf::MessageId("kinemo:host:compile", "ParameterErrors", diagram.name()))),
        masks_(errors_) {}

  void run(bool check) {
    const std::vector<ActiveSystem> systems = network_data::activeSystems(diagram_);
    ProgressTeller teller(progress_, "parameters", diagram_.blockCount());
    std::vector<const MaskFrame*> frames(systems.size());
    for (std::size_t i = 0; i < systems.size(); ++i) {
      frames[i] = i == 0 ? add(std::make_unique<MaskFrame>(diagram_))
                         : frameInside(*systems[i].system->owner(), *frames[systems[i].parent]);
      for (GTBlock* block : block_diagram::activeBlocks(*systems[i].system)) {
        lookForInterrupt(diagram_);
        visit(*block, *frames[i], check);
        teller.step();
      }
    }
    if (errors_.numCauses() != 0) throw errors_;
  }

 private:
  const MaskFrame* add(std::unique_ptr<MaskFrame> frame) {
    frames_.push_back(std::move(frame));
    return frames_.back().get();
  }

  const MaskFrame* frameInside(const GTBlock& owner, const MaskFrame& around) {
    const GTMask* mask = owner.host().mask.get();
    return mask ? add(std::make_unique<MaskFrame>(around, *mask)) : &around;
  }

  void visit(GTBlock& block, const MaskFrame& frame, bool check) {
    GTMask* mask = block.host().mask.get();
    const bool complete = !mask || masks_.evaluate(block, *mask, frame);
    gather(block, [&] {
      if (block_diagram::isVariant(block) && !block_diagram::activeChoice(block))
        block_diagram::throwNoActiveChoice(block);
      if (check && complete) block.checkDialogParameters(1);
    });
  }

  /// What `action` raises becomes a cause, with the block as its object.
  template <class Action>
  void gather(const GTBlock& block, const Action& action) {
    try {
      try {
        action();
      } catch (kmf::AttributedException& error) {
        const ustring path = block.getFullPath(true);
        const auto& objects = error.objects();
        if (std::find(objects.begin(), objects.end(), path) == objects.end()) error.addObject(path);
        throw;
      }
    } catch (const kmf::Exception& error) {
      if (kmf::interrupt_requested()) throw;  // no fault of the block
      errors_.addCause(error);
    }
  }

  Diagram& diagram_;
  const Progress& progress_;
  kmf::MessageException errors_;
  MaskEvaluator masks_;
  std::vector<std::unique_ptr<MaskFrame>> frames_;
};

using Manager = std::unique_ptr<DADomainMgr>;

/// Copies of the managers of the domains that the diagram has blocks of; of all domains when it has none, so that an
/// empty diagram compiles to an empty model.
std::vector<Manager> managersFor(const Diagram& diagram) {
  const DomainMgrPrototypeRegistry& registry = DomainMgrPrototypeRegistry::get();
  std::vector<std::string> names = network_data::domainsIn(diagram);
  if (names.empty()) names = registry.names();
  std::vector<Manager> managers;
  for (const std::string& name : names) {
    if (const auto* manager = dynamic_cast<const DADomainMgr*>(registry.getDefaultMgr(name))) {
      managers.emplace_back(manager->clone());
    }
  }
  return managers;
}

/// Tells the manager of the end of a compile, however it ends.
class OpenCompile {
 public:
  OpenCompile(DADomainMgr& manager, const std::string& model) : manager_(manager), model_(model) {}
  ~OpenCompile() {
    if (ended_) return;
    try {
      manager_.endCompile(model_);
    } catch (const std::exception&) {
      // The compile has failed already, and that is the error to report.
    }
  }
  /// After a success; an error is the compile's.
  void end() {
    ended_ = true;
    manager_.endCompile(model_);
  }
  OpenCompile(const OpenCompile&) = delete;
  OpenCompile& operator=(const OpenCompile&) = delete;

 private:
  DADomainMgr& manager_;
  const std::string& model_;
  bool ended_ = false;
};

void compileDomain(const Diagram& diagram, DADomainMgr& manager, const Progress& progress, DACompileResult& result) {
  lookForInterrupt(diagram);
  OpenCompile open(manager, diagram.name());
  if (progress) progress("network", 0, 0);
  manager.startCompile(diagram.name());
  {
    const network_data::MachineData machine(diagram, manager.domainName());
    manager.addMachine(machine.get());
  }
  lookForInterrupt(diagram);
  if (progress) progress("model", 0, 0);
  manager.compile(diagram.name(), result);
  open.end();
}

}  // namespace

void evaluateParameters(Diagram& diagram, const Progress& progress) {
  const scripting_runtime::ModelEvaluation evaluation;
  ParameterPass(diagram, progress).run(false);
}

DACompileResult compile(Diagram& diagram, const Progress& progress) {
  const scripting_runtime::ModelEvaluation evaluation;
  const std::vector<Manager> managers = managersFor(diagram);
  for (const Manager& manager : managers) manager->notifyPreEvalParamsStage(diagram.name());
  ParameterPass(diagram, progress).run(true);
  DACompileResult result;
  for (const Manager& manager : managers) compileDomain(diagram, *manager, progress, result);
  return result;
}

}  // namespace embedded::compile_layer
