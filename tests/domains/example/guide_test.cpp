// The guide for domain authors says what works: its examples are the code that is compiled and run here.

#include "domains/physical/domain.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "platform/block_diagram/library.hpp"
#include "tests/domains/example/fuse_kind.hpp"
#include "tests/domains/example/pipe_domain.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace kinemo::physical::test {

namespace {

using testing::ElementsAre;

std::string contents(const std::string& file) {
  std::ifstream stream(std::string(KINEMO_SOURCE_DIR) + "/" + file);
  std::ostringstream text;
  text << stream.rdbuf();
  return text.str();
}

/// The lines between the marks of an example.
std::string example(const std::string& file, const std::string& name) {
  const std::string text = contents(file);
  const std::size_t begin = text.find('\n', text.find("// [guide: " + name + "]")) + 1;
  const std::size_t end = text.rfind('\n', text.find("// [guide]")) + 1;
  return text.substr(begin, end - begin);
}

class Guide : public kinemo::test::NoLeaks {
 protected:
  Guide() { allow_kept_arrays(11); }  // standing arguments of the search for blocks

  embedded::Environment environment;
};

}  // namespace

TEST_F(Guide, ShowsTheExamplesAsTheyAreCompiled) {
  const std::string guide = contents("docs/domain_authors.md");
  const std::string kind = example("tests/domains/example/fuse_kind.hpp", "kind");
  EXPECT_THAT(guide, testing::HasSubstr("```cpp\n" + kind + "```"));
  EXPECT_LT(std::count(kind.begin(), kind.end(), '\n'), 30);
  EXPECT_THAT(guide,
              testing::HasSubstr("```cpp\n" + example("tests/domains/example/pipe_domain.hpp", "block") + "```"));
}

TEST_F(Guide, NewKindCompilesToWhatItsRowDeclares) {
  load_domain(fuse_kinds(), &bd::hostContext());
  bd::Diagram& diagram = bd::Diagram::create("m");
  bd::System& root = diagram.root();
  GTBlock& first = root.addBlock(u"F1", "physical/fuse");
  GTBlock& second = root.addBlock(u"F2", "physical/fuse");
  bd::setParameter(first, "R", u"12");
  bd::setParameter(first, "speed", u"slow");
  root.addLine({bd::ports(first).at(1), bd::ports(second).at(0)});
  const auto compiled = embedded::compile_layer::compile(diagram).values().at("physical");
  const gl::core::Graph graph = boost::any_cast<gl::core::Model>(compiled).graph();
  const gl::core::Component& fuse = graph.components().at("F1");
  EXPECT_EQ(std::string(fuse.type()), "physical.fuse");
  EXPECT_THAT(fuse.connectorOrder(), ElementsAre(kmf::VnId("p"), kmf::VnId("n"), kmf::VnId("h")));
  EXPECT_EQ(number_of(fuse, "R"), std::make_pair(12.0, std::string("mOhm")));
  EXPECT_EQ(text_of(fuse, "speed"), u"slow");
  EXPECT_EQ(graph.nodes().size(), 1u);
  bd::Diagram::close(diagram);
  unload_domain();
}

TEST_F(Guide, DomainThatIsThereStaysWhenASecondOneFails) {
  load_domain(fuse_kinds(), &bd::hostContext());
  EXPECT_EQ(kinemo::test::error_of([] { load_domain(fuse_kinds(), &bd::hostContext()); }),
            "kinemo:common:gl:gti:compile:DomainAlreadyRegistered(physical)");
  EXPECT_NE(gt_find_prototype("physical/fuse"), nullptr);
  unload_domain();
  std::vector<BlockKind> twice = fuse_kinds();
  twice.push_back(twice.front());
  EXPECT_EQ(kinemo::test::error_of([&] { load_domain(twice, &bd::hostContext()); }),
            "kinemo:host:library:DuplicatePrototype(physical/fuse)");
  EXPECT_FALSE(gl::gti::TranslationManager::get().hasDomain("physical"));
  EXPECT_EQ(gt_find_prototype("physical/fuse"), nullptr);
}

TEST_F(Guide, BlockOfItsOwnClassTakesPartInATranslation) {
  gl::gti::TranslationManager& manager = gl::gti::TranslationManager::get();
  const gl::gti::DomainKey key = manager.registerDomain("hydraulic");
  gt_register_prototype("hydraulic/pipe",
                        gl::gti::create_core_block_prototype(hydraulic::Pipe(), "hydraulic", &bd::hostContext()));
  bd::Diagram& diagram = bd::Diagram::create("m");
  GTBlock& first = diagram.root().addBlock(u"P1", "hydraulic/pipe");
  GTBlock& second = diagram.root().addBlock(u"P2", "hydraulic/pipe");
  manager.registerModel(key, "m", gl::gti::TranslationConfiguration());
  manager.addConnectivity(key, "m", {{{bd::ports(first).at(1), bd::ports(second).at(0)}}}, {});
  const gl::core::Graph graph = manager.graph(key, "m");
  EXPECT_EQ(std::string(graph.components().at("P1").type()), "hydraulic.pipe");
  EXPECT_EQ(graph.nodes().size(), 1u);
  EXPECT_EQ(graph.connections({}).size(), 2u);
  bd::Diagram::close(diagram);
  gt_unregister_prototypes("hydraulic/");
  manager.unregisterDomain(key);
  DomainMgrPrototypeRegistry::get().removeDefaultMgr("hydraulic");
}

}  // namespace kinemo::physical::test
