#include "host_fixture.hpp"

#include "embedded/block_diagram/paths.hpp"
#include "platform/block_diagram/events.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/strings.hpp"

#include <cmath>
#include <limits>

namespace host_tests {

using DiagramTest = HostTest;

TEST_F(DiagramTest, HandlesNameLivingObjectsOnlyAndAreNeverUsedAgain) {
  Diagram& diagram = newDiagram();
  const double block = diagram.root().addBlock(u"A", "test/two").getHandle();
  const double port = left(*diagram.root().find(u"A"))->getHandle();
  const double whole = diagram.handle();
  EXPECT_EQ(GTBlock::Handle2Block(block), diagram.root().find(u"A"));
  EXPECT_EQ(Handle2GantrelObject(block)->getGantrelObjectType(), 9);
  EXPECT_EQ(GTBlock::Handle2Block(port), nullptr) << "a port is no block";
  Diagram::close(diagram);
  for (const double handle : {block, port, whole}) EXPECT_EQ(Handle2GantrelObject(handle), nullptr);
  EXPECT_GT(newDiagram().handle(), std::max({block, port, whole}));
}

TEST_F(DiagramTest, NumbersThatAreNoHandlesNameNothing) {
  const double limits[] = {-1.0, 0.0, 0.5, 1e300, std::nan(""), std::numeric_limits<double>::infinity(), -1e300};
  for (const double number : limits) EXPECT_EQ(Handle2GantrelObject(number), nullptr) << number;
}

TEST_F(DiagramTest, NamesOfModelsAreIdentifiersAndUniqueWhileOpen) {
  Diagram& diagram = newDiagram("m1");
  EXPECT_EQ(errorOf([] { Diagram::create("m1"); }), "kinemo:host:diagram:DiagramAlreadyOpen(m1)");
  for (const char* name : {"", "1a", "a b", "a/b", "a.b"}) {
    EXPECT_EQ(errorOf([&] { Diagram::create(name); }),
              std::string("kinemo:host:diagram:InvalidModelName(") + name + ")");
  }
  Diagram::close(diagram);
  Diagram& again = newDiagram("m1");
  EXPECT_EQ(Diagram::find("m1"), &again);
}

TEST_F(DiagramTest, BlocksThatCannotBePlacedLeaveNothingBehind) {
  Diagram& diagram = newDiagram();
  System& root = diagram.root();
  root.addBlock(u"A", "test/two");
  EXPECT_EQ(errorOf([&] { root.addBlock(u"A", "test/two"); }), "kinemo:host:diagram:DuplicateBlock(A, model)");
  EXPECT_EQ(errorOf([&] { root.addSubsystem(u"A"); }), "kinemo:host:diagram:DuplicateBlock(A, model)");
  EXPECT_EQ(errorOf([&] { root.addBlock(u"B", "test/tow"); }),
            "kinemo:host:diagram:UnknownBlockType(test/tow, test/two)");
  EXPECT_EQ(errorOf([&] { root.addBlock(u"B", "quite/else"); }), "kinemo:host:diagram:UnknownBlockType(quite/else, )");
  EXPECT_EQ(errorOf([&] { root.addBlock(u"", "test/two"); }), "kinemo:host:diagram:EmptyBlockName(model)");
  EXPECT_EQ(errorOf([&] { root.addPort(u"p", Side::Left, 1); }), "kinemo:host:diagram:PortAtTop(p)");
  EXPECT_EQ(root.blocks().size(), 1u);
  EXPECT_EQ(diagram.blockCount(), 1u);
}

TEST_F(DiagramTest, BlocksAreFoundByPathsWithSlashesAndLineFeeds) {
  Diagram& diagram = newDiagram();
  System& inside = *contents(diagram.root().addSubsystem(u"In/Out\nfilter"));
  GTBlock& block = inside.addBlock(u"R/", "test/two");
  EXPECT_EQ(block.getFullPath(false), u"model/In//Out\nfilter/R//");
  EXPECT_EQ(block.getFullPath(true), u"model/In//Out filter/R//");
  EXPECT_EQ(block.platformInfo().getGrFullPathNameUnicode(false), block.getFullPath(true));
  EXPECT_EQ(inside.path(), u"model/In//Out\nfilter");
  for (const bool sanitized : {false, true}) EXPECT_EQ(findByPath(block.getFullPath(sanitized)), &block);
  EXPECT_EQ(diagram.findBlock(u"In//Out filter/R//"), &block);
  EXPECT_EQ(diagram.findBlock(u"In/Out filter/R"), nullptr);
  EXPECT_EQ(diagram.findBlock(u""), nullptr);
}

TEST_F(DiagramTest, AnOddRunOfSlashesFindsTheBlockThatExists) {
  System& root = newDiagram().root();
  GTBlock& endsInSlash = contents(root.addSubsystem(u"a/"))->addBlock(u"b", "test/two");
  GTBlock& beginsWithSlash = contents(root.addSubsystem(u"c"))->addBlock(u"/d", "test/two");
  EXPECT_EQ(findByPath(u"model/a///b"), &endsInSlash);
  EXPECT_EQ(findByPath(u"model/c///d"), &beginsWithSlash);
}

TEST_F(DiagramTest, RenamingKeepsNamesUnique) {
  System& root = newDiagram().root();
  GTBlock& a = root.addBlock(u"A", "test/two");
  root.addBlock(u"B", "test/two");
  EXPECT_EQ(errorOf([&] { a.setGrName(u"B"); }), "kinemo:host:diagram:DuplicateBlock(B, model)");
  a.setGrName(u"C");
  EXPECT_EQ(root.find(u"C"), &a);
  EXPECT_EQ(root.find(u"A"), nullptr);
}

TEST_F(DiagramTest, NestingHasALimitAndEndsWithoutRecursion) {
  System* system = &newDiagram().root();
  int levels = 0;
  const std::string error = errorOf([&] {
    for (;; ++levels) system = contents(system->addSubsystem(u"s"));
  });
  EXPECT_EQ(error, "kinemo:host:diagram:TooDeep(10000)");
  EXPECT_EQ(levels, 9999);
}

TEST_F(DiagramTest, ABlockWhoseFirstCheckFailsIsNotPlaced) {
  System& root = newDiagram().root();
  GTBlock& block = root.addBlock(u"A", "test/masked");
  setParameter(block, "label", u"fails");
  EXPECT_EQ(errorOf([&] { refresh(block); }), "test:CheckFailed(model/A)");
  // A prototype whose default fails.
  auto* prototype = dynamic_cast<TestBlock*>(block.clone());
  gt_register_prototype("test/failing", prototype);
  EXPECT_EQ(errorOf([&] { root.addBlock(u"B", "test/failing"); }), "test:CheckFailed(model/B)");
  EXPECT_EQ(root.find(u"B"), nullptr);
  EXPECT_EQ(root.blocks().size(), 1u);
}

/// Remembers the names of diagrams that close; may leave the list when it is told.
class Listener : public GtBdDomainListener {
 public:
  explicit Listener(bool once) : once_(once) { GtBdDomainEventHandler::registerListener(this); }
  ~Listener() override { GtBdDomainEventHandler::deregisterListener(this); }
  void handleBlockDiagramEvent(GTBlockDiagram* diagram) override {
    const std::string name = gt::intrf::getBlockDiagram(diagram).getGrDisplayName().get_converted_lcp_str();
    stillOpen = stillOpen && Diagram::find(name) != nullptr;
    closed.push_back(name);
    if (once_) GtBdDomainEventHandler::deregisterListener(this);
  }
  std::vector<std::string> closed;
  bool stillOpen = true;

 private:
  bool once_;
};

TEST_F(DiagramTest, ClosingTellsEveryListenerWhileTheDiagramIsThere) {
  Listener once(true);
  Listener always(false);
  Diagram::close(newDiagram("a"));
  Diagram::close(newDiagram("b"));
  EXPECT_EQ(once.closed, (std::vector<std::string>{"a"}));
  EXPECT_EQ(always.closed, (std::vector<std::string>{"a", "b"}));
  EXPECT_TRUE(once.stillOpen && always.stillOpen);
}

TEST_F(DiagramTest, ADiagramClosesThoughAListenerFails) {
  struct Failing : GtBdDomainListener {
    Failing() { GtBdDomainEventHandler::registerListener(this); }
    ~Failing() override { GtBdDomainEventHandler::deregisterListener(this); }
    void handleBlockDiagramEvent(GTBlockDiagram*) override { throw std::runtime_error("no"); }
  } failing;
  EXPECT_THROW(Diagram::close(newDiagram("a")), std::runtime_error);
  EXPECT_EQ(Diagram::find("a"), nullptr);
}

}  // namespace host_tests
