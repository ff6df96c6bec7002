#pragma once

// A small physical domain for tests of the translation, and a diagram to draw in.
//
//   kinds        "test/one" with the port p; "test/two" with p on the left and n on the right;
//                "test/masked" as "test/two", with the mask parameters R, R_unit and note
//   connectors   named as the ports, of the type test.line
//   opaque       any opaque subsystem: a connector for each port, of the type test.opaque

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/environment/environment.hpp"
#include "embedded/network_data/machine_data.hpp"
#include "platform/graph_core/graph.hpp"
#include "tests/support/no_leaks.hpp"

#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

namespace gl::gti {
class BlockData;
}

namespace kinemo::test {

using embedded::block_diagram::Diagram;
using embedded::block_diagram::Side;
using embedded::block_diagram::System;
using embedded::network_data::Listing;

/// Registers the domain "test" and its kinds for its lifetime.
class TestDomain {
 public:
  TestDomain();
  ~TestDomain();
  TestDomain(const TestDomain&) = delete;
  TestDomain& operator=(const TestDomain&) = delete;

  gl::gti::DomainKey key() const { return key_; }
  /// What a translation of this domain needs.
  gl::gti::TranslationConfiguration configuration() const;

  /// Called for each block, core or opaque, whose component is made; may throw.
  using Hook = std::function<void(const ustring& name, const gl::gti::BlockData& data)>;
  static Hook& onComponent();

 private:
  gl::gti::DomainKey key_;
};

/// A diagram, drawn by texts. Ports are named by "Block.port", whatever the system.
class Drawing {
 public:
  explicit Drawing(Diagram& diagram) : diagram_(&diagram) {}

  /// Places blocks of a kind, such as "A" or "S/A", in systems that are there.
  void blocks(const std::string& kind, std::initializer_list<const char*> paths);
  GTBlock& block(const std::string& path, const std::string& kind = "test/two");
  GTBlock& subsystem(const std::string& path);
  /// A subsystem with I/O ports on the left and on the right, in that order.
  GTBlock& subsystem(const std::string& path, std::initializer_list<const char*> left,
                     std::initializer_list<const char*> right);
  GTBlock& port(const std::string& path, Side side, int order);
  /// Joins ports of one system; `system` is "" at the top.
  void wire(const std::string& system, const std::vector<std::string>& ports);
  void set(const std::string& path, const std::string& parameter, const ustring& text);

  GTBlock& at(const std::string& path) const;
  System& system(const std::string& path) const;
  /// The port "p" of a block, the port of a subsystem's icon by name, or the one port of an I/O port block.
  gtPort* portAt(const std::string& system, const std::string& text) const;

 private:
  Diagram* diagram_;
};

/// An environment with the domain and an open diagram "m".
class NetworkTest : public NoLeaks {
 protected:
  NetworkTest();
  ~NetworkTest() override;

  gl::gti::TranslationManager& manager() { return gl::gti::TranslationManager::get(); }
  gl::gti::DomainKey key() const { return domain.key(); }

  /// Registers the model with `configuration` and hands over its machine data.
  void intake(Listing listing = Listing::Spanning);
  /// The same by lists of ports.
  void intakePorts();
  gl::core::Graph graph() { return manager().model(key(), "m").graph(); }
  /// Intake and graph in one; `describe` of it.
  std::string compiled(Listing listing = Listing::Spanning);

  embedded::Environment environment;
  TestDomain domain;
  Diagram& diagram;
  Drawing draw;
  gl::gti::TranslationConfiguration configuration;
};

/// One line: the components, each subgraph with its inside in brackets; then the nodes with their connectors; then what
/// is exported. "A S[B; B_p:B.p; in=B_p]; A_n:A.n,S.in; A_p:A.p"
std::string describe(const gl::core::Graph& graph);

/// The graph seen as one level: for each node of the flattened network its leaf connectors "S/B.p", all sorted.
std::vector<std::vector<std::string>> flatNets(const gl::core::Graph& graph);

}  // namespace kinemo::test
