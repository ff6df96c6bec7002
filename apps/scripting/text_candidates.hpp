// What a prompt offers in quotes: paths of blocks, types of blocks, names of domains and diagrams.
#pragma once

#include "embedded/scripting_runtime/completion_texts.hpp"

#include <string>
#include <vector>

namespace kinemo::scripting {

/// Those that fit the input of the function and begin with what is typed; none where a file is meant. Of paths one
/// level, since the next follows a slash.
std::vector<std::string> diagram_text_candidates(const embedded::scripting_runtime::TypedText& typed);

}  // namespace kinemo::scripting
