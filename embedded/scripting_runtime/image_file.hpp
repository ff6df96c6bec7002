#pragma once

// Images as arrays.

#include "platform/scripting_array/scripting_array.hpp"

#include <string>
#include <string_view>

namespace embedded::scripting_runtime {

/// The image of a file, of class uint8: rows x columns x 3 for a colour image, rows x columns for one that is stored in
/// shades of gray. Where it is transparent, white shines through. Palettes are replaced by their colours.
/// @throws "kinemo:scripting:runtime" "CannotReadImage" (file, reason), "ArrayTooLarge"
cvUniquePtr read_image(const std::string& file);

/// Whether the bytes of an image file say that it is stored in shades of gray. Known of PNG, JPEG and PNM.
bool is_gray_image(std::string_view bytes);

/// Whether the end of a PNG or JPEG file is missing.
bool ends_too_early(std::string_view bytes);

}  // namespace embedded::scripting_runtime
