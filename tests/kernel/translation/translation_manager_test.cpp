#include "common/gl/gti/export/translation_manager.hpp"

#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "common/gl/gti/src/kernel/translation/domain_manager.hpp"
#include "common/gl/gti/src/kernel/translation/model_manager.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "tests/kernel/support/test_domain.hpp"
#include "tests/support/errors.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace gl::gti {
namespace {

using kinemo::test::error_of;

constexpr DomainKey unknown = static_cast<DomainKey>(-1);

/// Domains of a test, which are gone at its end.
class Domains : public ::testing::Test {
 protected:
  ~Domains() override {
    for (const char* name : {"a", "b", "c"}) manager.unregisterDomain(manager.domainKey(name));
  }
  TranslationManager& manager = TranslationManager::get();
};

TEST_F(Domains, KeysStayAndFreeOnesAreUsedAgain) {
  const DomainKey a = manager.registerDomain("a");
  const DomainKey b = manager.registerDomain("b");
  EXPECT_EQ(error_of([&] { manager.registerDomain("a"); }), "kinemo:common:gl:gti:compile:DomainAlreadyRegistered(a)");
  EXPECT_EQ(manager.domainKey("a"), a);
  manager.unregisterDomain(a);
  EXPECT_FALSE(manager.hasDomain("a"));
  EXPECT_EQ(manager.domainKey("a"), unknown);
  EXPECT_EQ(manager.registerDomain("c"), a);
  EXPECT_EQ(manager.domainName(a), "c");
  EXPECT_EQ(manager.domainName(b), "b");
}

TEST_F(Domains, BadKeysAreErrorsExceptWhereTheyAreIgnored) {
  const DomainKey a = manager.registerDomain("a");
  manager.unregisterDomain(a);
  for (const DomainKey key : {a, a + 1000, unknown}) {
    const auto is_refused = [&](auto action) {
      EXPECT_EQ(error_of(action), "kinemo:common:gl:gti:compile:InvalidDomainKey()");
    };
    is_refused([&] { manager.domainName(key); });
    is_refused([&] { manager.registerModel(key, "m", {}); });
    is_refused([&] { manager.hasModel(key, "m"); });
    is_refused([&] { manager.addConnectivity(key, "m", {}, {}); });
    is_refused([&] { manager.graph(key, "m"); });
    is_refused([&] { manager.model(key, "m"); });
    is_refused([&] { manager.objectParameters(key, "m"); });
    is_refused([&] { manager.modelData(key, "m"); });
    is_refused([&] { manager.setModelData(key, "m", 1); });
    manager.unregisterDomain(key);
    manager.clearDomain(key);
  }
}

TEST_F(Domains, UnknownModelsAreErrorsThatNameModelAndDomain) {
  const DomainKey a = manager.registerDomain("a");
  const auto is_refused = [&](auto action) {
    EXPECT_EQ(error_of(action), "kinemo:common:gl:gti:compile:UnknownModelForDomain(x, a)");
  };
  is_refused([&] { manager.addConnectivity(a, "x", {}, {}); });
  is_refused([&] { manager.graph(a, "x"); });
  is_refused([&] { manager.model(a, "x"); });
  is_refused([&] { manager.objectParameters(a, "x"); });
  is_refused([&] { manager.modelData(a, "x"); });
  is_refused([&] { manager.setModelData(a, "x", 1); });
  EXPECT_FALSE(manager.hasModel(a, "x"));
  manager.removeModel("x");
}

TEST_F(Domains, RemovingAModelReachesAllDomains) {
  const DomainKey a = manager.registerDomain("a");
  const DomainKey b = manager.registerDomain("b");
  for (const DomainKey key : {a, b}) {
    manager.registerModel(key, "m", {});
    manager.registerModel(key, "other", {});
  }
  manager.removeModel("m");
  EXPECT_FALSE(manager.hasModel(a, "m") || manager.hasModel(b, "m"));
  EXPECT_TRUE(manager.hasModel(a, "other") && manager.hasModel(b, "other"));
  manager.clearDomain(a);
  EXPECT_FALSE(manager.hasModel(a, "other"));
  EXPECT_TRUE(manager.hasModel(b, "other"));
}

TEST_F(Domains, DataStayWithTheModelUntilItIsRegisteredAgain) {
  const DomainKey a = manager.registerDomain("a");
  manager.registerModel(a, "m", {});
  EXPECT_TRUE(manager.modelData(a, "m").empty());
  manager.setModelData(a, "m", 5);
  boost::any_cast<int&>(manager.modelData(a, "m")) = 6;
  EXPECT_EQ(boost::any_cast<int>(manager.modelData(a, "m")), 6);
  manager.registerModel(a, "m", {});
  EXPECT_TRUE(manager.modelData(a, "m").empty());
}

class Intake : public kinemo::test::NetworkTest {
 protected:
  Intake() {
    draw.blocks("test/two", {"A", "B"});
    draw.wire("", {"A.n", "B.p"});
    connectivity = std::make_unique<ModelConnectivity>(embedded::network_data::MachineData(diagram, "test").get());
  }
  std::unique_ptr<ModelConnectivity> connectivity;
  DomainManager domains{"d"};
};

TEST_F(Intake, KnownBlocksAreSkippedAndNewOnesFollow) {
  domains.registerModel("m", configuration);
  domains.addConnectivity(*connectivity);
  domains.addConnectivity(*connectivity);
  auto model = domains.share("m");
  ASSERT_EQ(model->entries().size(), 2u);
  const auto first = model->entries()[0]->path();
  model.reset();
  draw.block("Aa");
  ModelConnectivity more(embedded::network_data::MachineData(diagram, "test").get());
  domains.addConnectivity(more);
  model = domains.share("m");
  ASSERT_EQ(model->entries().size(), 3u);
  EXPECT_EQ(model->entries()[0]->path(), first);
  EXPECT_EQ(model->entries()[2]->path(), u"m/Aa");
}

TEST_F(Intake, AChangeOfASharedModelLeavesTheOtherHolderAlone) {
  domains.registerModel("m", configuration);
  domains.addConnectivity(*connectivity);
  domains.setModelData("m", 1);
  const auto held = domains.share("m");
  domains.setModelData("m", 2);
  const auto now = domains.share("m");
  ASSERT_NE(held, now);
  EXPECT_EQ(boost::any_cast<int>(held->data()), 1);
  EXPECT_EQ(boost::any_cast<int>(now->data()), 2);
  EXPECT_EQ(held->entries(), now->entries()) << "entries stay shared";
  EXPECT_EQ(held->handles().size(), 2u);
  EXPECT_TRUE(now->handles().empty()) << "a clone would claim blocks again";
  EXPECT_EQ(&held->configuration(), &now->configuration());
}

TEST_F(Intake, AFailedBlockIsTakenInByALaterCall) {
  draw.subsystem("Z", {"p"}, {});
  draw.set("Z", "Opaque", u"on");
  draw.wire("", {"Z.p", "A.p"});
  ModelConnectivity withOpaque(embedded::network_data::MachineData(diagram, "test").get());
  domains.registerModel("m", configuration);
  kmf::unregister_corvane_function("find_system");
  EXPECT_NE(error_of([&] { domains.addConnectivity(withOpaque); }), "");
  EXPECT_EQ(domains.share("m")->entries().size(), 2u) << "blocks before the failing one stay";
  embedded::block_diagram::registerHostFunctions();
  domains.addConnectivity(withOpaque);
  const auto model = domains.share("m");
  ASSERT_EQ(model->entries().size(), 3u);
  EXPECT_EQ(model->entries()[2]->path(), u"m/Z");
  EXPECT_EQ(model->entries()[2]->ports().begin()->second.name(), u"p");
}

TEST_F(Intake, ClosingTheDiagramRemovesItsModels) {
  intake();
  EXPECT_TRUE(manager().hasModel(key(), "m"));
  kinemo::test::Diagram::close(diagram);
  EXPECT_FALSE(manager().hasModel(key(), "m"));
}

}  // namespace
}  // namespace gl::gti
