// The connection types of the nets of a diagram.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

class gtPort;

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::views::picture {

/// Ports of subsystems have no type of their own: a net takes that of the first typed port which it reaches through any
/// level. Made once for a diagram that isn't edited meanwhile; linear in its ports.
class NetTypes {
 public:
  explicit NetTypes(embedded::block_diagram::Diagram& diagram);

  /// Empty for a net without a type. `net` is what `netOf` gives.
  const std::string& of(const std::vector<gtPort*>& net) const;

 private:
  std::unordered_map<const std::vector<gtPort*>*, const std::string*> types_;
};

}  // namespace kinemo::views::picture
