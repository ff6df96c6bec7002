#include "apps/scripting/diagram_files.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "platform/block_diagram/events.hpp"

#include <map>

namespace kinemo::scripting {

namespace {

class DiagramFiles : public GtBdDomainListener {
 public:
  void handleBlockDiagramEvent(GTBlockDiagram* diagram) override { files.erase(diagram->getHandle()); }

  std::map<double, std::string> files;  ///< by the diagram's handle
};

DiagramFiles& all() {
  static DiagramFiles instance;
  return instance;
}

}  // namespace

void watch_diagram_files() {
  GtBdDomainEventHandler::registerListener(&all());
}

void forget_diagram_files() {
  GtBdDomainEventHandler::deregisterListener(&all());
  all().files.clear();
}

void keep_diagram_file(const embedded::block_diagram::Diagram& diagram, const std::string& file) {
  all().files[diagram.handle()] = file;
}

std::string diagram_file(const embedded::block_diagram::Diagram& diagram) {
  const auto found = all().files.find(diagram.handle());
  return found == all().files.end() ? std::string() : found->second;
}

}  // namespace kinemo::scripting
