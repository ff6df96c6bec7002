#pragma once

// What the host tells about the physical ports of blocks, read in bulk.

#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <boost/unordered_map.hpp>

#include <array>
#include <map>
#include <string>
#include <vector>

namespace gl::gti {

/// A block's physical ports by `port_side::Value`, in port order.
using PortHandles = std::array<std::vector<double>, 2>;
/// One row for each block asked for, in that order.
using PortHandleTable = std::vector<PortHandles>;
/// By block and port: the ports that the host says it is joined to.
using PortConnectivityTable = boost::unordered_map<double, boost::unordered_map<PortLocation, std::vector<double>>>;

PortHandles readPortHandles(double block);
PortHandleTable readPortHandles(const std::vector<double>& blocks);
/// The port of an I/O port block: it has one, on the right, wherever the port that it stands for is.
/// @throws std::out_of_range for a block without one
double ownPort(const PortHandles& ioBlock);
/// From each port on either side of the blocks to its block.
std::map<double, double> portOwners(const std::vector<double>& blocks);
PortConnectivityTable readPortConnectivity(const std::vector<double>& blocks);

/// Handles of the blocks of a type directly below `root`, whatever masks, links and protections lie between; of
/// variants the active choice alone.
std::vector<double> findSystem(double root, const std::string& blockType);

/// Ascending; what is no number compares to nothing, and stands behind the numbers.
void sortHandles(std::vector<double>& handles);

/// The elements of a numeric array as doubles.
std::vector<double> doublesOf(const cvArray_tag* array);

}  // namespace gl::gti
