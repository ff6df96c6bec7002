#include "common/gl/gti/src/kernel/translation/level_graph.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/connectivity/port_handles.hpp"
#include "common/gl/gti/src/kernel/translation/connector_sets.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

namespace gl::gti {

namespace {

constexpr std::size_t longestId = 64;
const kmf::VnIdPathIterator here;

/// Legal, distinct identifiers for names, in the order of the names. Equal names get one identifier.
std::vector<kmf::VnId> idsFor(const std::vector<std::string>& names, const std::vector<kmf::VnId>& taken) {
  std::map<std::string, kmf::VnId> byName;
  for (const std::string& name : names) byName.emplace(name, kmf::VnId());
  kmf::VnId::stringsToIds(byName, taken, longestId);
  std::vector<kmf::VnId> ids;
  ids.reserve(names.size());
  for (const std::string& name : names) ids.push_back(byName.find(name)->second);
  return ids;
}

const ComponentEmbedding& nothing() {
  static const ComponentEmbedding embedding{gl::core::Component()};
  return embedding;
}

/// The making of one system's graph, step by step.
class LevelGraph {
 public:
  LevelGraph(std::vector<std::unique_ptr<PendingBlock>>& group, PortSubstitutions& substitutions,
             const TranslationConfiguration& configuration, std::vector<kmf::VnId> taken)
      : group_(group),
        substitutions_(substitutions),
        taken_(std::move(taken)),
        sets_(graph_, configuration.connectorPrecedenceFcn()) {
    taken_.insert(taken_.end(), configuration.reserved().begin(), configuration.reserved().end());
  }

  gl::core::Graph build(ExternalEnds& externalEnds) {
    addComponents();
    mergePorts();
    addNodes();
    fillExternalEnds(externalEnds);
    return std::move(graph_);
  }

 private:
  /// A port of the system that names a port outside.
  struct Crossing {
    double outside;
    double handle;
    std::size_t connector;
  };

  void addComponents() {
    std::vector<std::string> names;
    names.reserve(group_.size());
    for (const auto& block : group_) names.push_back(kmf::ustring_to_utf8_string(ustring(block->name)));
    const std::vector<kmf::VnId> blockIds = idsFor(names, taken_);
    reserve();
    for (std::size_t i = 0; i < group_.size(); ++i) addComponent(i, blockIds[i]);
    taken_.insert(taken_.end(), blockIds.begin(), blockIds.end());
  }

  void reserve() {
    std::size_t ports = 0;
    for (const auto& block : group_) ports += block->entry->ports().size();
    owners_.reserve(ports);
    connectors_.reserve(ports);
    sets_.reserve(ports);
  }

  void addComponent(std::size_t i, const kmf::VnId& id) {
    PendingBlock& block = *group_[i];
    const std::map<ustring, kmf::VnId> embedded = block.embedding.portEmbedding();
    gl::core::Component component = block.embedding.component();
    block.embedding = nothing();  // so that the component has one owner and is tagged in place
    component.tag(gl::core::OBJECT(), block.entry->path());
    graph_.insert(id, std::move(component));
    sets_.beginComponent(id);
    for (const auto& [handle, port] : block.entry->ports()) {
      const auto connector = embedded.find(port.name());
      if (connector == embedded.end()) {
        kmf::throw_message("kinemo:common:gl:gti:compile", "MissingPortEmbedding", port.name());
      }
      const std::size_t number = sets_.add(connector->second);
      connectors_[handle] = number;
      if (owners_.size() < sets_.size()) owners_.push_back(i);
    }
  }

  void mergePorts() {
    std::vector<double> joined;
    for (const auto& block : group_) {
      for (const auto& [handle, port] : block->entry->ports()) {
        joined.clear();
        for (const double far : port.connected()) joined.push_back(substitutions_.resolve(far, block->since));
        sortHandles(joined);
        joined.erase(std::unique(joined.begin(), joined.end()), joined.end());
        mergePort(handle, joined);
      }
    }
  }

  void mergePort(double handle, const std::vector<double>& joined) {
    const std::size_t connector = kmf::boost_unordered_map_at(connectors_, handle);
    for (const double far : joined) {
      const auto inside = connectors_.find(far);
      if (inside != connectors_.end()) {
        sets_.unite(connector, inside->second);
      } else {
        crossings_.push_back({far, handle, connector});
      }
    }
  }

  void addNodes() {
    const std::vector<std::size_t> roots = sets_.classes();
    std::vector<std::string> names;
    names.reserve(roots.size());
    for (const std::size_t root : roots) {
      const gl::core::ConnectorSpec& spec = sets_.spec(root);
      names.push_back(std::string(spec.componentId()).append("_").append(spec.connectorId().view()));
    }
    const std::vector<kmf::VnId> ids = idsFor(names, taken_);
    nodes_.resize(sets_.size());
    for (std::size_t i = 0; i < roots.size(); ++i) addNode(roots[i], ids[i]);
    for (const std::size_t element : sets_.elements()) {
      graph_.insert(nodes_[sets_.root(element)], sets_.spec(element), here);
    }
  }

  /// The node carries the path of the block whose connector names it.
  void addNode(std::size_t root, const kmf::VnId& id) {
    gl::core::Node node;
    node.tag(gl::core::OBJECT(), group_[owners_[root]]->entry->path());
    graph_.insert(id, std::move(node));
    nodes_[root] = id;
  }

  void fillExternalEnds(ExternalEnds& externalEnds) {
    externalEnds.clear();
    for (const Crossing& crossing : crossings_) {
      ExternalEnd& end = externalEnds[crossing.outside];
      if (end.handles.empty()) end.nodeId = nodes_[sets_.root(crossing.connector)];
      end.handles.insert(crossing.handle);
    }
  }

  std::vector<std::unique_ptr<PendingBlock>>& group_;
  PortSubstitutions& substitutions_;
  std::vector<kmf::VnId> taken_;
  gl::core::Graph graph_;
  ConnectorSets sets_;
  boost::unordered_map<double, std::size_t> connectors_;  ///< by port handle: the connector's number
  std::vector<std::size_t> owners_;                       ///< by connector: its block
  std::vector<kmf::VnId> nodes_;                          ///< by representative connector: the node
  std::vector<Crossing> crossings_;
};

}  // namespace

gl::core::Graph buildGraph(std::vector<std::unique_ptr<PendingBlock>>& group, PortSubstitutions& substitutions,
                           const TranslationConfiguration& configuration, ExternalEnds& externalEnds,
                           std::vector<kmf::VnId> ids) {
  return LevelGraph(group, substitutions, configuration, std::move(ids)).build(externalEnds);
}

}  // namespace gl::gti
