// Paths that stand in a model file, which are told from the folder of that file.
#pragma once

#include <string>

namespace kinemo::formats::diagram {

/// `path`, which is told from the current folder, from the folder of `file`; an empty `file` is one of the current
/// folder.
std::string relative_path(const std::string& path, const std::string& file);

/// Whether both lead to one file, which need not exist.
bool is_same_file(const std::string& a, const std::string& b);

}  // namespace kinemo::formats::diagram
