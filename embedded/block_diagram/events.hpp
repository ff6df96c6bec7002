#pragma once

class GTBlockDiagram;

namespace embedded::block_diagram {

/// Tells every listener, in the order of subscription, that the diagram is about to go away.
void raiseBlockDiagramEvent(GTBlockDiagram& diagram);

}  // namespace embedded::block_diagram
