// Which reader a model file needs.
#pragma once

#include <string>
#include <string_view>

namespace kinemo::formats {

enum class ModelFormat { diagram, spice };

/// By the file's name, and where that doesn't tell by what stands in it.
ModelFormat detect_format(const std::string& file, std::string_view text);

}  // namespace kinemo::formats
