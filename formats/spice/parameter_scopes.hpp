// The values that names have at one place of the expanded circuit. The innermost scope that knows a name decides, as
// the simulator has it: a subcircuit also sees the parameters of those that it is called from.
#pragma once

#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace kinemo::formats::spice {

class ParameterScopes {
 public:
  void open();
  /// Forgets what was defined since the last `open`.
  void close();
  /// Without a value, the name is known but nothing can be computed from it.
  void define(const std::string& name, std::optional<double> value);
  std::optional<double> value(const std::string& name) const;
  bool knows(const std::string& name) const;
  /// Number of open scopes.
  std::size_t depth() const { return m_begins.size(); }

 private:
  std::unordered_map<std::string, std::vector<std::optional<double>>> m_values;  ///< the innermost one last
  std::vector<std::vector<std::optional<double>>*> m_defined;                    ///< in the order of definition
  std::vector<std::size_t> m_begins;
};

}  // namespace kinemo::formats::spice
