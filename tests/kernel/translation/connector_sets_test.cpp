#include "common/gl/gti/src/kernel/translation/connector_sets.hpp"

#include "tests/support/errors.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

namespace gl::gti {
namespace {

using gl::core::ConnectorSpec;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

gl::core::Component part(std::initializer_list<const char*> connectors) {
  gl::core::Component made;
  for (const char* id : connectors) made.addConnector(id, kmf::VnIdPath1(std::string("type.") + id));
  return made;
}

class Sets : public ::testing::Test {
 protected:
  void add(const char* component, std::initializer_list<const char*> connectors) {
    graph.insert(component, part(connectors));
    sets.beginComponent(component);
    for (const char* id : connectors) sets.add(id);
  }
  std::vector<std::string> ordered() {
    std::vector<std::string> specs;
    for (const std::size_t number : sets.elements()) specs.emplace_back(sets.spec(number).path());
    return specs;
  }

  gl::core::Graph graph;
  std::vector<std::string> asked;
  ConnectorSets sets{graph, [this](const kmf::VnIdPath1& typeA, const ConnectorSpec& a, const kmf::VnIdPath1& typeB,
                                   const ConnectorSpec& b) {
                       EXPECT_EQ(std::string(typeA), "type." + std::string(a.connectorId()));
                       EXPECT_EQ(std::string(typeB), "type." + std::string(b.connectorId()));
                       asked.push_back(std::string(a.path()) + '<' + std::string(b.path()));
                       return b < a;
                     }};
};

TEST_F(Sets, ConnectorsFindTheirPlaceWhenTheyAreAdded) {
  add("A", {"p"});
  EXPECT_TRUE(asked.empty()) << "one connector has nothing to be compared with";
  add("B", {"p", "n"});
  EXPECT_FALSE(asked.empty());
  add("C", {"q"});
  EXPECT_THAT(ordered(), ElementsAre("C.q", "B.p", "B.n", "A.p"));
  asked.clear();
  EXPECT_EQ(sets.add("q"), 3u) << "as before";
  EXPECT_TRUE(asked.empty());
}

TEST_F(Sets, ConnectorThatTheComponentLacksIsAnErrorWhenItIsAdded) {
  add("A", {"p"});
  graph.insert("B", part({"p"}));
  sets.beginComponent("B");
  EXPECT_THAT(kinemo::test::error_of([&] { sets.add("nowhere"); }), HasSubstr("kinemo:graph:core:EntryNameNotFound"));
}

TEST_F(Sets, PlacesOfManyConnectorsTakeFewComparisons) {
  std::vector<int> numbers(2000);
  for (std::size_t i = 0; i < numbers.size(); ++i) numbers[i] = static_cast<int>(i);
  std::shuffle(numbers.begin(), numbers.end(), std::mt19937(3));
  for (const int number : numbers) add(("C" + std::to_string(10000 + number)).c_str(), {"p"});
  const std::vector<std::string> specs = ordered();
  EXPECT_TRUE(std::is_sorted(specs.rbegin(), specs.rend()));
  EXPECT_LT(asked.size(), 2000u * 22) << "twice the logarithm for each";
}

TEST(ConnectorSets, ConnectorsOfWhichNeitherPrecedesAllStay) {
  gl::core::Graph graph;
  ConnectorPrecedenceFcn never;
  never = [](const kmf::VnIdPath1&, const ConnectorSpec&, const kmf::VnIdPath1&, const ConnectorSpec&) {
    return false;
  };
  ConnectorSets sets(graph, never);
  for (const char* component : {"A", "B", "C"}) {
    graph.insert(component, part({"p"}));
    sets.beginComponent(component);
    sets.add("p");
  }
  EXPECT_THAT(sets.elements(), ElementsAre(0u, 1u, 2u));
  sets.unite(1, 2);
  sets.unite(2, 0);
  EXPECT_THAT(sets.classes(), ElementsAre(1u)) << "on a tie the first side wins";
}

}  // namespace
}  // namespace gl::gti
