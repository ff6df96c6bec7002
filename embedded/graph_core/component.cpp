#include "embedded/graph_core/contents.hpp"
#include "embedded/graph_core/errors.hpp"
#include "embedded/graph_core/parameter.hpp"
#include "embedded/graph_core/resolve.hpp"

#include <utility>

namespace gl::core {

Component::Component() = default;

Component::Component(const kmf::VnIdPath1& type) {
  if (!type.empty()) write().shape = detail::shape_of_type(type);
}

Component::Component(const Graph& subgraph, const std::map<kmf::VnId, Parameter>& parameters) {
  detail::ComponentData& data = write();
  data.subgraph = std::make_unique<detail::SubgraphData>();
  data.subgraph->graph = subgraph;
  if (!parameters.empty()) data.parameters = std::make_shared<detail::ParameterMap>(parameters);
}

Component::Component(const Component&) noexcept = default;
Component::Component(Component&&) noexcept = default;

Component& Component::operator=(Component other) noexcept {
  data_.swap(other.data_);
  return *this;
}

Component::~Component() = default;

detail::ComponentData& Component::write() {
  if (!data_) {
    data_ = std::make_shared<detail::ComponentData>();
  } else if (data_.use_count() != 1) {
    data_ = std::make_shared<detail::ComponentData>(*data_);
  }
  return *data_;
}

bool Component::isSubgraph() const {
  return data_ && data_->subgraph;
}

const kmf::VnIdPath1& Component::type() const {
  return detail::shape_of(detail::Access::of(*this).shape).type();
}

void Component::addConnector(const kmf::VnId& id, const kmf::VnIdPath1& type) {
  if (isSubgraph()) detail::throw_type_mismatch(id);
  const bool used = detail::shape_of(detail::Access::of(*this).shape).find(id) != nullptr;
  if (used || parameters().count(id) != 0) detail::throw_duplicate_entry(id);
  detail::add_connector(write().shape, id, type);
}

const std::vector<kmf::VnId>& Component::connectorOrder() const {
  return detail::shape_of(detail::Access::of(*this).shape).order();
}

void Component::addParameter(const kmf::VnId& id, const Parameter& parameter) {
  const kmf::VnId key = id;  // either may lie in the map that is written
  const Parameter value = parameter;
  detail::write_parameters(write()).insert_or_assign(key, value);
}

const std::map<kmf::VnId, Parameter>& Component::parameters() const {
  return detail::parameters_of(detail::Access::of(*this));
}

void Component::set(const kmf::VnIdPathIterator& parameter, const ParameterVariant& value) {
  const Parameter& old = detail::resolved<Parameter>(*this, parameter);
  if (!detail::takes(old.type(), value)) detail::throw_parameter_type_mismatch(parameter);
  const Parameter changed(value, old.type());
  kmf::VnIdPathIterator at = parameter;
  Component* owner = this;
  for (; at.remaining() > 1; ++at) {
    owner = &owner->write().subgraph->graph.write().components.find(*at)->second;
  }
  detail::write_parameters(owner->write()).insert_or_assign(*at, changed);
}

void Component::tag(const kmf::VnId& key, const ParameterVariant& value) {
  const ParameterVariant kept = value;
  detail::set_tag(write().tags, kmf::VnId(key), kept);
}

const ParameterVariant& Component::tag(const kmf::VnId& key) const {
  return detail::tag_at(detail::Access::of(*this).tags, key);
}

bool Component::hasTag(const kmf::VnId& key) const {
  return detail::find_tag(detail::Access::of(*this).tags, key) != nullptr;
}

std::vector<kmf::VnId> Component::tags() const {
  return detail::tag_keys(detail::Access::of(*this).tags);
}

const Graph& Component::graph() const {
  if (!isSubgraph()) detail::throw_type_mismatch({});
  return data_->subgraph->graph;
}

detail::FindResult Component::findEntry(const kmf::VnIdPathIterator& at,
                                        const detail::IdPredicate<GraphEntryRef>& predicate) const {
  return detail::resolve(*this, at, predicate);
}

}  // namespace gl::core
