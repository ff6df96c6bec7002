// The compile as a whole: how the errors of many blocks become one, and what doesn't depend on how a network is told.

#include "embedded/compile_layer/compile.hpp"
#include "common/gl/gti/export/block_data.hpp"
#include "common/gl/gti/export/component_embedding.hpp"
#include "common/gl/gti/export/gt_parameter_evaluator.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/gantrel_id.hpp"
#include "tests/kernel/support/host_calls.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <stdexcept>
#include <string>

namespace gl::gti {
namespace {

using kinemo::test::describe;
using kinemo::test::error_of;
using kinemo::test::flatNets;
using kinemo::test::Listing;
using kinemo::test::TestDomain;
using ::testing::ElementsAre;

class Compile : public kinemo::test::NetworkTest {
 protected:
  kmf::ErrorData failure() {
    try {
      graph();
    } catch (const kmf::MessageException& error) {
      return error.data();
    }
    return {};
  }
};

TEST_F(Compile, ModelWithoutBlocksIsEmptyAndNotRegistered) {
  kmf::GantrelId::removeRegistryEntry("m");
  manager().registerModel(key(), "m", configuration);
  EXPECT_EQ(graph(), gl::core::Graph());
  EXPECT_FALSE(kmf::GantrelId::hasRegistryEntry("m"));
}

TEST_F(Compile, FailuresOfAllBlocksBecomeOneErrorAndCanBeMended) {
  draw.blocks("test/two", {"A", "B", "C"});
  draw.wire("", {"A.n", "B.p", "C.p"});
  intake();
  std::vector<ustring> tried;
  std::set<ustring> failing{u"A", u"B"};
  TestDomain::onComponent() = [&](const ustring& name, const BlockData&) {
    tried.push_back(name);
    if (failing.count(name) != 0) kmf::throw_message("kinemo:test", "Bad", name);
  };
  const kmf::ErrorData data = failure();
  EXPECT_EQ(data.id, "MultipleCompilationErrors");
  EXPECT_THAT(data.arguments, ElementsAre("m"));
  ASSERT_EQ(data.causes.size(), 2u);
  EXPECT_EQ(data.causes[0].id, "Bad");
  EXPECT_THAT(data.causes[1].objects, ElementsAre("m/B"));
  EXPECT_THAT(tried, ElementsAre(u"A", u"B", u"C"));
  failing.clear();
  EXPECT_EQ(describe(graph()), "A B C; A_n:A.n,B.p,C.p");
}

TEST_F(Compile, ErrorsThatArentOursEndItAtOnce) {
  draw.blocks("test/two", {"A", "B"});
  intake();
  int calls = 0;
  TestDomain::onComponent() = [&](const ustring&, const BlockData&) {
    ++calls;
    throw std::runtime_error("bad");
  };
  EXPECT_THROW(graph(), std::runtime_error);
  EXPECT_EQ(calls, 1);
}

TEST_F(Compile, BlocksThatComeInWhileABlockIsMadeTakePart) {
  std::vector<GTBlock*> late;
  for (int i = 0; i < 50; ++i) late.push_back(&draw.block("L" + std::to_string(i)));
  manager().registerModel(key(), "m", configuration);
  manager().addConnectivity(key(), "m", {}, {late.back()});
  TestDomain::onComponent() = [&](const ustring&, const BlockData&) {
    manager().addConnectivity(key(), "m", {}, late);
  };
  EXPECT_EQ(graph().components().size(), 50u);
}

TEST_F(Compile, PortThatTheFactoryForgotIsAnError) {
  draw.subsystem("S", {"in"}, {});
  draw.set("S", "Opaque", u"on");
  draw.block("A");
  draw.wire("", {"A.n", "S.in"});
  configuration.factory(BlockType::OPAQUE, [](const BlockData&) { return ComponentEmbedding(gl::core::Component()); });
  intake();
  EXPECT_EQ(error_of([&] { graph(); }), "kinemo:common:gl:gti:compile:MissingPortEmbedding(in)");
}

TEST_F(Compile, ConnectorThatTheComponentLacksIsAnError) {
  draw.subsystem("S", {"in"}, {});
  draw.set("S", "Opaque", u"on");
  draw.block("A");
  draw.wire("", {"A.n", "S.in"});
  configuration.factory(BlockType::OPAQUE, [](const BlockData&) {
    ComponentEmbedding embedding{gl::core::Component()};
    embedding.addPortEmbedding(u"in", "nowhere");
    return embedding;
  });
  intake();
  EXPECT_THAT(error_of([&] { graph(); }), ::testing::HasSubstr("kinemo:graph:core:EntryNameNotFound"));
}

TEST_F(Compile, UnsetFunctionsAreErrors) {
  draw.block("A");
  configuration.propagateRuntimeParametersFcn(PropagateRuntimeParametersFcn());
  intake();
  EXPECT_THROW(graph(), boost::bad_function_call);
}

TEST_F(Compile, FactoriesSeeMaskValuesPortsAndBlockParameters) {
  draw.block("A", "test/masked");
  draw.block("B");
  draw.wire("", {"A.n", "B.p"});
  draw.set("A", "R", u"1+2");
  embedded::block_diagram::setProperty(draw.at("A"), "extra", u"\u00e4x");
  configuration.addBlockParameter("extra");
  configuration.addBlockParameter("absent");
  configuration.addBlockParameter("note");
  embedded::compile_layer::evaluateParameters(diagram);
  intake();
  BlockData seen;
  TestDomain::onComponent() = [&](const ustring& name, const BlockData& data) {
    if (name == u"A") seen = data;
  };
  graph();
  EXPECT_THAT(seen.ports(), ElementsAre(u"n"));
  const auto& parameters = seen.parameters();
  EXPECT_EQ(cvGetScalar(parameters.at("R").value()), 3);
  EXPECT_EQ(parameters.at("R").expression(), u"1+2");
  EXPECT_EQ(cvGetCharacters(parameters.at("extra").value()), u"\u00e4x");
  EXPECT_EQ(parameters.at("extra").expression(), u"\u00e4x");
  EXPECT_EQ(cvGetCharacters(parameters.at("note").value()), u"none") << "the property wins over the mask variable";
  EXPECT_EQ(parameters.count("absent"), 0u);
}

TEST_F(Compile, RuntimeParametersOfTheTopGoIntoTheModel) {
  draw.block("A");
  diagram.setVariable("R0", u"1000", "Ohm", true);
  diagram.setVariable("fixed", u"1", "", false);
  intake();
  const gl::core::RuntimeParameterInfo info = manager().model(key(), "m").runtimeParameters();
  EXPECT_THAT(info.runtimeParameters(), ElementsAre(kmf::VnId("R0")));
  EXPECT_EQ(info.value("R0").elements().at(0), 1000);
  EXPECT_EQ(info.value("R0").unit().text(), "Ohm");
}

TEST_F(Compile, SettingsOfTheModelAreReadAndConverted) {
  diagram.setParameter("gain", u"2*base");
  diagram.setParameter("mode", u"auto");
  diagram.setParameter("label", u"auto");
  diagram.setVariable("base", u"21", "", false);
  const ParameterVariant fallback = ustring(u"fallback");
  configuration.addModelParameter("gain", fallback, true);
  configuration.addModelParameter("mode", fallback, true);
  configuration.addModelParameter("label", fallback, false);
  configuration.addModelParameter("unknown", fallback, true);
  configuration.addModelParameter(
      "InitializeInteractiveRuns", fallback,
      std::function<ParameterVariant(const cvUniquePtr&, GtParameterEvaluator)>(
          [](const cvUniquePtr& value, const GtParameterEvaluator& evaluate) -> ParameterVariant {
            return evaluate(u"['" + cvGetCharacters(value.get()) + u"!']");
          }));
  manager().registerModel(key(), "m", configuration);
  const ObjectParameterMap& values = manager().objectParameters(key(), "m");
  EXPECT_EQ(boost::get<data2::core::Value>(values.at("gain")).data().elements().at(0), 42);
  EXPECT_EQ(boost::get<ustring>(values.at("mode")), u"fallback");
  EXPECT_EQ(boost::get<ustring>(values.at("label")), u"auto");
  EXPECT_EQ(boost::get<ustring>(values.at("unknown")), u"fallback");
  EXPECT_EQ(boost::get<ustring>(values.at("InitializeInteractiveRuns")), u"off!");
  diagram.setVariable("base", u"2", "", false);
  manager().objectParameters(key(), "m");
  EXPECT_EQ(boost::get<data2::core::Value>(values.at("gain")).data().elements().at(0), 4) << "read again";
  diagram.setParameter("gain", u"nonsense)");
  EXPECT_EQ(error_of([&] { manager().objectParameters(key(), "m"); }),
            "kinemo:common:gl:gti:compile:ConfigSetEvalErr(nonsense), gain, m)");
  diagram.setParameter("mode", u"Auto");
  diagram.setParameter("gain", u"'text'");
  EXPECT_NE(error_of([&] { manager().objectParameters(key(), "m"); }), "") << "only the exact text is automatic";
  diagram.setParameter("mode", u"auto");
  kinemo::test::HostCalls host;
  host.answer("gain", cvCreateDoubleScalar(1));
  EXPECT_EQ(error_of([&] { manager().objectParameters(key(), "m"); }),
            "kinemo:common:gl:gti:compile:ConfigSetEvalErr(, gain, m)")
      << "no text to show";
}

TEST_F(Compile, AsksForTheModeOfRunsOnlyWhenRuntimeParametersArePropagated) {
  const auto asked = [&] {
    intake();
    kinemo::test::HostCalls host;
    manager().model(key(), "m");
    const std::vector<std::string> calls = host.take();
    return std::count(calls.begin(), calls.end(), "1 InitializeInteractiveRuns");
  };
  draw.block("A", "test/masked");
  EXPECT_EQ(asked(), 0);
  configuration.propagateRuntimeParametersFcn([] { return true; });
  EXPECT_EQ(asked(), 1);
}

TEST_F(Compile, OrderOfPlacingAndWiringDoesntMatter) {
  const std::vector<std::vector<std::string>> lines{{"A.n", "B.p", "C.p"}, {"S.x", "C.n"}, {"S.y", "A.p"},
                                                    {"D.p", "B.n"},        {"D.n", "S.x"}, {"E.p", "E.n"}};
  const std::vector<std::vector<std::string>> innerLines{{"x", "F.p"}, {"y", "G.n"}, {"F.n", "G.p"}, {"H.n", "F.p"}};
  std::mt19937 random(11);
  std::set<std::string> results;
  for (int run = 0; run < 20; ++run) {
    std::vector<std::string> blocks{"A", "B", "C", "D", "E", "S/F", "S/G", "S/H"};
    auto outer = lines;
    auto inner = innerLines;
    std::shuffle(blocks.begin(), blocks.end(), random);
    std::shuffle(outer.begin(), outer.end(), random);
    std::shuffle(inner.begin(), inner.end(), random);
    for (auto& line : outer) std::shuffle(line.begin(), line.end(), random);

    embedded::block_diagram::Diagram& other = embedded::block_diagram::Diagram::create("n");
    kinemo::test::Drawing drawing(other);
    drawing.subsystem("S", {"x"}, {"y"});
    for (const std::string& block : blocks) drawing.block(block);
    for (const auto& line : outer) drawing.wire("", line);
    for (const auto& line : inner) drawing.wire("S", line);
    manager().registerModel(key(), "n", configuration);
    manager().addConnectivity(key(), embedded::network_data::MachineData(other, "test").get());
    results.insert(describe(manager().graph(key(), "n")));
    embedded::block_diagram::Diagram::close(other);
  }
  EXPECT_THAT(results, ElementsAre("A B C D E S[F G H; F_n:F.n,G.p; F_p:F.p,H.n; G_n:G.n; x=F_p; y=G_n]; "
                                   "A_n:A.n,B.p,C.p; A_p:A.p,S.y; B_n:B.n,D.p; C_n:C.n,D.n,S.x; E_n:E.n,E.p"));
}

/// A drawing of nested subsystems whose ports are wired at random.
class RandomNetwork {
 public:
  RandomNetwork(unsigned seed, embedded::block_diagram::Diagram& diagram) : random_(seed) { fill(diagram.root(), 0); }

 private:
  unsigned pick(unsigned count) { return static_cast<unsigned>(random_() % count); }

  void fill(kinemo::test::System& system, int depth) {
    using namespace embedded::block_diagram;
    const unsigned count = 2 + pick(4);
    for (unsigned i = 0; i < count; ++i) {
      const ustring name(1, static_cast<char16_t>(u'a' + i));
      if (depth < 3 && pick(3) == 0) {
        GTBlock& subsystem = system.addSubsystem(name);
        const unsigned ports = pick(4);
        for (unsigned p = 0; p < ports; ++p) {
          contents(subsystem)->addPort(ustring(1, static_cast<char16_t>(u'A' + p)), pick(2) ? Side::Left : Side::Right,
                                       static_cast<int>(9 - p));
        }
        fill(*contents(subsystem), depth + 1);
        if (pick(5) == 0) setParameter(subsystem, "Opaque", u"on");
      } else {
        system.addBlock(name, pick(4) == 0 ? "test/one" : "test/two");
      }
    }
    wire(system);
  }

  void wire(kinemo::test::System& system) {
    std::vector<gtPort*> all;
    for (GTBlock* block : system.blocks()) {
      for (gtPort* port : embedded::block_diagram::ports(*block)) all.push_back(port);
    }
    const unsigned lines = pick(static_cast<unsigned>(all.size()) + 1);
    for (unsigned i = 0; i < lines; ++i) {
      gtPort* a = all[pick(static_cast<unsigned>(all.size()))];
      gtPort* b = all[pick(static_cast<unsigned>(all.size()))];
      if (a != b) system.addLine({a, b});
    }
  }

  std::mt19937 random_;
};

/// The nets as the host's drawing has them: leaf connectors "S/B.p", those of nets with one port left out.
std::vector<std::vector<std::string>> drawnNets(embedded::block_diagram::Diagram& diagram) {
  const embedded::network_data::PortLists lists = embedded::network_data::portLists(diagram, "test");
  std::vector<std::vector<std::string>> nets;
  for (const auto& group : lists.nets) {
    for (const auto& ports : group) {
      if (ports.size() < 2) continue;
      std::vector<std::string>& net = nets.emplace_back();
      for (const gtPort* port : ports) {
        const GTBlock& block = *port->getGrOwnerBlock();
        const ustring path = block.getFullPath(false).substr(2);
        const GTBlock* inner = embedded::block_diagram::ioPortOf(*port);
        const ustring name = inner != nullptr ? inner->getGrName() : ustring(port->isLeft() ? u"p" : u"n");
        net.emplace_back(path.begin(), path.end());
        net.back() += '.' + std::string(name.begin(), name.end());
      }
      std::sort(net.begin(), net.end());
    }
  }
  std::sort(nets.begin(), nets.end());
  return nets;
}

class RandomCompile : public Compile, public ::testing::WithParamInterface<unsigned> {};

TEST_P(RandomCompile, GraphHoldsTheDrawnNetsHoweverTheyAreTold) {
  const RandomNetwork network(GetParam(), diagram);
  intake();
  const gl::core::Graph spanning = graph();
  EXPECT_EQ(flatNets(spanning), drawnNets(diagram));
  EXPECT_EQ(graph(), spanning) << "a second compile is the same";
  intake(Listing::AllPairs);
  EXPECT_EQ(describe(graph()), describe(spanning));
  EXPECT_EQ(graph(), spanning);
  intakePorts();
  EXPECT_EQ(graph(), spanning);
}

INSTANTIATE_TEST_SUITE_P(Drawings, RandomCompile, ::testing::Range(0u, 60u));

}  // namespace
}  // namespace gl::gti
