#include "views/model_summary.hpp"

#include "views/graph_access.hpp"
#include "views/parameter_text.hpp"

#include <algorithm>
#include <ostream>
#include <vector>

namespace kinemo::views {

namespace {

struct Level {
  const gl::core::Graph* graph;
  std::map<kmf::VnId, gl::core::Component>::const_iterator next;
};

Level level_of(const gl::core::Graph& graph) {
  return {&graph, graph.components().begin()};
}

std::string counted(std::size_t number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

class Tree {
 public:
  Tree(std::ostream& out, const SummaryOptions& options) : out_(out), options_(options) {}

  void write(const gl::core::Graph& root) {
    levels_.push_back(level_of(root));
    while (!levels_.empty() && lines_ < options_.component_lines) {
      Level& level = levels_.back();
      if (level.next == level.graph->components().end()) {
        levels_.pop_back();
        continue;
      }
      const auto current = level.next++;
      write_component(current->first, current->second);
      if (current->second.isSubgraph()) levels_.push_back(level_of(current->second.graph()));
    }
  }

  std::size_t lines() const { return lines_; }

 private:
  void write_component(const kmf::VnId& id, const gl::core::Component& component) {
    constexpr std::size_t deepest_indentation = 30;
    ++lines_;
    out_ << std::string(2 * std::min(levels_.size(), deepest_indentation), ' ') << bold(std::string(id)) << "  ";
    out_ << (component.isSubgraph() ? contents_text(component) : leaf_text(component)) << '\n';
  }

  std::string bold(const std::string& text) const { return options_.color ? "\x1b[1m" + text + "\x1b[0m" : text; }

  static std::string contents_text(const gl::core::Component& component) {
    std::string text = "(" + counted(component.graph().components().size(), "component") + ", " +
                       counted(component.graph().nodes().size(), "node") + ")";
    constexpr std::size_t most_connectors = 8;
    const std::vector<kmf::VnId>& connectors = component.connectorOrder();
    for (std::size_t i = 0; i < std::min(connectors.size(), most_connectors); ++i) {
      text += (i == 0 ? "  ports " : ", ") + std::string(connectors[i]);
    }
    if (connectors.size() > most_connectors) {
      text += ", and " + std::to_string(connectors.size() - most_connectors) + " more";
    }
    return text;
  }

  static std::string leaf_text(const gl::core::Component& component) {
    constexpr std::size_t longest_value = 60;
    std::string text(component.type());
    for (const auto& [id, parameter] : component.parameters()) {
      std::string value = parameter_text(parameter.get(kmf::VnIdPathIterator()));
      if (value == "''") continue;
      if (value.size() > longest_value) {
        std::size_t cut = longest_value;
        while (cut > 0 && (static_cast<unsigned char>(value[cut]) & 0xC0) == 0x80) --cut;
        value = value.substr(0, cut) + "...";
      }
      std::replace(value.begin(), value.end(), '\n', ' ');
      text += "  " + std::string(id) + " = " + value;
    }
    return text;
  }

  std::ostream& out_;
  const SummaryOptions& options_;
  std::vector<Level> levels_;
  std::size_t lines_ = 0;
};

void write_runtime_parameters(std::ostream& out, const gl::core::RuntimeParameterInfo& parameters) {
  const std::set<kmf::VnId> ids = parameters.runtimeParameters();
  if (ids.empty()) return;
  out << "run-time parameters\n";
  for (const kmf::VnId& id : ids) {
    out << "  " << id;
    if (parameters.nonValueParameters().count(id) == 0) out << " = " << value_text(parameters.value(id));
    out << '\n';
  }
}

}  // namespace

ModelCounts count(const gl::core::Model& model) {
  ModelCounts counts;
  std::vector<Level> levels{level_of(model.graph())};
  const auto enter = [&](const gl::core::Graph& graph) {
    counts.nodes += graph.nodes().size();
    counts.connections += connections(graph).size();
  };
  enter(model.graph());
  while (!levels.empty()) {
    Level& level = levels.back();
    if (level.next == level.graph->components().end()) {
      levels.pop_back();
      continue;
    }
    const gl::core::Component& component = (level.next++)->second;
    if (!component.isSubgraph()) {
      ++counts.components;
      continue;
    }
    ++counts.subgraphs;
    enter(component.graph());
    levels.push_back(level_of(component.graph()));
    counts.depth = std::max(counts.depth, levels.size() - 1);
  }
  return counts;
}

void write_summary(std::ostream& out, const std::string& name, const std::string& domain, const gl::core::Model& model,
                   const SummaryOptions& options) {
  const ModelCounts counts = count(model);
  out << name << "  (domain " << domain << ")\n";
  out << "  " << counted(counts.components, "component") << " in " << counted(counts.subgraphs, "subgraph") << ", "
      << counted(counts.nodes, "node") << ", " << counted(counts.connections, "connection") << ", depth "
      << counts.depth << "\n";
  out << "graph\n";
  Tree tree(out, options);
  tree.write(model.graph());
  const std::size_t all = counts.components + counts.subgraphs;
  if (tree.lines() < all) {
    out << "  ... and " << all - tree.lines() << " more; --format json has them all\n";
  }
  write_runtime_parameters(out, model.runtimeParameters());
}

}  // namespace kinemo::views
