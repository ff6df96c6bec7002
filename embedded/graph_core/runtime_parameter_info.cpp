#include "platform/graph_core/graph.hpp"

namespace gl::core {

void RuntimeParameterInfo::addParameter(const kmf::VnId& id, const data2::core::ValueData& value) {
  values_.insert_or_assign(id, value);
}

void RuntimeParameterInfo::addNonValueParameter(const kmf::VnId& id) {
  nonValues_.insert(id);
}

const data2::core::ValueData& RuntimeParameterInfo::value(const kmf::VnId& id) const {
  const auto found = values_.find(id);
  if (found == values_.end()) detail::throw_entry_name_not_found(id);
  return found->second;
}

std::set<kmf::VnId> RuntimeParameterInfo::runtimeParameters() const {
  std::set<kmf::VnId> ids;
  for (const auto& value : values_) ids.insert(ids.end(), value.first);
  return ids;
}

bool operator==(const RuntimeParameterInfo& a, const RuntimeParameterInfo& b) {
  return a.values_ == b.values_ && a.nonValues_ == b.nonValues_;
}

}  // namespace gl::core
