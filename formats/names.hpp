// How names are told in messages: what was probably meant, and what there is. Free functions without state.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::formats {

/// "; did you mean 'R1'?" for a near one among the known names, else an empty text.
std::string did_you_mean(std::string_view name, const std::vector<std::string>& known);

/// The names in quotes, joined by commas; at most `limit` of them and then a count of the others. "none" for none.
std::string list_names(const std::vector<std::string>& names, std::size_t limit = 10);

}  // namespace kinemo::formats
