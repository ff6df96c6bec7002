#include "views/model_dot.hpp"

#include "views/graph_access.hpp"

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
    const std::string type(component.type());
    line() << quoted(path) << " [shape=box, label=" << quoted(std::string(id)) << ", tooltip=" << quoted(type)
           << "];\n";
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
  DotWriter(out).write(model.graph());
  out << "}\n";
}

}  // namespace kinemo::views
