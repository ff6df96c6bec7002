#pragma once

#include <string>
#include <vector>

namespace embedded::block_diagram {

/// The candidate that `name` was most likely meant to be, by edit distance without regard to case; empty where none is
/// near enough.
std::string nearestName(const std::string& name, const std::vector<std::string>& candidates);

}  // namespace embedded::block_diagram
