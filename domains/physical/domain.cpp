#include "domains/physical/domain.hpp"

#include "common/gl/gti/export/translation_manager.hpp"
#include "domains/physical/domain_manager.hpp"
#include "domains/physical/library.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/compile_layer/domain_manager.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <memory>
#include <optional>
#include <string>

namespace kinemo::physical {

namespace {

/// What is registered, from load to unload.
struct Registered {
  std::unique_ptr<Library> library;
  std::optional<gl::gti::DomainKey> key;
};

Registered& registered() {
  static Registered instance;
  return instance;
}

const PreparedKind* kind_of(const GTBlock* block) {
  const char* name = block ? block->getGeneratedMaskText() : nullptr;
  return name && registered().library ? registered().library->find(name) : nullptr;
}

/// Gives the block of a handle the mask that all blocks of its kind share.
void generate_mask(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
  kmf::check_num_inputs(1, 1, nIn);
  const double handle = cvGetScalar(inputs[0]);
  GTBlock* block = GTBlock::Handle2Block(handle);
  const PreparedKind* kind = kind_of(block);
  if (!kind) kmf::throw_message("kinemo:physical:blocks", "NotABlockOfTheLibrary", std::to_string(handle));
  MaskInterface::setMask(block, kind->mask());
  if (nOut > 0) outputs[0] = cvCreateLogicalScalar(true);
}

void register_blocks(std::vector<BlockKind> kinds, GtBlockContext* context) {
  registered().library = std::make_unique<Library>(std::move(kinds));
  // Before the first prototype, which would put a manager that does nothing in this place.
  DomainMgrPrototypeRegistry::get().setDefaultMgr(new PhysicalDomainManager(*registered().key), domain_name);
  kmf::register_corvane_function(mask_function, generate_mask);
  registered().library->registerPrototypes(context);
}

}  // namespace

void load_domain(std::vector<BlockKind> kinds, GtBlockContext* context) {
  // Outside the guarded stretch: a domain of this name that is already there must stay.
  registered().key = gl::gti::TranslationManager::get().registerDomain(domain_name);
  try {
    register_blocks(std::move(kinds), context);
  } catch (...) {
    unload_domain();
    throw;
  }
}

void unload_domain() {
  if (!registered().key) return;
  gt_unregister_prototypes(std::string(domain_name) + "/");
  kmf::unregister_corvane_function(mask_function);
  DomainMgrPrototypeRegistry::get().removeDefaultMgr(domain_name);
  gl::gti::TranslationManager::get().unregisterDomain(*registered().key);
  registered() = Registered();
}

}  // namespace kinemo::physical
