// What the program finds when it opens the module.

#include "domains/physical/domain.hpp"
#include "domains/physical/kinds.hpp"
#include "domains/physical/prepared_kind.hpp"
#include "platform/block_diagram/library.hpp"

namespace {

void load(GtBlockContext* context) {
  kinemo::physical::load_domain(kinemo::physical::all_kinds(), context);
}

}  // namespace

extern "C" __attribute__((visibility("default"))) const KinemoDomainModule kinemo_domain_module = {
    KINEMO_DOMAIN_ABI, kinemo::physical::domain_name, load, kinemo::physical::unload_domain};
