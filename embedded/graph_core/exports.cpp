// Exported nodes: how inner nodes of a subgraph become connectors of its component.

#include "embedded/graph_core/contents.hpp"
#include "embedded/graph_core/errors.hpp"

namespace gl::core {

namespace {

/// The place of an exported node among the connectors; npos when the address leads to no exported node. Only nodes of
/// the subgraph's own level can be exported: those further in are exported level by level.
std::uint32_t export_index(const detail::ComponentData& component, const kmf::VnIdPathIterator& node) {
  if (!component.subgraph || node.remaining() != 1) return detail::SubgraphData::npos;
  return component.subgraph->exportOf(*node);
}

}  // namespace

void Component::exportNode(const kmf::VnIdPathIterator& node, const kmf::VnId& exportedId, const kmf::VnIdPath1& type) {
  if (!isSubgraph() || node.remaining() != 1 || graph().nodes().count(*node) == 0) {
    detail::throw_entry_name_not_found(node);
  }
  const detail::ComponentData& before = *data_;
  if (before.subgraph->exportOf(*node) != detail::SubgraphData::npos) detail::throw_duplicate_entry(*node);
  if (detail::shape_of(before.shape).find(exportedId) != nullptr) detail::throw_duplicate_entry(exportedId);
  const kmf::VnId exported = *node;
  detail::ComponentData& data = write();
  detail::add_connector(data.shape, exportedId, type);
  data.subgraph->append(exported);
}

bool Component::isExported(const kmf::VnIdPathIterator& node) const {
  return export_index(detail::Access::of(*this), node) != detail::SubgraphData::npos;
}

const kmf::VnId& Component::mapExported(const kmf::VnIdPathIterator& node) const {
  const std::uint32_t at = export_index(detail::Access::of(*this), node);
  if (at == detail::SubgraphData::npos) detail::throw_entry_name_not_found(node);
  return connectorOrder()[at];
}

}  // namespace gl::core
