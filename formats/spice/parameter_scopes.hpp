// What names mean at one place of the expanded circuit. The innermost scope that knows a name decides, as the simulator
// has it: a subcircuit also sees the parameters of those that it is called from.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

/// A parameter in the scope that defines it.
struct ScopedParameter {
  std::size_t depth = 0;        ///< of its scope; 0 is the top level
  std::optional<double> value;  ///< nothing where only the running circuit gives one
  /// In the names of the scope around; at the top level, in those of other parameters there. Null for a parameter of
  /// the top level that stands for itself.
  std::shared_ptr<const Expression> told;
};

class ParameterScopes {
 public:
  void open();
  /// Forgets what was defined since the last `open`.
  void close();
  /// Without a value, the name is known but nothing can be computed from it.
  void define(const std::string& name, std::optional<double> value, std::shared_ptr<const Expression> told);

  std::optional<double> value(const std::string& name) const;
  bool knows(const std::string& name) const { return find(name, m_begins.size()) != nullptr; }
  /// What the name means inside of the scope at `depth`; null when it means nothing. Good until that scope is closed or
  /// defines more.
  const ScopedParameter* find(const std::string& name, std::size_t depth) const;
  /// Number of open scopes.
  std::size_t depth() const { return m_begins.size(); }

 private:
  using Meanings = std::vector<ScopedParameter>;

  std::unordered_map<std::string, Meanings> m_meanings;  ///< the innermost one last
  std::vector<Meanings*> m_defined;                      ///< in the order of definition
  std::vector<std::size_t> m_begins;
};

}  // namespace kinemo::formats::spice
