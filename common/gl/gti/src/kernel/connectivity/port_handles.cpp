#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"

#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <cmath>

namespace gl::gti {

namespace {

void appendField(std::vector<double>& values, const cvArray_tag* structure, std::size_t index, const char* field) {
  if (index >= cvGetNumberOfElements(structure)) return;
  const cvArray_tag* array = cvGetField(structure, index, field);
  if (array == nullptr) return;
  const std::vector<double> read = doublesOf(array);
  values.insert(values.end(), read.begin(), read.end());
}

PortHandles portHandlesOf(const cvArray_tag* structure) {
  PortHandles handles;
  for (const port_side::Value side : {port_side::LEFT, port_side::RIGHT}) {
    appendField(handles[side], structure, 0, connector_name(side).c_str());
  }
  return handles;
}

boost::unordered_map<PortLocation, std::vector<double>> connectivityOf(const cvArray_tag* ports) {
  boost::unordered_map<PortLocation, std::vector<double>> peers;
  for (std::size_t i = 0; i < cvGetNumberOfElements(ports); ++i) {
    const std::string type = kmf::cvarray_to_string(kmf::cvarray_get_field(ports, i, "Type"));
    const PortLocation location = kmf::lexical_cast<PortLocation>(type);
    if (location.side == port_side::NONE) continue;  // a port of another kind
    std::vector<double> joined;
    appendField(joined, ports, i, "DstPort");
    appendField(joined, ports, i, "SrcPort");
    peers.emplace(location, std::move(joined));
  }
  return peers;
}

/// An array that the runtime's clean-up leaves alone and that lives as long as the process.
cvArray_tag* lasting(cvArray_tag* array) {
  cvSetArrayScope(array, 0);
  return array;
}

cvArray_tag* lasting(const char* text) {
  return lasting(cvCreateString(text));
}

}  // namespace

PortHandles readPortHandles(double block) {
  return portHandlesOf(getParam(block, "PortHandles").get());
}

PortHandleTable readPortHandles(const std::vector<double>& blocks) {
  const cvUniquePtr cells = getParamCells(blocks, "PortHandles");
  PortHandleTable table;
  table.reserve(blocks.size());
  for (std::size_t i = 0; i < blocks.size(); ++i) table.push_back(portHandlesOf(cvGetCell(cells.get(), i)));
  return table;
}

double ownPort(const PortHandles& ioBlock) {
  return ioBlock[port_side::RIGHT].at(0);
}

std::map<double, double> portOwners(const std::vector<double>& blocks) {
  const PortHandleTable table = readPortHandles(blocks);
  std::map<double, double> owners;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    for (const std::vector<double>& side : table[i]) {
      for (const double port : side) owners.emplace(port, blocks[i]);
    }
  }
  return owners;
}

PortConnectivityTable readPortConnectivity(const std::vector<double>& blocks) {
  const cvUniquePtr cells = getParamCells(blocks, "PortConnectivity");
  PortConnectivityTable table;
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    table.emplace(blocks[i], connectivityOf(cvGetCell(cells.get(), i)));
  }
  return table;
}

std::vector<double> findSystem(double root, const std::string& blockType) {
  static cvArray_tag* const searchDepth = lasting("SearchDepth");
  static cvArray_tag* const one = lasting(cvCreateDoubleScalar(1.0));
  static cvArray_tag* const variants = lasting("Variants");
  static cvArray_tag* const activeVariants = lasting("ActiveVariants");
  static cvArray_tag* const lookUnderMasks = lasting("LookUnderMasks");
  static cvArray_tag* const all = lasting("All");
  static cvArray_tag* const followLinks = lasting("FollowLinks");
  static cvArray_tag* const followOn = lasting("on");
  static cvArray_tag* const lookUnderReadProtected = lasting("LookUnderReadProtectedSubsystems");
  static cvArray_tag* const protectedOn = lasting("on");
  static cvArray_tag* const type = lasting("BlockType");

  kmf::CvCleaner cleaner;
  cvArray_tag* inputs[13] = {cleaner.createScalarDouble(root),
                             searchDepth,
                             one,
                             variants,
                             activeVariants,
                             lookUnderMasks,
                             all,
                             followLinks,
                             followOn,
                             lookUnderReadProtected,
                             protectedOn,
                             type,
                             cleaner.createString(blockType)};
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, 13, inputs, "find_system");

  std::vector<double> found;
  for (const double handle : doublesOf(cleaner.addCvArray(output))) {
    if (handle != root) found.push_back(handle);
  }
  return found;
}

void sortHandles(std::vector<double>& handles) {
  const auto isNumber = [](double handle) { return !std::isnan(handle); };
  std::sort(handles.begin(), std::partition(handles.begin(), handles.end(), isNumber));
}

std::vector<double> doublesOf(const cvArray_tag* array) {
  const std::size_t count = cvGetNumberOfElements(array);
  if (const double* numbers = count == 0 ? nullptr : cvGetDoubles(array)) return {numbers, numbers + count};
  std::vector<double> values(count);
  for (std::size_t i = 0; i < count; ++i) values[i] = cvGetElement(array, i);
  return values;
}

}  // namespace gl::gti
