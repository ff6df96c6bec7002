#pragma once

#include "platform/foundation/vn_id.hpp"

#include <boost/unordered_set.hpp>

namespace gl::gti {

/// A set of names that travels through propagation. Its order means nothing.
using IdSet = boost::unordered_set<kmf::VnId>;

}  // namespace gl::gti
