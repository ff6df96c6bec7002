#pragma once

#include <filesystem>

namespace kinemo::physical {

/// Where the images of the domain's blocks lie: `icons/physical` beside the module.
const std::filesystem::path& icon_folder();

}  // namespace kinemo::physical
