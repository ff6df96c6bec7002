// The library of blocks as `kinemo blocks` shows it: ports, parameters, units, defaults. Filled from a scratch diagram
// that ends before the function returns.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace kinemo::views {

struct LibraryPort {
  std::string name;
  std::string side;  ///< "left" or "right"
  std::string type;  ///< such as "physical.electrical"
};

struct LibraryParameter {
  std::string name;
  std::string prompt;
  std::string value;  ///< text of the default
  std::string unit;   ///< of the default; may be empty
  std::string kind;   ///< "expression", "text", "switch" or "choice"
  std::vector<std::string> choices;
};

struct LibraryBlock {
  std::string name;  ///< such as "physical/resistor"
  std::string title;
  std::string text;
  std::vector<LibraryPort> ports;
  std::vector<LibraryParameter> parameters;
};

/// The blocks of these names, in their order. @throws what the host raises for an unknown name
std::vector<LibraryBlock> describe_blocks(const std::vector<std::string>& names);

/// One line for each block.
void write_library_text(std::ostream& out, const std::vector<LibraryBlock>& blocks);
/// All that is known of one block.
void write_block_text(std::ostream& out, const LibraryBlock& block);
/// {"schema": 1, "blocks": {name: {...}}}
void write_library_json(std::ostream& out, const std::vector<LibraryBlock>& blocks);

}  // namespace kinemo::views
