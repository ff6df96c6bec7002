#include "platform/block_diagram/events.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/events.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <vector>

namespace {

std::vector<GtBdDomainListener*>& listeners() {
  static auto* const instance = new std::vector<GtBdDomainListener*>;
  return *instance;
}

}  // namespace

GtBdDomainListener::~GtBdDomainListener() = default;

void GtBdDomainEventHandler::registerListener(GtBdDomainListener* listener) {
  deregisterListener(listener);
  listeners().push_back(listener);
}

void GtBdDomainEventHandler::deregisterListener(GtBdDomainListener* listener) {
  auto& all = listeners();
  all.erase(std::remove(all.begin(), all.end(), listener), all.end());
}

namespace embedded::block_diagram {

void raiseBlockDiagramEvent(GTBlockDiagram& diagram) {
  // A listener may take itself, or another one, from the list.
  const std::vector<GtBdDomainListener*> all = listeners();
  for (GtBdDomainListener* listener : all) {
    const auto& now = listeners();
    if (std::find(now.begin(), now.end(), listener) != now.end()) listener->handleBlockDiagramEvent(&diagram);
  }
}

}  // namespace embedded::block_diagram

gtsvString gt::intrf::BlockDiagram::getGrDisplayName() const {
  return gtsvString(kmf::utf8_string_to_ustring(diagram_->diagram().name()));
}

gt::intrf::BlockDiagram gt::intrf::getBlockDiagram(GTBlockDiagram* argument) {
  return BlockDiagram(argument);
}
