#include "formats/spice/parameter_scopes.hpp"

namespace kinemo::formats::spice {

void ParameterScopes::open() {
  m_begins.push_back(m_defined.size());
}

void ParameterScopes::close() {
  for (; m_defined.size() > m_begins.back(); m_defined.pop_back()) {
    m_defined.back()->pop_back();
  }
  m_begins.pop_back();
}

void ParameterScopes::define(const std::string& name, std::optional<double> value) {
  // references to the mapped vectors stay good: the map never loses an entry
  std::vector<std::optional<double>>& values = m_values[name];
  values.push_back(value);
  m_defined.push_back(&values);
}

std::optional<double> ParameterScopes::value(const std::string& name) const {
  const auto found = m_values.find(name);
  return found == m_values.end() || found->second.empty() ? std::nullopt : found->second.back();
}

bool ParameterScopes::knows(const std::string& name) const {
  const auto found = m_values.find(name);
  return found != m_values.end() && !found->second.empty();
}

}  // namespace kinemo::formats::spice
