#pragma once

#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/shared_ptr.hpp>

#include <map>
#include <set>

namespace gl::gti {

class BlockPath;

/// What one node of a subsystem exposes: port handles inside and outside the subsystem that meet at the node.
struct NodePorts {
  std::set<double> innerHandles;
  std::set<double> outerHandles;
};

/// The exposed nodes of a subsystem's graph.
using ExposedNodes = std::map<kmf::VnId, NodePorts>;

/// The entry of a translated subsystem: wraps its graph in a component that exports the exposed nodes under the names
/// of the subsystem's ports, and has one port for each of them.
/// @throws kmf::MessageException "kinemo:common:gl:gti:compile" "UnknownBoundaryPort" (node, path) when no port of the
/// subsystem stands for an exposed node
boost::shared_ptr<BlockEntryData> makeHierarchicalEntry(KmIoPortCache& ioPorts, const BlockPath& path,
                                                        const gl::core::Graph& graph, const ExposedNodes& nodes,
                                                        const TranslationConfiguration& config);
/// The same for the path's text, which spares taking a deep path apart.
boost::shared_ptr<BlockEntryData> makeHierarchicalEntry(KmIoPortCache& ioPorts, const ustring& path,
                                                        const gl::core::Graph& graph, const ExposedNodes& nodes,
                                                        const TranslationConfiguration& config);

}  // namespace gl::gti
