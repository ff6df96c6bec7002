#include "formats/spice/parameter_scopes.hpp"

#include <algorithm>

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

void ParameterScopes::define(const std::string& name, std::optional<double> value,
                             std::shared_ptr<const Expression> told) {
  // references to the mapped vectors stay good: the map never loses an entry
  Meanings& meanings = m_meanings[name];
  meanings.push_back({m_begins.size() - 1, value, std::move(told)});
  m_defined.push_back(&meanings);
}

std::optional<double> ParameterScopes::value(const std::string& name) const {
  const ScopedParameter* parameter = find(name, m_begins.size());
  return parameter == nullptr ? std::nullopt : parameter->value;
}

const ScopedParameter* ParameterScopes::find(const std::string& name, std::size_t depth) const {
  const auto found = m_meanings.find(name);
  if (found == m_meanings.end()) {
    return nullptr;
  }
  const Meanings& meanings = found->second;
  const auto behind =
      std::upper_bound(meanings.begin(), meanings.end(), depth,
                       [](std::size_t wanted, const ScopedParameter& parameter) { return wanted < parameter.depth; });
  return behind == meanings.begin() ? nullptr : &*std::prev(behind);
}

}  // namespace kinemo::formats::spice
