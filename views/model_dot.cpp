#include "views/model_dot.hpp"

#include "embedded/block_diagram/paths.hpp"
#include "platform/foundation/strings.hpp"
#include "views/graph_access.hpp"
#include "views/graph_walk.hpp"
#include "views/parameter_text.hpp"

#include <algorithm>
#include <ostream>
#include <string_view>

namespace kinemo::views {

namespace {

std::string quoted(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') result += '\\';
    result += c;
  }
  return result + "\"";
}

/// A text that is shown, where Graphviz takes "&" for the begin of an entity.
std::string shown(std::string_view text) {
  std::string result;
  for (const char c : text) {
    result += c;
    if (c == '&') result += "amp;";
  }
  return quoted(result);
}

/// The last name of the path, or the id of what has none.
std::string label(const std::string& object, const kmf::VnId& id) {
  if (object.empty()) return std::string(id);
  return kmf::ustring_to_utf8_string(embedded::block_diagram::splitPath(kmf::utf8_string_to_ustring(object)).back());
}

/// What a pointer at a component shows: its path and type, and a line for each parameter that isn't a text.
std::string tooltip(const gl::core::Component& component) {
  const std::string object = object_text(component);
  std::string text = (object.empty() ? "" : object + "\n") + std::string(component.type());
  for (const auto& [id, parameter] : component.parameters()) {
    const ParameterVariant& value = parameter.get(kmf::VnIdPathIterator());
    if (!boost::get<ustring>(&value)) text += "\n" + std::string(id) + " = " + parameter_text(value);
  }
  return text;
}

std::string tooltip(const gl::core::RuntimeParameterInfo& parameters) {
  std::string text = "run-time parameters";
  for (const kmf::VnId& id : parameters.runtimeParameters()) {
    text += "\n" + std::string(id);
    if (parameters.nonValueParameters().count(id) == 0) text += " = " + value_text(parameters.value(id));
  }
  return text;
}

class DotWriter {
 public:
  explicit DotWriter(std::ostream& out) : out_(out) {}

  void enter(const GraphLevel& level) {
    path_.enter(level);
    if (!level.owner) return;
    const std::string object = object_text(*level.owner);
    line() << "label=" << shown(label(object, *level.id)) << ";\n";
    if (!object.empty()) line() << "tooltip=" << shown(object) << ";\n";
  }

  void component(const GraphLevel&, const kmf::VnId& id, const gl::core::Component& component) {
    const std::string path = path_.text() + std::string(id);
    if (component.isSubgraph()) {
      line() << "subgraph " << quoted("cluster_" + path) << " {\n";
    } else {
      line() << quoted(path) << " [shape=box, label=" << shown(label(object_text(component), id))
             << ", tooltip=" << shown(tooltip(component)) << "];\n";
    }
  }

  /// Nodes and connections come last in a cluster; a connection to a subgraph ends at the node that it exports.
  void leave(const GraphLevel& level) {
    for (const auto& entry : level.graph->nodes()) {
      line() << quoted(node_name(path_.text(), entry.first)) << " [shape=point, xlabel=" << quoted(entry.first.view())
             << "];\n";
    }
    write_connections(level);
    path_.leave();
    if (level.owner) line() << "}\n";
  }

 private:
  std::ostream& line() { return out_ << std::string(2 * std::min<std::size_t>(path_.depth() + 1, 40), ' '); }

  void write_connections(const GraphLevel& level) {
    for (const auto& [id, component] : level.graph->components()) {
      if (component.isSubgraph()) {
        write_exports(level, id, component);
        continue;
      }
      for (const kmf::VnId& connector : component.connectorOrder()) {
        const kmf::VnId* node = level.graph->nodeOf(gl::core::ConnectorSpec(id, connector));
        if (node == nullptr) continue;
        line() << quoted(path_.text() + std::string(id)) << " -- " << quoted(node_name(path_.text(), *node))
               << " [taillabel=" << quoted(connector.view()) << "];\n";
      }
    }
  }

  void write_exports(const GraphLevel& level, const kmf::VnId& id, const gl::core::Component& component) {
    for (const auto& entry : component.graph().nodes()) {
      if (!component.isExported(entry.first)) continue;
      const gl::core::ConnectorSpec connector(id, component.mapExported(entry.first));
      const kmf::VnId* node = level.graph->nodeOf(connector);
      if (node == nullptr) continue;
      line() << quoted(node_name(path_.text() + std::string(id) + "/", entry.first)) << " -- "
             << quoted(node_name(path_.text(), *node)) << " [style=dashed];\n";
    }
  }

  /// Apart from the names of components, which have no "." in them.
  static std::string node_name(const std::string& path, const kmf::VnId& id) { return path + "." + std::string(id); }

  std::ostream& out_;
  GraphPath path_{'/'};
};

}  // namespace

void write_model_dot(std::ostream& out, const std::string& name, const gl::core::Model& model) {
  out << "graph " << quoted(name) << " {\n";
  if (!model.runtimeParameters().runtimeParameters().empty())
    out << "  tooltip=" << shown(tooltip(model.runtimeParameters())) << ";\n";
  DotWriter writer(out);
  walk_graphs(model.graph(), writer);
  out << "}\n";
}

}  // namespace kinemo::views
