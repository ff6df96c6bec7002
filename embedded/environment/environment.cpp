#include "embedded/environment/environment.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/class_system/dispatch.hpp"
#include "embedded/environment/kernel_functions.hpp"
#include "embedded/environment/module.hpp"
#include "embedded/graph_core_scripting/load.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/warning.hpp"

#include <exception>
#include <utility>

namespace embedded {

namespace {

/// Closes what is open, the latest diagram first. A listener that fails doesn't keep the others from closing.
void closeDiagrams() {
  for (std::vector<block_diagram::Diagram*> open; !(open = block_diagram::Diagram::open()).empty();) {
    const std::string name = open.back()->name();
    try {
      block_diagram::Diagram::close(*open.back());
    } catch (const std::exception& error) {
      kmf::Warning::get().issueWarning(
          kmf::Message(kmf::MessageId("kinemo:host:diagram", "CloseFailed", name, std::string(error.what()))));
    }
  }
}

bool environment_exists = false;

/// There is one environment as long as this is there.
struct OnlyOne {
  OnlyOne() {
    if (std::exchange(environment_exists, true)) kmf::throw_message("kinemo:host:modules", "EnvironmentInUse");
  }
  ~OnlyOne() { environment_exists = false; }
};

struct HostFunctions {
  HostFunctions() { block_diagram::registerHostFunctions(); }
  ~HostFunctions() { block_diagram::unregisterHostFunctions(); }
};

/// Those of a kernel that the program is linked with, or later of one that comes with a domain.
struct KernelFunctions {
  KernelFunctions() {
    class_system::install_dispatch();
    graph_core_scripting::load();
    if (QueryFunctionTable* query = linkedKernelTable()) registerKernelFunctions(query());
  }
  ~KernelFunctions() { unregisterKernelFunctions(); }
};

}  // namespace

/// In the order in which they are assembled; where one fails, those before it are taken back.
struct Environment::Parts {
  OnlyOne only_one;
  HostFunctions host_functions;
  KernelFunctions kernel_functions;
  std::vector<std::unique_ptr<Module>> modules;
  std::vector<std::string> domains;
};

Environment::Environment() : parts_(std::make_unique<Parts>()) {}

Environment::~Environment() {
  closeDiagrams();
  scripting_runtime::base_workspace().clear();  // what modules made may stand in it
  // A module may stand on one that came before it.
  while (!parts_->modules.empty()) parts_->modules.pop_back();
}

std::string Environment::loadDomain(const std::string& file) {
  auto module = std::make_unique<Module>(file);
  for (const auto& known : parts_->modules) {
    if (known->name() != module->name()) continue;
    if (known->file() == module->file()) return known->name();
    kmf::throw_message("kinemo:host:modules", "DomainAlreadyLoaded", known->name(), known->file(), file);
  }
  module->load(&block_diagram::hostContext());
  if (linkedKernelTable() == nullptr) {  // the kernel comes with the first domain
    if (auto* query = module->exported<QueryFunctionTable>(kernel_table_symbol)) registerKernelFunctions(query());
  }
  parts_->domains.push_back(module->name());
  parts_->modules.push_back(std::move(module));
  return parts_->domains.back();
}

const std::vector<std::string>& Environment::domains() const {
  return parts_->domains;
}

}  // namespace embedded
