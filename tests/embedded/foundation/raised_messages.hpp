#pragma once

// Finds the messages that the sources raise, by reading them as text.
//
// Understood are `throw_message(group, "Id", ...)` and `MessageId(group, "Id", ...)`, however they are laid out. The
// group is a text or a constant of the form `constexpr const char* name = "group"` (also `char name[]`, `string_view`)
// of the same file, or of another in the same folder. Where the id is a parameter of an enclosing function that is
// declared with `const char* id`, the calls of that function in the same folder count, and those below it.

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace kinemo::test {

struct RaisedMessage {
  std::string place;          ///< file and line
  std::string key;            ///< group:id
  std::size_t arguments = 0;  ///< how many; npos where a pack or a helper hides it
  static constexpr std::size_t unknown = static_cast<std::size_t>(-1);
};

struct SourceMessages {
  std::vector<RaisedMessage> raised;
  std::set<std::string> literals;  ///< all texts in quotes that could be an id
};

/// Reads the .cpp and .hpp files below `root`; tests are left out.
SourceMessages read_sources(const std::string& root);

/// The same for one folder that is given as file name to contents.
SourceMessages read_sources(const std::map<std::string, std::string>& files);

}  // namespace kinemo::test
