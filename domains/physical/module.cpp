// What the program finds when it opens the module.

#include "common/gl/gti/export/translation_manager.hpp"
#include "domains/physical/domain_manager.hpp"
#include "domains/physical/kinds.hpp"
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

constexpr char mask_generator[] = "physical.internal.generateMask";
constexpr char prefix[] = "physical/";

/// What is registered, from load to unload.
struct Module {
  std::unique_ptr<Library> library;
  std::optional<gl::gti::DomainKey> key;
};

Module& module() {
  static Module instance;
  return instance;
}

const PreparedKind* kind_of(const GTBlock* block) {
  const char* name = block ? block->getGeneratedMaskText() : nullptr;
  return name && module().library ? module().library->find(name) : nullptr;
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

void unload() {
  gt_unregister_prototypes(prefix);
  kmf::unregister_corvane_function(mask_generator);
  DomainMgrPrototypeRegistry::get().removeDefaultMgr(domain_name);
  if (module().key) gl::gti::TranslationManager::get().unregisterDomain(*module().key);
  module() = Module();
}

void register_blocks(GtBlockContext* context) {
  module().library = std::make_unique<Library>(all_kinds());
  // Before the first prototype, which would put a manager that does nothing in this place.
  DomainMgrPrototypeRegistry::get().setDefaultMgr(new PhysicalDomainManager(*module().key), domain_name);
  kmf::register_corvane_function(mask_generator, generate_mask);
  module().library->registerPrototypes(context);
}

void load(GtBlockContext* context) {
  // Outside the guarded stretch: a domain of this name that is already there must stay.
  module().key = gl::gti::TranslationManager::get().registerDomain(domain_name);
  try {
    register_blocks(context);
  } catch (...) {
    unload();
    throw;
  }
}

}  // namespace

}  // namespace kinemo::physical

extern "C" __attribute__((visibility("default"))) const KinemoDomainModule kinemo_domain_module = {
    KINEMO_DOMAIN_ABI, kinemo::physical::domain_name, kinemo::physical::load, kinemo::physical::unload};
