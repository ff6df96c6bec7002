// Places for the names of nets beside their lines.
#pragma once

#include "platform/foundation/ustring.hpp"
#include "views/picture/label_room.hpp"

#include <boost/optional.hpp>

#include <functional>
#include <vector>

namespace kinemo::views::picture {

struct NetLabel {
  ustring text;  ///< the name, shortened where a line is short
  layout::Rectangle place;
};

using MeasureLabel = std::function<layout::Size(const ustring&)>;

/// For each net its name: above or below a horizontal line of it, beside a vertical one, or, where nothing is free, on
/// a line. None where it would cover blocks or texts, for nets without lines, and for empty names.
std::vector<boost::optional<NetLabel>> place_net_labels(LabelRoom& room, const layout::Drawing& drawing,
                                                        const std::vector<ustring>& names, const MeasureLabel& measure);

}  // namespace kinemo::views::picture
