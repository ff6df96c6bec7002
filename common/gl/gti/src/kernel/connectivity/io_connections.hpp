#pragma once

#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"

#include <boost/unordered_map.hpp>

#include <map>
#include <set>

namespace gl::gti {

class KmIoPortCache;

/// Which ports of a subsystem's own level each of its I/O port blocks reaches, through wires and through the subsystems
/// inside. A port of an inner subsystem that is only a passage is left out. By I/O port block.
/// `locations` leads from a place on the subsystem's icon to its I/O port block.
boost::unordered_map<double, std::set<double>> resolveIoConnections(KmIoPortCache& cache, double subsystem,
                                                                    const std::map<PortLocation, double>& locations);

}  // namespace gl::gti
