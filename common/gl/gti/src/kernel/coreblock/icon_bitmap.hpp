#pragma once

// Bitmap icons: images that the scripting runtime reads.

#include "platform/scripting_array/scripting_array.hpp"

#include <filesystem>

namespace gl::gti {

/// The true colour image of a file (rows x columns x 3). Null after the warning "InvalidIconFile" (path) where it can't
/// be read, or "InvalidIconImageType" (path) where it is no true colour image.
cvUniquePtr read_icon_bitmap(const std::filesystem::path& file);

/// What a block keeps of the image: a duplicate of scope 0, with rows and columns exchanged where `permute` says so.
cvUniquePtr kept_icon_image(const cvArray_tag* image, bool permute);

}  // namespace gl::gti
