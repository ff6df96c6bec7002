// "PortHandles" and "PortConnectivity". A net is told as a star, so that all answers together are linear in the ports.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/system_data.hpp"

namespace embedded::block_diagram {

namespace {

cvUniquePtr handlesOf(const GTBlock& block, bool left) {
  const std::size_t count = block.host().portCount(left);
  cvUniquePtr handles(cvCreateDoubleMatrix(count ? 1 : 0, count));
  double* values = count ? cvGetWritableDoubles(handles.get()) : nullptr;
  for (std::size_t i = 0; i < count; ++i) values[i] = block.host().port(left, i)->host().handle;
  return handles;
}

/// The first member of a net is the middle of the star: every other one tells of it, and it tells of all.
cvUniquePtr peersOf(const gtPort& port) {
  const std::vector<gtPort*>& net = netOf(port);
  const gtPort* middle = net.front();
  if (net.size() == 1) return cvUniquePtr(cvCreateDoubleMatrix(0, 0));
  if (middle != &port) return cvUniquePtr(cvCreateDoubleScalar(middle->host().handle));
  cvUniquePtr peers(cvCreateDoubleMatrix(1, net.size() - 1));
  double* values = cvGetWritableDoubles(peers.get());
  for (const gtPort* member : net) {
    if (member != &port) *values++ = member->host().handle;
  }
  return peers;
}

std::string typeOf(const gtPort& port) {
  return (port.isLeft() ? "LConn" : "RConn") + std::to_string(port.index + 1);
}

}  // namespace

cvUniquePtr portHandles(const GTBlock& block) {
  cvUniquePtr structure(cvCreateStructMatrix(1, 1, {"LConn", "RConn"}));
  cvSetField(structure.get(), 0, "LConn", handlesOf(block, true).release());
  cvSetField(structure.get(), 0, "RConn", handlesOf(block, false).release());
  return structure;
}

cvUniquePtr portConnectivity(const GTBlock& block) {
  const std::vector<gtPort*>& all = block.host().ports;
  const bool apart = !block.host().system || isHidden(*block.host().system);
  cvUniquePtr elements(cvCreateStructMatrix(all.size(), all.empty() ? 0 : 1, {"Type", "DstPort", "SrcPort"}));
  for (std::size_t i = 0; i < all.size(); ++i) {
    cvUniquePtr peers = apart ? cvUniquePtr(cvCreateDoubleMatrix(0, 0)) : peersOf(*all[i]);
    cvSetField(elements.get(), i, "Type", cvCreateString(typeOf(*all[i])));
    cvSetField(elements.get(), i, "DstPort", peers.release());
    cvSetField(elements.get(), i, "SrcPort", cvCreateDoubleMatrix(0, 0));
  }
  return elements;
}

}  // namespace embedded::block_diagram
