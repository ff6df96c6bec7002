// A netlist or library file as the reader holds it: its name for messages and its whole text as UTF-8. Shared by all
// cards that come from it.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace kinemo::formats::spice {

struct TextFile {
  std::string shown_name;          ///< as messages name it
  std::filesystem::path location;  ///< empty for a text that has no file
  std::string text;                ///< valid UTF-8, line breaks as in the file
};

/// A text from memory: undone from a byte order mark, and taken as Latin-1 where it isn't valid UTF-8.
std::shared_ptr<const TextFile> make_text_file(std::string shown_name, std::filesystem::path location,
                                               std::string text);

/// Whether the text holds what no text file does: a null byte.
bool looks_binary(const std::string& text);

/// The files of one reading, each loaded once.
class TextFiles {
 public:
  /// Null when the file can't be read; `reason` then says why.
  std::shared_ptr<const TextFile> load(const std::filesystem::path& path, const std::string& shown_name,
                                       std::string& reason);
  /// Takes a file that was loaded elsewhere, so that one which includes itself is known again.
  void add(const std::shared_ptr<const TextFile>& file);

 private:
  std::map<std::filesystem::path, std::shared_ptr<const TextFile>> m_loaded;
};

}  // namespace kinemo::formats::spice
