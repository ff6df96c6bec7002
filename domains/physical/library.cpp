#include "domains/physical/library.hpp"

#include "domains/physical/kind_block.hpp"
#include "platform/block_diagram/library.hpp"

namespace kinemo::physical {

Library::Library(std::vector<BlockKind> kinds) {
  for (BlockKind& kind : kinds) {
    kinds_.push_back(std::make_shared<const PreparedKind>(std::move(kind)));
    byName_.emplace(kinds_.back()->libraryName(), kinds_.back().get());
  }
}

void Library::registerPrototypes(GtBlockContext* context) const {
  for (const auto& kind : kinds_)
    gt_register_prototype(kind->libraryName(),
                          gl::gti::create_core_block_prototype(KindBlock(kind), domain_name, context));
}

const PreparedKind* Library::find(const std::string& libraryName) const {
  const auto found = byName_.find(libraryName);
  return found == byName_.end() ? nullptr : found->second;
}

}  // namespace kinemo::physical
