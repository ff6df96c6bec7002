// The names that parameters of a netlist have in the host, where a name is an identifier and some words are taken.
#pragma once

#include <string>
#include <unordered_map>

#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

/// One name for each name of a parameter in a netlist, the same one wherever it can be kept. Made once, then constant.
class HostNames {
 public:
  explicit HostNames(const Netlist& netlist);

  const std::string& name(const std::string& parameter) const;
  /// The expression in the host's language with the host's names.
  std::string expression(const Expression& expression) const;

 private:
  std::unordered_map<std::string, std::string> m_names;
};

}  // namespace kinemo::formats::spice
