#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

// Reads the include lines of all sources: an include may only point to the same floor or down, and every include of our
// own files is written from the root.

namespace {

namespace fs = std::filesystem;

struct Room {
  std::string folder;                ///< from the root, with a "/" at its end
  std::vector<std::string> allowed;  ///< beginnings of what may be included; its own room always is
};

/// The first room whose folder a file lies in counts.
const std::vector<Room>& rooms() {
  static const std::vector<Room> all{
      {"platform/", {}},
      {"embedded/", {"platform/"}},
      {"common/gl/gti/export/", {"platform/"}},
      {"common/gl/gti/src/kernel/", {"common/gl/gti/export/", "platform/"}},
      {"domains/", {"common/gl/gti/export/", "platform/"}},
      {"formats/", {"checks/", "views/", "embedded/", "common/gl/gti/export/", "platform/"}},
      {"checks/", {"formats/", "views/", "embedded/", "common/gl/gti/export/", "platform/"}},
      {"views/", {"formats/", "checks/", "embedded/", "common/gl/gti/export/", "platform/"}},
      {"apps/", {"formats/", "checks/", "views/", "domains/", "embedded/", "common/gl/gti/export/", "platform/"}},
  };
  return all;
}

/// What the platform's headers may include besides each other and the standard library.
bool is_allowed_library_of_platform(const std::string& header) {
  return header.rfind("boost/", 0) == 0 || header.find('/') == std::string::npos;
}

struct Include {
  std::string file;
  std::size_t line;
  std::string header;
  bool quoted;
};

const Room* room_of(const std::string& file) {
  for (const Room& room : rooms()) {
    if (file.rfind(room.folder, 0) == 0) return &room;
  }
  return nullptr;
}

bool is_source(const fs::path& path) {
  return path.extension() == ".hpp" || path.extension() == ".cpp";
}

void read_includes(const fs::path& path, const std::string& name, std::vector<Include>& includes) {
  std::ifstream in(path);
  std::size_t number = 0;
  for (std::string line; std::getline(in, line);) {
    ++number;
    const std::size_t hash = line.find_first_not_of(" \t");
    if (hash == std::string::npos || line[hash] != '#') continue;
    const std::size_t word = line.find_first_not_of(" \t", hash + 1);
    if (word == std::string::npos || line.compare(word, 7, "include") != 0) continue;
    const std::size_t open = line.find_first_of("\"<", word);
    const std::size_t close = open == std::string::npos ? open : line.find_first_of("\">", open + 1);
    if (close == std::string::npos) continue;
    includes.push_back({name, number, line.substr(open + 1, close - open - 1), line[open] == '"'});
  }
}

std::vector<Include> all_includes(const fs::path& root) {
  std::vector<Include> includes;
  std::set<std::string> tops;
  for (const Room& room : rooms()) tops.insert(room.folder.substr(0, room.folder.find('/')));
  for (const std::string& top : tops) {
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root / top)) {
      if (!is_source(entry.path())) continue;
      read_includes(entry.path(), entry.path().lexically_relative(root).generic_string(), includes);
    }
  }
  return includes;
}

/// What is wrong with an include; empty for a good one.
std::string fault(const Include& include, const fs::path& root) {
  const Room* room = room_of(include.file);
  if (room == nullptr) return "the file lies in no room";
  const Room* other = room_of(include.header);
  const std::string top = include.header.substr(0, include.header.find('/'));
  if (!include.quoted) {
    if (other != nullptr && fs::exists(root / include.header)) return "our own headers stand in quotes";
    const bool platform = room->folder == "platform/";
    return platform && !is_allowed_library_of_platform(include.header) ? "the platform stands on Boost alone" : "";
  }
  if (other == nullptr || !fs::exists(root / include.header)) return "isn't written from the root, or isn't there";
  if (other == room) return "";
  for (const std::string& allowed : room->allowed) {
    if (other->folder == allowed) return "";
  }
  return room->folder + " may not include " + other->folder;
}

TEST(IncludeFloors, NoArrowPointsUp) {
  const fs::path root = KINEMO_SOURCE_DIR;
  const std::vector<Include> includes = all_includes(root);
  ASSERT_GT(includes.size(), 500U);
  for (const Include& include : includes) {
    const std::string problem = fault(include, root);
    EXPECT_EQ("", problem) << include.file << ":" << include.line << ": " << include.header;
  }
}

TEST(IncludeFloors, FaultsAreFound) {
  const fs::path root = KINEMO_SOURCE_DIR;
  const std::string kernel = "common/gl/gti/src/kernel/translation/x.cpp";
  EXPECT_NE("", fault({kernel, 1, "embedded/block_diagram/diagram.hpp", true}, root));
  EXPECT_NE("", fault({"embedded/x.cpp", 1, "views/nets.hpp", true}, root));
  EXPECT_NE("", fault({"domains/x.cpp", 1, "common/gl/gti/src/kernel/translation/level_graph.hpp", true}, root));
  EXPECT_NE("", fault({"platform/x.hpp", 1, "Eigen/Dense", false}, root));
  EXPECT_NE("", fault({"views/x.cpp", 1, "nets.hpp", true}, root));
  EXPECT_NE("", fault({"views/x.cpp", 1, "views/nets.hpp", false}, root));
  EXPECT_EQ("", fault({"views/x.cpp", 1, "embedded/block_diagram/diagram.hpp", true}, root));
  EXPECT_EQ("", fault({"platform/x.hpp", 1, "boost/variant.hpp", false}, root));
}

}  // namespace
