#pragma once

// The diagram as an object with a handle, which is what the host hands out in place of the diagram itself.

#include "platform/block_diagram/object.hpp"

namespace embedded::block_diagram {
class Diagram;

/// Object type of a block diagram, as `getGantrelObjectType` tells it.
constexpr int diagram_object_type = 1;
constexpr int port_object_type = 3;
constexpr int block_object_type = 9;
}  // namespace embedded::block_diagram

/// Owned by its diagram.
class GTBlockDiagram : public GantrelObject {
 public:
  explicit GTBlockDiagram(embedded::block_diagram::Diagram& diagram);
  ~GTBlockDiagram() override;
  int getGantrelObjectType() const override { return embedded::block_diagram::diagram_object_type; }
  double getHandle() const override { return handle_; }
  embedded::block_diagram::Diagram& diagram() const { return *diagram_; }

 private:
  embedded::block_diagram::Diagram* diagram_;
  double handle_;
};

namespace embedded::block_diagram {
GTBlockDiagram* diagramObject(const Diagram& diagram);
}
