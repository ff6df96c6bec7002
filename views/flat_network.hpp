// A compiled model without its levels: leaf components and the nets that join their connectors. It refers into the
// model that it was made from, which must outlive it.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <cstddef>
#include <string>
#include <vector>

namespace kinemo::views {

struct FlatComponent {
  std::string block;  ///< path without the model's name
  const gl::core::Component* component;
  std::vector<std::size_t> nets;  ///< by connector, in the order of its kind
};

struct FlatPin {
  std::size_t component;  ///< position in `FlatNetwork::components`
  std::size_t connector;  ///< position in the component's order of connectors
};

struct FlatNetwork {
  std::vector<FlatComponent> components;   ///< by block path
  std::vector<std::vector<FlatPin>> nets;  ///< pins by block path, then by connector

  const kmf::VnId& connector_id(const FlatPin& pin) const;
  /// The connector's type path as text, such as "physical.electrical".
  std::string connector_type(const FlatPin& pin) const;
};

/// Follows exported nodes through all levels. Linear in the size of the model, up to logarithms; any depth.
FlatNetwork flatten(const gl::core::Model& model);

}  // namespace kinemo::views
