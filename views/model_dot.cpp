#include "views/model_dot.hpp"

#include "views/graph_access.hpp"
#include "views/parameter_text.hpp"

#include <algorithm>
#include <ostream>
#include <string_view>
#include <vector>

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

/// What a pointer at a component shows: its type, and a line for each parameter that isn't a text.
std::string tooltip(const gl::core::Component& component) {
  std::string text(component.type());
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

  void write(const gl::core::Graph& root) {
    enter(root, nullptr, "");
    while (!levels_.empty()) {
      Level& level = levels_.back();
      if (level.next == level.graph->components().end()) {
        leave();
      } else {
        const auto current = level.next++;
        write_component(current->first, current->second);
      }
    }
  }

 private:
  struct Level {
    const gl::core::Graph* graph;
    const gl::core::Component* owner;
    std::string path;  ///< with a "/" at its end below the root
    std::map<kmf::VnId, gl::core::Component>::const_iterator next;
  };

  std::ostream& line() { return out_ << std::string(2 * std::min<std::size_t>(levels_.size() + 1, 40), ' '); }

  void enter(const gl::core::Graph& graph, const gl::core::Component* owner, const std::string& path) {
    levels_.push_back({&graph, owner, path, graph.components().begin()});
  }

  void write_component(const kmf::VnId& id, const gl::core::Component& component) {
    const std::string path = levels_.back().path + std::string(id);
    if (component.isSubgraph()) {
      line() << "subgraph " << quoted("cluster_" + path) << " {\n";
      enter(component.graph(), &component, path + "/");
      line() << "label=" << quoted(id.view()) << ";\n";
      return;
    }
    line() << quoted(path) << " [shape=box, label=" << quoted(std::string(id))
           << ", tooltip=" << quoted(tooltip(component)) << "];\n";
  }

  /// Nodes and connections come last in a cluster; a connection to a subgraph ends at the node that it exports.
  void leave() {
    const Level& level = levels_.back();
    for (const auto& entry : level.graph->nodes()) {
      line() << quoted(node_name(level.path, entry.first)) << " [shape=point, xlabel=" << quoted(entry.first.view())
             << "];\n";
    }
    write_connections(level);
    const bool inner = level.owner != nullptr;
    levels_.pop_back();
    if (inner) line() << "}\n";
  }

  void write_connections(const Level& level) {
    for (const auto& [id, component] : level.graph->components()) {
      if (component.isSubgraph()) {
        write_exports(level, id, component);
        continue;
      }
      for (const kmf::VnId& connector : component.connectorOrder()) {
        const kmf::VnId* node = level.graph->nodeOf(gl::core::ConnectorSpec(id, connector));
        if (node == nullptr) continue;
        line() << quoted(level.path + std::string(id)) << " -- " << quoted(node_name(level.path, *node))
               << " [taillabel=" << quoted(connector.view()) << "];\n";
      }
    }
  }

  void write_exports(const Level& level, const kmf::VnId& id, const gl::core::Component& component) {
    for (const auto& entry : component.graph().nodes()) {
      if (!component.isExported(entry.first)) continue;
      const gl::core::ConnectorSpec connector(id, component.mapExported(entry.first));
      const kmf::VnId* node = level.graph->nodeOf(connector);
      if (node == nullptr) continue;
      line() << quoted(node_name(level.path + std::string(id) + "/", entry.first)) << " -- "
             << quoted(node_name(level.path, *node)) << " [style=dashed];\n";
    }
  }

  /// Apart from the names of components, which have no "." in them.
  static std::string node_name(const std::string& path, const kmf::VnId& id) { return path + "." + std::string(id); }

  std::ostream& out_;
  std::vector<Level> levels_;
};

}  // namespace

void write_model_dot(std::ostream& out, const std::string& name, const gl::core::Model& model) {
  out << "graph " << quoted(name) << " {\n";
  if (!model.runtimeParameters().runtimeParameters().empty())
    out << "  tooltip=" << quoted(tooltip(model.runtimeParameters())) << ";\n";
  DotWriter(out).write(model.graph());
  out << "}\n";
}

}  // namespace kinemo::views
