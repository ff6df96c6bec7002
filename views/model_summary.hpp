// The compiled model for people: counts, the tree of components, run-time parameters.
#pragma once

#include "platform/graph_core/graph.hpp"

#include <cstddef>
#include <iosfwd>
#include <string>

namespace kinemo::views {

/// What a model has, through all levels.
struct ModelCounts {
  std::size_t components = 0;  ///< leaves
  std::size_t subgraphs = 0;
  std::size_t nodes = 0;
  std::size_t connections = 0;
  std::size_t depth = 0;  ///< of nested graphs; 0 for a flat model
};

ModelCounts count(const gl::core::Model& model);

struct SummaryOptions {
  std::size_t component_lines = 200;  ///< the tree is cut after as many
  bool color = false;
};

void write_summary(std::ostream& out, const std::string& name, const std::string& domain, const gl::core::Model& model,
                   const SummaryOptions& options = {});

}  // namespace kinemo::views
