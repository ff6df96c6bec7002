#pragma once

#include "platform/data/data.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/unordered_map.hpp>

#include <functional>

namespace gl::gti {

/// By identifier of a block's parameter: the expression that keeps it tunable at run time.
using ParameterRewrites = boost::unordered_map<kmf::VnId, data2::core::Expr>;

/// Sets a parameter of the component at work. Not to be kept beyond the call that it was handed to.
using ParameterSetter = std::function<void(const kmf::VnIdPath1&, const ParameterVariant&)>;

}  // namespace gl::gti
