#pragma once

#include <memory>
#include <string>
#include <vector>

namespace embedded {

/// Runtime, host and domain modules, assembled in order and taken down again in the reverse order. Programs and tests
/// begin with one; there is at most one at a time. Diagrams that are still open at its end are closed.
class Environment {
 public:
  /// @throws "kinemo:host:modules" "EnvironmentInUse", or "FunctionTableDoesNotFit" (what differs) for the linked
  /// kernel
  Environment();
  ~Environment();
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

  /// Opens a domain module and lets it register its blocks; returns the domain's name.
  /// @throws "kinemo:host:modules" "CannotOpenModule" (file, system's text), "NotADomainModule" (file),
  /// "ModuleDoesNotFit" (file, its interface number, ours), "DomainAlreadyLoaded" (name, file before, file),
  /// "FunctionTableDoesNotFit" (what differs) for the kernel that comes with the module, and what the module raises. A
  /// module that fails isn't kept.
  std::string loadDomain(const std::string& file);
  const std::vector<std::string>& domains() const;

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace embedded
