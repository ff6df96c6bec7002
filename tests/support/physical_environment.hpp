#pragma once

// An environment with the physical domain, for tests that need real blocks: made before a test and taken down after it.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/environment/environment.hpp"
#include "formats/diagnostics.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "platform/graph_core/graph.hpp"

#include <gtest/gtest.h>

#include <string>

namespace kinemo::test {

inline std::string all_text(const formats::DiagnosticList& list) {
  std::string text;
  for (const formats::Diagnostic& diagnostic : list.all()) text += formats::to_string(diagnostic) + "\n";
  return text;
}

class PhysicalEnvironment : public ::testing::Test {
 protected:
  PhysicalEnvironment() { environment.loadDomain(KINEMO_PHYSICAL_MODULE); }

  /// A diagram of a text that is expected to be right.
  embedded::block_diagram::Diagram& read(const std::string& text, const std::string& name = "model.yaml") {
    formats::DiagnosticList problems;
    auto* diagram = formats::diagram::read_diagram_text(text, name, problems);
    if (diagram == nullptr) throw std::runtime_error(all_text(problems));
    EXPECT_EQ("", all_text(problems));
    return *diagram;
  }

  gl::core::Model compile(embedded::block_diagram::Diagram& diagram) {
    const DACompileResult result = embedded::compile_layer::compile(diagram);
    return boost::any_cast<gl::core::Model>(result.values().at("physical"));
  }

  embedded::Environment environment;
};

}  // namespace kinemo::test
