// The files of one reading: the model's own and those that its blocks link to. Each is read and parsed once, however
// often it is linked, and lives as long as the reading.
#pragma once

#include "formats/diagnostics.hpp"
#include "formats/diagram/yaml_tree.hpp"

#include <filesystem>
#include <map>
#include <memory>
#include <string>

namespace kinemo::formats::diagram {

struct ModelFile {
  ModelFile(std::string shown_name, std::filesystem::path where, const std::string& text, DiagnosticList& problems);

  std::shared_ptr<const std::string> name;  ///< as messages show it
  std::filesystem::path location;
  YamlTree tree;  ///< without a root where the file has faults, which are told already
};

/// One file inside another: the way from the file that is being read up to the model's own.
struct LinkStep {
  const ModelFile* file;
  const LinkStep* outer;
};

class LinkedFiles {
 public:
  explicit LinkedFiles(DiagnosticList& problems) : problems_(problems) {}

  /// The file at a path that `from` names. Null when it can't be read, and then `reason` says why.
  const ModelFile* open(const ModelFile& from, const std::string& path, std::string& reason);
  const ModelFile& add(std::string shown_name, std::filesystem::path location, const std::string& text);

 private:
  DiagnosticList& problems_;
  std::map<std::filesystem::path, std::unique_ptr<ModelFile>> files_;
};

/// Whether a block's type is the path of a file rather than a name of the library.
bool names_a_file(const std::string& type);

}  // namespace kinemo::formats::diagram
