#pragma once

#include "platform/block_diagram/object.hpp"

class GTBlockDiagram;

/// Subscriber to the host's block-diagram event.
class KINEMO_PLATFORM_API GtBdDomainListener {
 public:
  /// A block diagram is about to go away; it can still be asked for its name.
  virtual void handleBlockDiagramEvent(GTBlockDiagram* diagram) = 0;
  virtual ~GtBdDomainListener();
};

class KINEMO_PLATFORM_API GtBdDomainEventHandler {
 public:
  static void registerListener(GtBdDomainListener* listener);
  static void deregisterListener(GtBdDomainListener* listener);
};

namespace gt::intrf {

/// A block diagram as seen through the host's interface.
class KINEMO_PLATFORM_API BlockDiagram {
 public:
  explicit BlockDiagram(const GTBlockDiagram* diagram) : diagram_(diagram) {}
  gtsvString getGrDisplayName() const;

 private:
  const GTBlockDiagram* diagram_;
};

KINEMO_PLATFORM_API BlockDiagram getBlockDiagram(GTBlockDiagram* argument);

}  // namespace gt::intrf
