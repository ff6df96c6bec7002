#pragma once

// Where the compiled catalogue lies, and which messages stand in it.

#include <string>
#include <vector>

namespace kmf::embedded {

/// The folder with a sub-folder for each language. Looked for beside this library first, so that a tree that was
/// installed or moved finds its own, then in the tree that the library was built in. Empty when there is none.
std::string find_catalogue_folder(const std::string& language);

bool catalogue_file_exists(const std::string& folder, const std::string& language);

/// The keys of all messages of a language, in the file's order; empty when the file isn't sound.
std::vector<std::string> catalogue_keys(const std::string& folder, const std::string& language);

}  // namespace kmf::embedded
