#include "common/gl/gti/export/core_block_info.hpp"
#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "common/gl/gti/src/kernel/coreblock/empty_domain_manager.hpp"
#include "platform/compile_layer/domain_manager.hpp"

#include <memory>

namespace gl::gti {

namespace {

void ensure_domain_exists(const std::string& domain) {
  DomainMgrPrototypeRegistry& registry = DomainMgrPrototypeRegistry::get();
  if (!registry.getDefaultMgr(domain)) registry.setDefaultMgr(make_empty_domain_manager(domain).release(), domain);
}

}  // namespace

GTBlock* create_core_block_prototype(const CoreBlockInfo& info, const std::string& domain, GtBlockContext* context) {
  ensure_domain_exists(domain);
  auto block = std::make_unique<CoreBlock>(info, domain, context);
  block->initializePrototype();
  return block.release();
}

}  // namespace gl::gti
