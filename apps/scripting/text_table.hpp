// Tables for people at the prompt.
#pragma once

#include <string>
#include <vector>

namespace kinemo::scripting {

/// Shows rows below a heading, with columns as wide as their texts. Long texts are cut, and so is a table that has more
/// lines than the display may take; columns without any text are left out. Without rows, `nothing` is shown. UTF-8.
void show_table(const std::vector<std::string>& heading, const std::vector<std::vector<std::string>>& rows,
                const std::string& nothing);

}  // namespace kinemo::scripting
