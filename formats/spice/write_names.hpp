// Names in a netlist that is written: which texts can be one, and a place that keeps them apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace kinemo::formats::spice {

/// Characters that no name of a node or an element can hold become underscores. Empty where nothing is left.
std::string legal_name(std::string_view text);
/// The same for what must be an identifier: parameters and definitions.
std::string legal_identifier(std::string_view text);
/// Whether the name means the ground of every netlist: "0" and "gnd".
bool names_ground(std::string_view name);

/// Names that must not be alike, whatever the case of their letters.
class UniqueNames {
 public:
  /// Takes the name; false where it is taken already, or empty.
  bool claim(const std::string& name);
  /// Takes the name, with a number behind it where it is taken already.
  std::string make(const std::string& wanted);

 private:
  std::unordered_set<std::string> m_taken;
  std::unordered_map<std::string, std::size_t> m_next;
};

/// What things of a diagram are named in the netlist, for texts that name them. Letters count in any case, but a name
/// that is written in the same way goes first.
class Aliases {
 public:
  void add(const std::string& alias, const std::string& written);
  std::optional<std::string> find(const std::string& alias) const;

 private:
  std::unordered_map<std::string, std::string> m_exact;
  std::unordered_map<std::string, std::string> m_lower;
};

}  // namespace kinemo::formats::spice
