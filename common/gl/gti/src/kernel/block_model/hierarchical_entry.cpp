#include "common/gl/gti/src/kernel/block_model/hierarchical_entry.hpp"

#include "common/gl/gti/export/block_path.hpp"
#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/block_model/mask_parameters.hpp"
#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "common/gl/gti/src/kernel/translation/graph_access.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <vector>

namespace gl::gti {

namespace {

using gl::core::Connector;
using gl::core::ConnectorSpec;
using gl::core::Graph;
using gl::core::Parameter;

const kmf::VnIdPathIterator root;

std::map<kmf::VnId, Parameter> componentParameters(const BlockData& data) {
  const data2::cvi::CvArrayValueConverter convert(unit_manager::get_cv_context());
  std::map<kmf::VnId, Parameter> parameters;
  for (const auto& [id, value] : data.parameters()) {
    const cvUniquePtr array(cvCreateSharedCopy(value.value()));
    const ParameterVariant content =
        convert.canConvert(array.get()) ? ParameterVariant(convert(array.get())) : ParameterVariant(value.expression());
    const bool isValue = content.which() == 1;
    parameters.emplace(id, isValue ? Parameter(content, gl::core::ParameterType::any()) : Parameter(content));
  }
  return parameters;
}

/// The port of the subsystem that stands for a node: of those that the first port inside is joined to, the one that
/// comes first in order. A port inside that no I/O port block is joined to says nothing, and the next one is asked.
const IoPortEntry* boundaryPort(const KmIoPortInfo& info, const std::set<double>& innerHandles) {
  for (const double inner : innerHandles) {
    const IoPortEntry* chosen = nullptr;
    for (const double id : info.idsOf(inner)) {
      const IoPortEntry& port = info.port(id);
      if (chosen == nullptr || port.order() < chosen->order()) chosen = &port;
    }
    if (chosen != nullptr) return chosen;
  }
  return nullptr;
}

/// Which of a node's connectors gives the node its type: the one that precedes all others.
class TypeOfNode {
 public:
  TypeOfNode(const Graph& graph, const ConnectorPrecedenceFcn& precedence) : graph_(graph), precedence_(precedence) {}

  const kmf::VnIdPath1& operator()(const kmf::VnId& node) const {
    const ConnectorSpec* chosen = nullptr;
    for (const gl::core::Connection& connection : graph_.connections(node)) {
      const ConnectorSpec& candidate = connection.connectorSpec();
      if (chosen == nullptr || prefer(candidate, *chosen)) chosen = &candidate;
    }
    return type(chosen == nullptr ? ConnectorSpec(kmf::VnId(), kmf::VnId()) : *chosen);
  }

 private:
  bool prefer(const ConnectorSpec& a, const ConnectorSpec& b) const {
    return a != b && precedence_(type(a), a, type(b), b);
  }
  const kmf::VnIdPath1& type(const ConnectorSpec& spec) const { return fetch<Connector>(graph_, spec.path()).type(); }

  const Graph& graph_;
  const ConnectorPrecedenceFcn& precedence_;
};

class HierarchicalBlockEntryData final : public BlockEntryData {
 public:
  HierarchicalBlockEntryData(KmIoPortCache& ioPorts, const ustring& path, const Graph& graph, const ExposedNodes& nodes,
                             const TranslationConfiguration& config) {
    path_ = path;
    handle_ = modelHandle(path);
    readMaskParameters(handle_, data_);
    const std::map<kmf::VnId, Parameter> parameters = componentParameters(data_);
    component_ = gl::core::Component(graph, parameters);
    if (nodes.empty()) return;

    const Ports boundary = boundaryPorts(ioPorts.get(handle_), nodes);
    const std::map<std::string, kmf::VnId> ids = exportIds(boundary, graph, parameters, config);
    const TypeOfNode typeOf(graph, config.connectorPrecedenceFcn());
    for (const auto& [node, handles] : nodes) {
      const IoPortEntry& port = *boundary.at(node);
      const kmf::VnId& exportId = ids.at(nameOf(port));
      component_.exportNode(node, exportId, typeOf(node));
      addPort(port.handle(), exportId, handles.outerHandles);
    }
  }

  void collectSubstitutions(std::map<double, double>&) override {}

  ComponentEmbedding embedding(const TranslationConfiguration&) const override {
    ComponentEmbedding made(component_);
    for (const auto& [handle, port] : ports_) made.addPortEmbedding(port.name(), kmf::VnId(port.name()));
    return made;
  }

  boost::shared_ptr<BlockEntryData> clone() const override {
    return boost::make_shared<HierarchicalBlockEntryData>(*this);
  }

 private:
  using Ports = std::map<kmf::VnId, const IoPortEntry*>;

  static std::string nameOf(const IoPortEntry& port) { return kmf::ustring_to_utf8_string(port.name()); }

  Ports boundaryPorts(const KmIoPortInfo& info, const ExposedNodes& nodes) const {
    Ports ports;
    for (const auto& [node, handles] : nodes) {
      const IoPortEntry* port = boundaryPort(info, handles.innerHandles);
      if (port == nullptr) {
        kmf::throw_message("kinemo:common:gl:gti:compile", "UnknownBoundaryPort", std::string(node), path_);
      }
      ports.emplace(node, port);
    }
    return ports;
  }

  /// An identifier for each port's name that nothing in the component has.
  static std::map<std::string, kmf::VnId> exportIds(const Ports& boundary, const Graph& graph,
                                                    const std::map<kmf::VnId, Parameter>& parameters,
                                                    const TranslationConfiguration& config) {
    std::map<std::string, kmf::VnId> names;
    for (const auto& [node, port] : boundary) names[nameOf(*port)];
    std::vector<kmf::VnId> taken(config.reserved().begin(), config.reserved().end());
    for (const kmf::VnIdPath& path : graph.ids(root, 1)) taken.push_back(path.front());
    for (const auto& [id, parameter] : parameters) taken.push_back(id);
    kmf::VnId::stringsToIds(names, taken, 64);
    return names;
  }

  void addPort(double handle, const kmf::VnId& name, const std::set<double>& connected) {
    PortRecord port;
    port.setName(name);
    for (const double outer : connected) port.addConnected(outer);
    ports_.emplace(handle, port);
  }

  gl::core::Component component_;
};

}  // namespace

boost::shared_ptr<BlockEntryData> makeHierarchicalEntry(KmIoPortCache& ioPorts, const BlockPath& path,
                                                        const Graph& graph, const ExposedNodes& nodes,
                                                        const TranslationConfiguration& config) {
  return makeHierarchicalEntry(ioPorts, path.string(), graph, nodes, config);
}

boost::shared_ptr<BlockEntryData> makeHierarchicalEntry(KmIoPortCache& ioPorts, const ustring& path, const Graph& graph,
                                                        const ExposedNodes& nodes,
                                                        const TranslationConfiguration& config) {
  return boost::make_shared<HierarchicalBlockEntryData>(ioPorts, path, graph, nodes, config);
}

}  // namespace gl::gti
