#pragma once

#include "common/gl/gti/src/kernel/translation/level_tree.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/unordered_map.hpp>

#include <memory>
#include <set>
#include <vector>

namespace gl::gti {

class TranslationConfiguration;

/// What an outside port is connected to in a system.
struct ExternalEnd {
  kmf::VnId nodeId;
  std::set<double> handles;  ///< the system's ports that name the outside port
};

/// By the outside port's handle.
using ExternalEnds = boost::unordered_map<double, ExternalEnd>;

/// Makes the graph of one system: one component for each block, one node for each set of connected ports, named after
/// the connector of the set that precedes the others. `ids` are taken, and so are the configuration's reserved ones.
/// The connections that lead out of the system go to `externalEnds`. The embeddings of the group are used up.
/// @throws kmf::MessageException "kinemo:common:gl:gti:compile" "MissingPortEmbedding" (port); the graph core's errors
gl::core::Graph buildGraph(std::vector<std::unique_ptr<PendingBlock>>& group, PortSubstitutions& substitutions,
                           const TranslationConfiguration& configuration, ExternalEnds& externalEnds,
                           std::vector<kmf::VnId> ids);

}  // namespace gl::gti
