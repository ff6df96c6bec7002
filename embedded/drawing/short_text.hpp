#pragma once

// Texts that are longer than their room.

#include "platform/foundation/ustring.hpp"

#include <cstddef>
#include <functional>

namespace embedded::drawing {

/// At most `length` characters; a longer text has an ellipsis in its middle, as names often differ at their ends.
ustring shortened(const ustring& text, std::size_t length);

/// As many characters as fit into a width, shortened as above; empty where not even two letters with an ellipsis fit.
ustring fitted(const ustring& text, double width, const std::function<double(const ustring&)>& width_of);

}  // namespace embedded::drawing
