#include "views/model_summary.hpp"

#include "views/graph_access.hpp"
#include "views/graph_walk.hpp"
#include "views/parameter_text.hpp"

#include <algorithm>
#include <ostream>
#include <vector>

namespace kinemo::views {

namespace {

std::string counted(std::size_t number, const std::string& noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

/// Writes a line for each component, until there are as many as the options allow.
class Tree {
 public:
  Tree(std::ostream& out, const SummaryOptions& options) : out_(out), options_(options) {}

  void enter(const GraphLevel&) { ++depth_; }
  void leave(const GraphLevel&) { --depth_; }
  void component(const GraphLevel&, const kmf::VnId& id, const gl::core::Component& component) {
    if (lines_ < options_.component_lines) write_component(id, component);
  }

  std::size_t lines() const { return lines_; }

 private:
  void write_component(const kmf::VnId& id, const gl::core::Component& component) {
    constexpr std::size_t deepest_indentation = 30;
    ++lines_;
    out_ << std::string(2 * std::min(depth_, deepest_indentation), ' ') << bold(std::string(id)) << "  ";
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
  std::size_t depth_ = 0;  ///< 1 at the root
  std::size_t lines_ = 0;
};

class Counter {
 public:
  void enter(const GraphLevel& level) {
    counts.nodes += level.graph->nodes().size();
    counts.connections += connections(*level.graph).size();
    if (level.owner != nullptr) counts.depth = std::max(counts.depth, ++depth_);
  }
  void leave(const GraphLevel& level) {
    if (level.owner != nullptr) --depth_;
  }
  void component(const GraphLevel&, const kmf::VnId&, const gl::core::Component& component) {
    ++(component.isSubgraph() ? counts.subgraphs : counts.components);
  }

  ModelCounts counts;

 private:
  std::size_t depth_ = 0;
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
  Counter counter;
  walk_graphs(model.graph(), counter);
  return counter.counts;
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
  walk_graphs(model.graph(), tree);
  const std::size_t all = counts.components + counts.subgraphs;
  if (tree.lines() < all) {
    out << "  ... and " << all - tree.lines() << " more; --format json has them all\n";
  }
  write_runtime_parameters(out, model.runtimeParameters());
}

}  // namespace kinemo::views
