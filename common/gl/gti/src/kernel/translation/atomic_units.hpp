#pragma once

// Networks that reach across a subsystem which the host treats as one atomic unit.

#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/functional/hash.hpp>
#include <boost/unordered_map.hpp>

#include <vector>

namespace gl::gti {

class TranslationConfiguration;

/// Which subsystems of a graph are atomic units, and the unit of each path asked for so far.
struct AtomicUnits {
  boost::unordered_map<kmf::VnIdPath, bool> isAtomic;  ///< the empty path, the model itself, is always one
  boost::unordered_map<kmf::VnIdPath, kmf::VnIdPath> unitOf;
};

/// Asks the host for the flags of all subsystems of the graph, in one call.
AtomicUnits readAtomicUnits(const gl::core::Graph& graph);

/// The nearest unit around a path, which may be the path itself.
kmf::VnIdPath atomicUnit(AtomicUnits& units, const kmf::VnIdPath& path);

/// Leaf components of networks that touch more than one unit, but for those that lie in the model's own unit; ordered.
std::vector<kmf::VnIdPath> findBoundaryViolations(const gl::core::Graph& graph);

/// Tells the configuration's function of the offending components, if it has one and there are any.
void checkNonVirtualBoundaries(const gl::core::Graph& graph, const TranslationConfiguration& configuration);

}  // namespace gl::gti
