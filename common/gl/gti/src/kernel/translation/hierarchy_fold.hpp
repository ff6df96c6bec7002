#pragma once

#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "common/gl/gti/src/kernel/translation/level_tree.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/shared_ptr.hpp>

#include <vector>

namespace gl::gti {

class TranslationConfiguration;

/// Folds blocks into nested graphs, from the bottom up: the graph of a deepest system is wrapped into one entry, which
/// then waits with the blocks of the system around it, until the model's own graph stands. Appends an entry for
/// each subsystem to `entries`. `reservedIds` are taken in the model's own graph. The blocks of the tree are used up.
/// @throws as `buildGraph` and `makeHierarchicalEntry`
gl::core::Graph foldHierarchy(LevelTree& pending, const ustring& modelName,
                              const TranslationConfiguration& configuration, const std::vector<kmf::VnId>& reservedIds,
                              std::vector<boost::shared_ptr<BlockEntryData>>& entries);

}  // namespace gl::gti
