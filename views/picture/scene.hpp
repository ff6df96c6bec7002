// One system as a picture shows it: shapes of its blocks, routes of its nets.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "views/layout/layout.hpp"
#include "views/picture/block_shape.hpp"
#include "views/picture/net_labels.hpp"
#include "views/picture/net_types.hpp"

#include <boost/optional.hpp>

#include <vector>

namespace kinemo::views::picture {

namespace host = embedded::block_diagram;

struct SceneNet {
  const std::vector<gtPort*>* ports;  ///< as `netOf` gives them
  ustring name;                       ///< of a named line; otherwise of the block or port that tells most
  GTColor color;
  bool named = false;  ///< by the user
  /// The name beside the lines; none for nets without a name of their own, and where there is no room.
  boost::optional<NetLabel> label = boost::none;
};

/// Refers to the system, which isn't edited while the scene lives.
struct Scene {
  host::System* system;
  std::vector<BlockShape> shapes;
  std::vector<SceneNet> nets;  ///< those of two ports or more, and named ones of a single port
  layout::Drawing drawing;     ///< by shapes and nets
};

/// Lays out what the file gives no positions for.
Scene make_scene(host::System& system, ShapeMaker& shapes, const NetTypes& types);

}  // namespace kinemo::views::picture
