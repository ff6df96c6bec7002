#include "common/gl/gti/src/kernel/block_model/core_block_entry.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "platform/block_diagram/mask.hpp"
#include "tests/kernel/coreblock/core_block_fixture.hpp"

#include <boost/make_shared.hpp>

namespace gl::gti::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Pair;

/// x.out - y.in; x has a mask with partners "_conf" of all sorts.
class CoreBlockEntries : public CoreBlockTest {
 protected:
  CoreBlockEntries() {
    descriptor().addLeftPort("in", u"", "liquid", u"");
    descriptor().addRightPort("out", u"", "liquid", u"");
    addPrototype();
    x = &place(u"x");
    y = &place(u"y");
    setMask();
    embedded::compile_layer::evaluateParameters(diagram);
  }
  void setMask() {
    auto mask = boost::make_shared<GTMaskDefinition>();
    const auto add = [&mask](const char* name, const ustring& text, GTPrmDesc::Type type) {
      mask->parameters.push_back({name, "", text, type, "", {}});
    };
    for (const char* name : {"free", "tuned", "fixed", "numeric"}) add(name, u"1", GTPrmDesc::EDIT);
    add("tuned_conf", u"RunTime", GTPrmDesc::STRING);
    add("fixed_conf", u"runtime ", GTPrmDesc::STRING);
    add("numeric_conf", u"1", GTPrmDesc::EDIT);
    MaskInterface::setMask(x, mask);
  }
  boost::shared_ptr<BlockEntryData> entry(CoreBlock& block) {
    const std::vector<gtPort*> net = {x->getGrRightConnectionPort(0), y->getGrLeftConnectionPort(0)};
    ModelConnectivity connectivity("m", {{net}}, {});
    KmIoPortCache cache;
    return makeBlockEntry(cache, block.getHandle(), connectivity);
  }
  /// What the block is handed for rewrites of these parameters; "done" marks the call.
  std::vector<std::string> handed(BlockEntryData& block, std::initializer_list<const char*> parameters) {
    ParameterRewrites rewrites;
    for (const char* id : parameters) rewrites.emplace(id, data2::core::Expr());
    std::vector<std::string> set;
    block.applyRuntimeParameters([&set](const kmf::VnIdPath1& id, const ParameterVariant&) { set.push_back(id); },
                                 rewrites);
    return set;
  }

  CoreBlock* x = nullptr;
  CoreBlock* y = nullptr;
};

}  // namespace

TEST_F(CoreBlockEntries, TakePortNamesFromTheBlock) {
  const auto of_x = entry(*x);
  ASSERT_EQ(of_x->ports().size(), 1u);
  EXPECT_EQ(of_x->ports().begin()->second.name(), u"out");
  EXPECT_THAT(of_x->ports().begin()->second.connected(), ElementsAre(y->getGrLeftConnectionPort(0)->getHandle()));
  EXPECT_EQ(entry(*y)->ports().begin()->second.name(), u"in");
  EXPECT_EQ(of_x->path(), u"m/x");
}

TEST_F(CoreBlockEntries, LetTheBlockMakeTheComponent) {
  behaviour->component = gl::core::Component(kmf::VnIdPath1("test.part"));
  // No factory is set for core blocks, and none is asked for.
  const ComponentEmbedding embedding = entry(*x)->embedding(TranslationConfiguration());
  EXPECT_EQ(embedding.component(), behaviour->component);
  EXPECT_THAT(embedding.portEmbedding(), ElementsAre(Pair(u"out", kmf::VnId("out"))));
}

TEST_F(CoreBlockEntries, HandOnTheParametersThatStayTunable) {
  const auto of_x = entry(*x);
  EXPECT_THAT(handed(*of_x, {"free", "tuned", "fixed", "numeric"}),
              testing::UnorderedElementsAre("free", "tuned", "done"));
  EXPECT_THAT(handed(*of_x, {"fixed"}), ElementsAre("done"));
  EXPECT_THAT(handed(*of_x, {}), ElementsAre("done"));
  EXPECT_THAT(handed(*of_x->clone(), {"tuned"}), Contains("tuned"));
}

}  // namespace gl::gti::test
