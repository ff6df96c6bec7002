// What the commands that draw share.
#pragma once

#include "views/picture/picture.hpp"

#include <string>

namespace kinemo::app {

class Session;

/// Draws and writes to a file, or to standard output for "-" or "". Warnings go to standard error.
/// @throws UsageError, ClosedPipe
void write_picture(Session& session, embedded::block_diagram::Diagram& diagram,
                   const views::picture::PictureRequest& request, const std::string& file);

}  // namespace kinemo::app
