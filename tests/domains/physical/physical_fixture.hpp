#pragma once

// A diagram "m" in an environment with the physical domain, and its compile.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/environment/environment.hpp"
#include "platform/graph_core/graph.hpp"
#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <boost/any.hpp>

#include <map>
#include <string>
#include <vector>

namespace kinemo::physical::test {

namespace bd = embedded::block_diagram;

class PhysicalTest : public kinemo::test::NoLeaks {
 protected:
  PhysicalTest() {
    allow_kept_arrays(11);  // standing arguments of the search for blocks
    environment.loadDomain(KINEMO_PHYSICAL_MODULE);
    diagram = &bd::Diagram::create("m");
  }

  GTBlock& place(const ustring& name, const std::string& type) { return diagram->root().addBlock(name, type); }
  gl::core::Model compile() {
    return boost::any_cast<gl::core::Model>(embedded::compile_layer::compile(*diagram).values().at("physical"));
  }
  /// The error of a compile with its innermost causes, as "id(arguments)".
  std::vector<std::string> errors() {
    try {
      embedded::compile_layer::compile(*diagram);
    } catch (const kmf::Exception& error) {
      std::vector<std::string> all;
      collect(error.data(), all);
      return all;
    }
    return {};
  }
  /// The components of a graph by the path of their block.
  static std::map<ustring, gl::core::Component> byPath(const gl::core::Graph& graph) {
    std::map<ustring, gl::core::Component> found;
    for (const auto& [id, component] : graph.components()) found.emplace(gl::core::object(component), component);
    return found;
  }

  embedded::Environment environment;
  bd::Diagram* diagram;

 private:
  static void collect(const kmf::ErrorData& error, std::vector<std::string>& all) {
    if (error.causes.empty()) {
      std::string text = error.id + '(';
      for (const std::string& argument : error.arguments) text += (text.back() == '(' ? "" : ", ") + argument;
      all.push_back(text + ')');
    }
    for (const kmf::ErrorData& cause : error.causes) collect(cause, all);
  }
};

/// The number of a component's parameter, and its unit.
inline std::pair<double, std::string> number_of(const gl::core::Component& component, const char* parameter) {
  const auto& value = component.parameters().at(parameter).get({});
  const auto& data = boost::get<data2::core::Value>(value).data();
  return {data.elements().at(0), data.unit().text()};
}

inline ustring text_of(const gl::core::Component& component, const char* parameter) {
  return boost::get<ustring>(component.parameters().at(parameter).get({}));
}

}  // namespace kinemo::physical::test
