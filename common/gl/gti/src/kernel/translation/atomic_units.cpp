#include "common/gl/gti/src/kernel/translation/atomic_units.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "common/gl/gti/src/kernel/translation/component_walk.hpp"
#include "common/gl/gti/src/kernel/translation/graph_access.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <set>
#include <string>

namespace gl::gti {

namespace {

using gl::core::Component;
using gl::core::Graph;
using gl::core::Ids;

kmf::VnIdPath parentOf(const kmf::VnIdPath& path) {
  kmf::VnIdPath parent(path);
  parent.chop(path.begin() == path.end() ? parent.end() : parent.end() - 1);
  return parent;
}

/// The units that the leaf components of a piece lie in. All leaves of one system lie in one unit, so it is asked for
/// once for each system.
std::set<kmf::VnIdPath> touchedUnits(const Graph& piece, AtomicUnits& units) {
  std::set<kmf::VnIdPath> systems;
  kmf::VnIdPath last;
  bool any = false;
  walkComponents(piece, [&](const kmf::VnIdPath& path, const Component& component) {
    if (component.isSubgraph()) return;
    const bool sameSystem = any && path.size() == last.size() + 1 && std::equal(last.begin(), last.end(), path.begin());
    if (sameSystem) return;
    last = parentOf(path);
    any = true;
    systems.insert(atomicUnit(units, last));
  });
  return systems;
}

/// Adds the leaf components of a piece that lie in another unit than the model's own.
void addMembers(const Graph& piece, AtomicUnits& units, Ids& members) {
  walkComponents(piece, [&](const kmf::VnIdPath& path, const Component& component) {
    if (!component.isSubgraph() && !atomicUnit(units, parentOf(path)).empty()) members.insert(path);
  });
}

std::vector<std::string> atomicFlags(const std::vector<ustring>& blocks) {
  const cvUniquePtr object(kmf::string_vector_to_cvarray(blocks, 1));
  return kmf::cvarray_to_string_vector(getParam(object.get(), "TreatAsAtomicUnit").get());
}

}  // namespace

AtomicUnits readAtomicUnits(const Graph& graph) {
  std::vector<kmf::VnIdPath> paths;
  std::vector<ustring> blocks;
  walkComponents(graph, [&](const kmf::VnIdPath& path, const Component& component) {
    if (!component.isSubgraph()) return;
    ustring block = gl::core::object(component);
    if (block.empty()) return;
    paths.push_back(path);
    blocks.push_back(std::move(block));
  });

  const std::vector<std::string> values = atomicFlags(blocks);
  AtomicUnits units;
  units.isAtomic[kmf::VnIdPath()] = true;
  for (std::size_t i = 0; i < values.size(); ++i) units.isAtomic[paths.at(i)] = kmf::lower(values[i]) == "on";
  return units;
}

kmf::VnIdPath atomicUnit(AtomicUnits& units, const kmf::VnIdPath& path) {
  // Outward to the first path that is a unit or whose unit is known; then all paths on the way get that unit.
  std::vector<kmf::VnIdPath> passed;
  kmf::VnIdPath unit = path;
  for (;;) {
    const auto known = units.unitOf.find(unit);
    if (known != units.unitOf.end()) {
      unit = known->second;
      break;
    }
    passed.push_back(unit);
    const auto flag = units.isAtomic.find(unit);
    if (unit.empty() || (flag != units.isAtomic.end() && flag->second)) break;
    unit.chop(unit.end() - 1);
  }
  for (const kmf::VnIdPath& inner : passed) units.unitOf.emplace(inner, unit);
  return unit;
}

std::vector<kmf::VnIdPath> findBoundaryViolations(const Graph& graph) {
  const std::vector<Graph> pieces = gl::core::ConnectedComponents()(graph);
  AtomicUnits units = readAtomicUnits(graph);
  Ids violations;
  for (const Graph& piece : pieces) {
    if (touchedUnits(piece, units).size() > 1) addMembers(piece, units, violations);
  }
  return {violations.begin(), violations.end()};
}

void checkNonVirtualBoundaries(const Graph& graph, const TranslationConfiguration& configuration) {
  if (!configuration.hasNonVirtualBoundaryFcn()) return;
  const std::vector<kmf::VnIdPath> violations = findBoundaryViolations(graph);
  if (violations.empty()) return;
  std::vector<Component> offenders;
  for (const kmf::VnIdPath& path : violations) offenders.push_back(fetch<Component>(graph, path));
  configuration.nonVirtualBoundaryFcn()(offenders);
}

}  // namespace gl::gti
