#pragma once

#include "platform/block_diagram/library.hpp"

#include <memory>
#include <string>

namespace boost::dll {
class shared_library;
}

namespace embedded {

/// An open domain module whose blocks are registered. At its end it takes back what it registered, and is closed.
class Module {
 public:
  /// @throws "kinemo:host:modules" "CannotOpenModule" (file, system's text), "NotADomainModule" (file),
  /// "ModuleDoesNotFit" (file, its interface number, ours); and what the module's own `load` raises
  Module(const std::string& file, GtBlockContext* context);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  const char* name() const { return description_->name; }

 private:
  std::unique_ptr<boost::dll::shared_library> library_;
  const KinemoDomainModule* description_;
};

}  // namespace embedded
