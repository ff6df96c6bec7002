#include "common/gl/gti/src/kernel/translation/hierarchy_fold.hpp"

#include "common/gl/gti/export/block_path.hpp"
#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/block_model/hierarchical_entry.hpp"
#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "common/gl/gti/src/kernel/translation/level_graph.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <memory>
#include <utility>

namespace gl::gti {

namespace {

/// Names of a subsystem's mask variables: inside it, no generated identifier may take them.
std::vector<kmf::VnId> maskIds(const ustring& subsystem) {
  std::vector<kmf::VnId> ids;
  const cvUniquePtr variables = getParam(modelHandle(subsystem), "MaskWSVariables");
  if (cvIsEmpty(variables.get())) return ids;
  const int nameField = cvGetFieldNumber(variables.get(), "Name");
  for (std::size_t i = 0; i < cvGetNumberOfElements(variables.get()); ++i) {
    ids.emplace_back(kmf::cvarray_to_string(cvGetFieldByNumber(variables.get(), i, nameField)));
  }
  return ids;
}

ExposedNodes exposedNodes(const ExternalEnds& externalEnds) {
  ExposedNodes nodes;
  for (const auto& [outer, end] : externalEnds) {
    NodePorts& ports = nodes[end.nodeId];
    ports.innerHandles.insert(end.handles.begin(), end.handles.end());
    ports.outerHandles.insert(outer);
  }
  return nodes;
}

/// Whoever named a port inside the subsystem shall name the subsystem's own port from now on.
void substitutePorts(const BlockEntryData& subsystem, ExternalEnds& externalEnds, PortSubstitutions& substitutions) {
  substitutions.beginTable();
  for (const auto& [handle, port] : subsystem.ports()) {
    for (const double outer : port.connected()) {
      const auto end = externalEnds.find(outer);
      if (end == externalEnds.end()) continue;
      for (const double inner : end->second.handles) substitutions.add(inner, handle);
      externalEnds.erase(end);
    }
  }
}

using Entries = std::vector<boost::shared_ptr<BlockEntryData>>;

/// One run of the fold.
class Fold {
 public:
  Fold(const ustring& modelName, const TranslationConfiguration& configuration, Entries& entries)
      : modelPath_(BlockPath(modelName).string()), configuration_(configuration), entries_(entries) {}

  gl::core::Graph graphOf(Level& level, ExternalEnds& externalEnds, std::vector<kmf::VnId> ids) {
    LevelTree::sortBlocks(level);
    gl::core::Graph graph = buildGraph(level.blocks, substitutions_, configuration_, externalEnds, std::move(ids));
    std::vector<std::unique_ptr<PendingBlock>>().swap(level.blocks);
    return graph;
  }

  void foldSubsystem(Level& level) {
    const ustring path = fullPath(level);
    ExternalEnds externalEnds;
    std::vector<kmf::VnId> taken = maskIds(path);
    const gl::core::Graph graph = graphOf(level, externalEnds, std::move(taken));
    const boost::shared_ptr<BlockEntryData> entry =
        makeHierarchicalEntry(ioPorts_, path, graph, exposedNodes(externalEnds), configuration_);
    entries_.push_back(entry);
    substitutePorts(*entry, externalEnds, substitutions_);
    level.parent->blocks.push_back(std::make_unique<PendingBlock>(
        PendingBlock{entry, entry->embedding(configuration_), level.name, substitutions_.now()}));
  }

 private:
  ustring fullPath(const Level& level) const {
    if (modelPath_.empty()) return ustring(level.path);
    ustring path;
    path.reserve(modelPath_.size() + 1 + level.path.size());
    return path.append(modelPath_).append(1, u'/').append(level.path);
  }

  ustring modelPath_;
  const TranslationConfiguration& configuration_;
  Entries& entries_;
  KmIoPortCache ioPorts_;
  PortSubstitutions substitutions_;
};

}  // namespace

gl::core::Graph foldHierarchy(LevelTree& pending, const ustring& modelName,
                              const TranslationConfiguration& configuration, const std::vector<kmf::VnId>& reservedIds,
                              Entries& entries) {
  Fold fold(modelName, configuration, entries);
  for (Level* level : pending.deepestFirst()) {
    if (level != &pending.root()) fold.foldSubsystem(*level);
  }
  ExternalEnds outsideTheModel;  // connections that lead out of the model mean nothing
  return fold.graphOf(pending.root(), outsideTheModel, reservedIds);
}

}  // namespace gl::gti
