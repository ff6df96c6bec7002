#include "views/model_graphml.hpp"

#include "views/graph_access.hpp"
#include "views/graph_walk.hpp"
#include "views/xml_text.hpp"

#include <algorithm>
#include <ostream>

namespace kinemo::views {

namespace {

struct Key {
  const char* owner;
  const char* name;
};

constexpr Key keys[] = {
    {"graph", "domain"}, {"all", "label"},      {"node", "kind"},   {"node", "type"},
    {"node", "object"},  {"edge", "connector"}, {"edge", "export"},
};

/// Components have ids such as "Filter.R1", nodes of the graph such as "Filter.:n1", which no component has.
class GraphmlWriter {
 public:
  GraphmlWriter(std::ostream& out, const std::string& name, const std::string& domain)
      : out_(out), name_(name), domain_(domain) {}

  void enter(const GraphLevel& level) {
    path_.enter(level);
    line(-1) << "<graph id=\"" << (level.owner ? path_.text() : ":") << "\" edgedefault=\"undirected\">\n";
    if (level.owner) return;
    data("label", name_, 0);
    data("domain", domain_, 0);
  }

  void component(const GraphLevel&, const kmf::VnId& id, const gl::core::Component& component) {
    line() << "<node id=\"" << path_.text() << id.view() << "\">\n";
    data("label", id.view());
    data("kind", component.isSubgraph() ? "subgraph" : "component");
    data("type", std::string(component.type()));
    data("object", object_text(component));
    for (const kmf::VnId& connector : component.connectorOrder())
      line(1) << "<port name=\"" << connector.view() << "\"/>\n";
    if (!component.isSubgraph()) line() << "</node>\n";
  }

  /// An edge to a subgraph ends at its port; the edges of its exports come after those of connections.
  void leave(const GraphLevel& level) {
    for (const auto& [id, node] : level.graph->nodes()) write_node(id, node);
    for (const gl::core::Connection& connection : connections(*level.graph)) write_connection(connection);
    for (const auto& [id, component] : level.graph->components())
      if (component.isSubgraph()) write_exports(id, component);
    line(-1) << "</graph>\n";
    path_.leave();
    if (level.owner) line() << "</node>\n";
  }

 private:
  /// Each level of the graph is two of the text: its element, and the node around it.
  std::ostream& line(int deeper = 0) {
    const int depth = static_cast<int>(std::min<std::size_t>(path_.depth(), 20));
    return out_ << std::string(static_cast<std::size_t>(2 * (2 * depth + deeper)), ' ');
  }

  void data(const char* key, std::string_view text, int deeper = 1) {
    if (!text.empty()) line(deeper) << "<data key=\"" << key << "\">" << xml_text(text) << "</data>\n";
  }

  void write_node(const kmf::VnId& id, const gl::core::Node& node) {
    line() << "<node id=\"" << path_.text() << ':' << id.view() << "\">\n";
    data("label", id.view());
    data("kind", "node");
    data("object", object_text(node));
    line() << "</node>\n";
  }

  void write_connection(const gl::core::Connection& connection) {
    const gl::core::ConnectorSpec& end = connection.connectorSpec();
    line() << "<edge source=\"" << path_.text() << end.componentId().view() << "\" sourceport=\""
           << end.connectorId().view() << "\" target=\"" << path_.text() << ':' << connection.nodeId().view()
           << "\">\n";
    data("connector", end.connectorId().view());
    line() << "</edge>\n";
  }

  void write_exports(const kmf::VnId& id, const gl::core::Component& component) {
    for (const auto& entry : component.graph().nodes()) {
      if (!component.isExported(entry.first)) continue;
      const kmf::VnId connector = component.mapExported(entry.first);
      line() << "<edge source=\"" << path_.text() << id.view() << "\" sourceport=\"" << connector.view()
             << "\" target=\"" << path_.text() << id.view() << ".:" << entry.first.view() << "\">\n";
      data("export", connector.view());
      line() << "</edge>\n";
    }
  }

  std::ostream& out_;
  const std::string& name_;
  const std::string& domain_;
  GraphPath path_{'.'};
};

}  // namespace

void write_model_graphml(std::ostream& out, const std::string& name, const std::string& domain,
                         const gl::core::Model& model) {
  out << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<graphml xmlns=\"http://graphml.graphdrawing.org/xmlns\">\n";
  for (const Key& key : keys)
    out << "  <key id=\"" << key.name << "\" for=\"" << key.owner << "\" attr.name=\"" << key.name
        << "\" attr.type=\"string\"/>\n";
  GraphmlWriter writer(out, name, domain);
  walk_graphs(model.graph(), writer);
  out << "</graphml>\n";
}

}  // namespace kinemo::views
