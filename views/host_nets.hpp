// Nets of the host's systems, followed through the ports of subsystems up and down.
#pragma once

#include <functional>
#include <unordered_set>
#include <vector>

class gtPort;

namespace kinemo::views {

/// Remembers where it has been: each net of a system is visited once in the life of the object, so following every port
/// of a diagram is linear in its ports.
class HostNets {
 public:
  /// Visits all ports, in every system, that are joined to the port; none when an earlier call has done so.
  void follow(gtPort& start, const std::function<void(const gtPort&)>& visit);

 private:
  void enter(gtPort* port);

  std::unordered_set<const std::vector<gtPort*>*> seen_;
  std::vector<gtPort*> pending_;
};

}  // namespace kinemo::views
