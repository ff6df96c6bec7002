#include "embedded/environment/environment.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/environment/module.hpp"

#include <algorithm>

namespace embedded {

struct Environment::Parts {
  std::vector<std::unique_ptr<Module>> modules;
  std::vector<std::string> domains;
};

Environment::Environment() : parts_(std::make_unique<Parts>()) {
  block_diagram::registerHostFunctions();
}

Environment::~Environment() {
  for (block_diagram::Diagram* diagram : block_diagram::Diagram::open()) block_diagram::Diagram::close(*diagram);
  // A module may stand on one that came before it.
  while (!parts_->modules.empty()) parts_->modules.pop_back();
  block_diagram::unregisterHostFunctions();
}

std::string Environment::loadDomain(const std::string& file) {
  auto module = std::make_unique<Module>(file, &block_diagram::hostContext());
  const std::string name = module->name();
  parts_->modules.push_back(std::move(module));
  if (std::find(parts_->domains.begin(), parts_->domains.end(), name) == parts_->domains.end()) {
    parts_->domains.push_back(name);
  }
  return name;
}

const std::vector<std::string>& Environment::domains() const {
  return parts_->domains;
}

}  // namespace embedded
