// What the commands that draw share.
#pragma once

#include "views/picture/picture.hpp"

#include <boost/optional.hpp>

#include <string>

namespace kinemo::app {

class Session;

/// By the ending of a file's name, or by a name such as "svg"; none for any other.
boost::optional<embedded::drawing::Format> picture_format(const std::string& name);

/// Draws and writes to a file, or to standard output for "-" or "". Warnings go to standard error.
/// @throws UsageError, ClosedPipe
void write_picture(Session& session, embedded::block_diagram::Diagram& diagram,
                   const views::picture::PictureRequest& request, const std::string& file);

}  // namespace kinemo::app
