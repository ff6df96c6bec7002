#pragma once

// Libraries of block prototypes, and the modules that bring them.

#include "platform/block_diagram/block.hpp"

#include <cstdint>
#include <string>
#include <vector>

/// Puts a prototype into the host's library under a name such as "physical/resistor"; the host owns it from here on.
/// @throws "kinemo:host:library" "DuplicatePrototype" (name), and then the prototype has ended
KINEMO_PLATFORM_API void gt_register_prototype(const std::string& name, GTBlock* prototype);
/// Ends the prototypes whose names begin with `prefix`.
KINEMO_PLATFORM_API void gt_unregister_prototypes(const std::string& prefix);
/// Null for an unknown name.
KINEMO_PLATFORM_API GTBlock* gt_find_prototype(const std::string& name);
/// All names, ascending.
KINEMO_PLATFORM_API std::vector<std::string> gt_prototype_names();

/// What a domain module exports as `extern "C" const KinemoDomainModule kinemo_domain_module`.
struct KinemoDomainModule {
  std::uint32_t abi;  ///< KINEMO_DOMAIN_ABI at the module's build
  const char* name;   ///< the domain's name
  /// Registers the domain, its block prototypes and its scripting functions. Errors are thrown.
  void (*load)(GtBlockContext* context);
  /// Takes back what `load` registered; called before the module is closed.
  void (*unload)();
};

/// Rises with every change that a compiled module would not survive.
constexpr std::uint32_t KINEMO_DOMAIN_ABI = 2;
