// Parts that a diagram links to, when the diagram is written: a block whose contents are still those of the file is
// written as a link, any other one with its contents. Lives as long as one writing.
#pragma once

#include "embedded/block_diagram/diagram.hpp"

#include <map>
#include <string>

namespace kinemo::formats::diagram {

namespace host = embedded::block_diagram;

class LinkedParts {
 public:
  /// `file` is the one that is written, or empty.
  explicit LinkedParts(std::string file) : file_(std::move(file)) {}
  LinkedParts(const LinkedParts&) = delete;
  LinkedParts& operator=(const LinkedParts&) = delete;
  ~LinkedParts();

  /// What the block would be had it just been read from its file; null where it comes from none, where the file is gone
  /// or has faults, and where the block's contents, ports or mask are no longer those of the file.
  const GTBlock* unchanged(const GTBlock& block);
  /// The file of a block that is unchanged, told from the folder of the written one.
  std::string path(const GTBlock& block) const;

 private:
  struct Part {
    host::Diagram* diagram = nullptr;
    const GTBlock* block = nullptr;  ///< null where the file can't be read
    std::string contents;
  };
  const Part& part(const std::string& file);

  std::string file_;
  std::map<std::string, Part> parts_;
};

}  // namespace kinemo::formats::diagram
