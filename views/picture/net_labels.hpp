// Places for the names of nets beside their lines.
#pragma once

#include "views/layout/layout.hpp"

#include <boost/optional.hpp>

#include <vector>

namespace kinemo::views::picture {

/// For each net the upper left corner of its name, above one of its horizontal lines; none where there is no room, and
/// for names without a size. Nothing covers anything that is drawn, nor each other. `boxes` are those of the drawing.
std::vector<boost::optional<layout::Point>> place_net_labels(const std::vector<layout::Box>& boxes,
                                                             const layout::Drawing& drawing,
                                                             const std::vector<layout::Size>& names);

}  // namespace kinemo::views::picture
