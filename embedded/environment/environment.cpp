#include "embedded/environment/environment.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/environment/domain_library.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/warning.hpp"

#include <exception>

namespace embedded {

namespace {

const char* const group = "kinemo:host:modules";

bool environment_exists = false;

/// Closes what is open, the latest diagram first. A listener that fails doesn't keep the others from closing.
void closeDiagrams() {
  for (std::vector<block_diagram::Diagram*> open; !(open = block_diagram::Diagram::open()).empty();) {
    const std::string name = open.back()->name();
    try {
      block_diagram::Diagram::close(*open.back());
    } catch (const std::exception& error) {
      kmf::Warning::get().issueWarning(
          kmf::Message(kmf::MessageId("kinemo:host:diagram", "CloseFailed", name, error.what())));
    }
  }
}

}  // namespace

struct Environment::Parts {
  std::vector<std::unique_ptr<DomainLibrary>> libraries;
  std::vector<std::string> domains;
};

Environment::Environment() : parts_(std::make_unique<Parts>()) {
  if (environment_exists) kmf::throw_message(group, "EnvironmentInUse");
  block_diagram::registerHostFunctions();
  environment_exists = true;
}

Environment::~Environment() {
  closeDiagrams();
  while (!parts_->libraries.empty()) parts_->libraries.pop_back();
  block_diagram::unregisterHostFunctions();
  scripting_runtime::base_workspace().clear();
  environment_exists = false;
}

std::string Environment::loadDomain(const std::string& file) {
  auto library = std::make_unique<DomainLibrary>(file);
  for (const auto& known : parts_->libraries) {
    if (known->domain() != library->domain()) continue;
    if (known->file() == library->file()) return known->domain();
    kmf::throw_message(group, "DomainAlreadyLoaded", library->domain(), known->file(), file);
  }
  parts_->libraries.reserve(parts_->libraries.size() + 1);
  parts_->domains.reserve(parts_->domains.size() + 1);
  library->load();
  parts_->domains.push_back(library->domain());
  parts_->libraries.push_back(std::move(library));
  return parts_->domains.back();
}

const std::vector<std::string>& Environment::domains() const {
  return parts_->domains;
}

}  // namespace embedded
