// The machine data as its readers see it: through the data access alone.

#include "embedded/network_data/machine_data.hpp"

#include "host_fixture.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/strings.hpp"
#include "random_diagram.hpp"

#include <algorithm>
#include <map>
#include <set>

namespace host_tests {

using embedded::network_data::Listing;
using embedded::network_data::MachineData;
using embedded::network_data::portLists;

using Pair = std::pair<double, double>;

/// All that the records tell.
struct Told {
  std::vector<double> blocks;
  std::map<double, std::vector<Pair>> pairs;  ///< near and far port, by block
  std::size_t loose = 0;                      ///< elements without a connection
};

Told read(const KMMachineData_tag* machine) {
  Told told;
  for (const ListItem_tag* item = kmGetMachineDataList(machine); item; item = kmGetListItemNextItem(item)) {
    const Connection_tag* head = kmGetListItemConnection(item);
    const double block = kmGetBlockHandle(head);
    EXPECT_EQ(kmGetBlockFullName(head), GTBlock::Handle2Block(block)->getFullPath(true));
    told.blocks.push_back(block);
    told.pairs[block];
    for (const Connection_tag* c = kmGetConnectionNextConnection(head); c; c = kmGetConnectionNextConnection(c)) {
      const double near = kmGetPortHandle(c, KM_PORT_NEAR);
      if (near == -1.0) {
        ++told.loose;
        continue;
      }
      told.pairs[block].emplace_back(near, kmGetPortHandle(c, KM_PORT_FAR));
      for (const kmPortOrient end : {KM_PORT_NEAR, KM_PORT_FAR}) {
        const auto* port = dynamic_cast<const gtPort*>(Handle2GantrelObject(kmGetPortHandle(c, end)));
        EXPECT_EQ(kmGetPortSide(c, end) == KM_SIDE_LEFT, port->isLeft());
        EXPECT_EQ(kmGetPortIndex(c, end), port->index);
      }
    }
  }
  return told;
}

/// Each pair once, the smaller handle first. Expects that both ends tell it, each under the owner of the near port.
std::set<Pair> pairsOf(const Told& told) {
  std::set<Pair> pairs;
  std::size_t count = 0;
  for (const auto& [block, list] : told.pairs) {
    for (const auto& [near, far] : list) {
      const auto* port = dynamic_cast<const gtPort*>(Handle2GantrelObject(near));
      EXPECT_EQ(port->getGrOwnerBlock()->getHandle(), block);
      pairs.emplace(std::min(near, far), std::max(near, far));
      ++count;
    }
  }
  EXPECT_EQ(count, 2 * pairs.size()) << "a pair isn't told from both ends, or twice from one";
  return pairs;
}

/// Classes of ports that the pairs join, as sets of handles.
std::set<std::set<double>> classesOf(const std::set<Pair>& pairs) {
  std::map<double, std::set<double>> neighbours;
  for (const auto& [a, b] : pairs) {
    neighbours[a].insert(b);
    neighbours[b].insert(a);
  }
  std::set<std::set<double>> classes;
  std::set<double> seen;
  for (const auto& entry : neighbours) {
    std::vector<double> pending{entry.first};
    std::set<double> members;
    while (!pending.empty()) {
      const double port = pending.back();
      pending.pop_back();
      if (!seen.insert(port).second) continue;
      members.insert(port);
      for (const double next : neighbours[port]) pending.push_back(next);
    }
    if (!members.empty()) classes.insert(members);
  }
  return classes;
}

using MachineDataTest = HostTest;

/// The systems around a leaf, innermost first.
std::vector<const System*> systemsAround(double portHandle) {
  std::vector<const System*> systems;
  const auto* port = dynamic_cast<const gtPort*>(Handle2GantrelObject(portHandle));
  const System* system = &parentSystem(*port->getGrOwnerBlock());
  for (; system->owner(); system = &parentSystem(*system->owner())) systems.push_back(system);
  systems.push_back(system);
  return systems;
}

/// Of each class, at most one leaf of a system is told of a leaf outside of it: what stands for the system.
void expectOneGoesUpward(const std::set<Pair>& pairs, const std::set<std::set<double>>& classes) {
  std::map<double, int> classNumber;
  int number = 0;
  for (const std::set<double>& members : classes) {
    for (const double port : members) classNumber[port] = number;
    ++number;
  }
  std::map<std::pair<int, const System*>, std::set<double>> leaving;
  for (const auto& [a, b] : pairs) {
    const std::vector<const System*> aroundA = systemsAround(a);
    const std::vector<const System*> aroundB = systemsAround(b);
    for (const System* system : aroundA) {
      if (std::count(aroundB.begin(), aroundB.end(), system) == 0) leaving[{classNumber[a], system}].insert(a);
    }
    for (const System* system : aroundB) {
      if (std::count(aroundA.begin(), aroundA.end(), system) == 0) leaving[{classNumber[b], system}].insert(b);
    }
  }
  for (const auto& [key, ports] : leaving)
    EXPECT_EQ(ports.size(), 1u) << kmf::ustring_to_utf8_string(key.second->path());
}

TEST_F(MachineDataTest, SpanningPairsJoinWhatAllPairsJoinInAnyDiagram) {
  for (unsigned seed = 1; seed <= 60; ++seed) {
    SCOPED_TRACE(seed);
    Diagram& diagram = newDiagram();
    RandomDiagram(seed).fill(diagram);
    const std::set<Pair> spanning = pairsOf(read(MachineData(diagram, "test").get()));
    const std::set<Pair> all = pairsOf(read(MachineData(diagram, "test", Listing::AllPairs).get()));
    const std::set<std::set<double>> classes = classesOf(all);
    EXPECT_EQ(classesOf(spanning), classes);
    std::size_t expected = 0;
    std::size_t expectedAll = 0;
    for (const auto& members : classes) {
      expected += members.size() - 1;
      expectedAll += members.size() * (members.size() - 1) / 2;
    }
    EXPECT_EQ(spanning.size(), expected);
    EXPECT_EQ(all.size(), expectedAll);
    expectOneGoesUpward(spanning, classes);
    Diagram::close(diagram);
  }
}

TEST_F(MachineDataTest, TheNetsAsPortsAreTheClassesOfThePairs) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    Diagram& diagram = newDiagram();
    RandomDiagram(seed).fill(diagram);
    const Told told = read(MachineData(diagram, "test").get());
    std::set<std::set<double>> nets;
    const auto lists = portLists(diagram, "test");
    for (const auto& group : lists.nets) {
      for (const auto& net : group) {
        std::set<double> members;
        for (const gtPort* port : net) members.insert(port->getHandle());
        EXPECT_EQ(members.size(), net.size()) << "a port stands once";
        if (members.size() > 1) nets.insert(members);
      }
    }
    EXPECT_EQ(nets, classesOf(pairsOf(told)));
    std::vector<double> blocks;
    for (const GTBlock* block : lists.blocks) blocks.push_back(block->getHandle());
    EXPECT_EQ(blocks, told.blocks);
    Diagram::close(diagram);
  }
}

/// What stands for a subsystem is the leaf that its own level knows by the smallest handle.
///
///     top:  T.x ---- Z.l        T:  U.y --+-- x        U:  B.l ---- y
///                                   A.l --+
///
/// B is placed before A and has smaller handles, but T knows B's part of the net by a port of U's icon.
TEST_F(MachineDataTest, TheSmallestHandleOfALevelStandsForIt) {
  System& root = newDiagram().root();
  GTBlock& z = root.addBlock(u"Z", "test/two");
  GTBlock& t = root.addSubsystem(u"T");
  GTBlock& u = contents(t)->addSubsystem(u"U");
  GTBlock& b = contents(u)->addBlock(u"B", "test/two");
  GTBlock& a = contents(t)->addBlock(u"A", "test/two");
  GTBlock& y = contents(u)->addPort(u"y", Side::Left, 1);
  GTBlock& x = contents(t)->addPort(u"x", Side::Left, 1);
  contents(u)->addLine({left(b), right(y)});
  contents(t)->addLine({outerPort(y), left(a), right(x)});
  root.addLine({outerPort(x), left(z)});
  ASSERT_LT(left(b)->getHandle(), left(a)->getHandle());
  ASSERT_LT(left(a)->getHandle(), outerPort(y)->getHandle());
  const double zp = left(z)->getHandle();
  const double ap = left(a)->getHandle();
  const double bp = left(b)->getHandle();
  EXPECT_EQ(pairsOf(read(MachineData(root.diagram(), "test").get())),
            (std::set<Pair>{{std::min(ap, bp), std::max(ap, bp)}, {std::min(ap, zp), std::max(ap, zp)}}));
}

/// Two nets of T that only a passage outside joins: T's members are told of each other inside T.
TEST_F(MachineDataTest, NetsJoinedOutsideAreOneInside) {
  System& root = newDiagram().root();
  GTBlock& t = root.addSubsystem(u"T");
  GTBlock& p = contents(t)->addPort(u"p", Side::Left, 1);
  GTBlock& q = contents(t)->addPort(u"q", Side::Left, 2);
  GTBlock& a = contents(t)->addBlock(u"A", "test/two");
  GTBlock& b = contents(t)->addBlock(u"B", "test/two");
  contents(t)->addLine({right(p), left(a)});
  contents(t)->addLine({right(q), left(b)});
  GTBlock& wire = root.addSubsystem(u"wire");
  GTBlock& i = contents(wire)->addPort(u"i", Side::Left, 1);
  GTBlock& o = contents(wire)->addPort(u"o", Side::Right, 1);
  contents(wire)->addLine({right(i), right(o)});
  root.addLine({outerPort(p), outerPort(i)});
  root.addLine({outerPort(q), outerPort(o)});
  EXPECT_EQ(pairsOf(read(MachineData(root.diagram(), "test").get())),
            (std::set<Pair>{{left(a)->getHandle(), left(b)->getHandle()}}));
}

TEST_F(MachineDataTest, LoosePortsAndBlocksWithoutPortsAreListed) {
  Diagram& diagram = newDiagram();
  EXPECT_EQ(kmGetMachineDataList(MachineData(diagram, "test").get()), nullptr);
  diagram.root().addBlock(u"N", "test/none");
  diagram.root().addBlock(u"T", "test/left3");
  const MachineData data(diagram, "test");
  EXPECT_STREQ(kmGetMachineRootBDName(data.get()), "model");
  const Told told = read(data.get());
  EXPECT_EQ(told.blocks.size(), 2u);
  EXPECT_EQ(told.loose, 3u);
}

TEST_F(MachineDataTest, InactiveChoicesAndHiddenInsidesAreNoPartOfTheNetwork) {
  System& root = newDiagram().root();
  GTBlock& a = root.addBlock(u"A", "test/two");
  GTBlock& variant = root.addSubsystem(u"V");
  GTBlock& p = contents(variant)->addPort(u"p", Side::Left, 1);
  for (const char16_t* name : {u"light", u"heavy"}) {
    System& choice = *contents(contents(variant)->addSubsystem(name));
    GTBlock& inner = choice.addPort(u"p", Side::Left, 1);
    choice.addLine({right(inner), left(choice.addBlock(u"R", "test/two"))});
  }
  root.addLine({left(a), outerPort(p)});
  setParameter(variant, "Variant", u"on");
  setParameter(variant, "ActiveVariant", u"heavy");
  GTBlock& r = *root.diagram().findBlock(u"V/heavy/R");
  const Told active = read(MachineData(root.diagram(), "test").get());
  EXPECT_EQ(active.blocks, (std::vector<double>{a.getHandle(), r.getHandle()}));
  EXPECT_EQ(pairsOf(active), (std::set<Pair>{{left(a)->getHandle(), left(r)->getHandle()}}));
  setParameter(variant, "Variant", u"off");
  setParameter(variant, "Opaque", u"on");
  const Told opaque = read(MachineData(root.diagram(), "test").get());
  EXPECT_EQ(opaque.blocks, (std::vector<double>{a.getHandle(), variant.getHandle()}));
  EXPECT_EQ(pairsOf(opaque), (std::set<Pair>{{left(a)->getHandle(), outerPort(p)->getHandle()}}));
}

TEST_F(MachineDataTest, EachDomainHasItsOwnBlocksAndPairs) {
  gt_register_prototype("test/other", new TestBlock("other", 1, 1));
  System& root = newDiagram().root();
  std::vector<gtPort*> line;
  std::vector<double> own;
  std::vector<double> others;
  for (int i = 0; i < 3; ++i) {
    GTBlock& mine = root.addBlock(u"A" + ustring(1, static_cast<char16_t>(u'0' + i)), "test/two");
    GTBlock& other = root.addBlock(u"B" + ustring(1, static_cast<char16_t>(u'0' + i)), "test/other");
    line.insert(line.end(), {left(mine), left(other)});
    own.push_back(mine.getHandle());
    others.push_back(other.getHandle());
  }
  root.addLine(line);
  const Told mine = read(MachineData(root.diagram(), "test").get());
  const Told other = read(MachineData(root.diagram(), "other").get());
  EXPECT_EQ(mine.blocks, own);
  EXPECT_EQ(other.blocks, others);
  EXPECT_EQ(pairsOf(mine).size(), 2u);
  EXPECT_EQ(pairsOf(other).size(), 2u);
}

TEST_F(MachineDataTest, HugeNetsAndDeepLevelsAreToldInLinearSize) {
  Diagram& diagram = newDiagram();
  System* system = &diagram.root();
  std::vector<gtPort*> line;
  for (int i = 0; i < 50; ++i) {
    GTBlock& many = system->addBlock(u"M" + ustring(1, static_cast<char16_t>(u'A' + i)), "test/many");
    for (gtPort* port : ports(many)) line.push_back(port);
  }
  for (int level = 0; level < 1000; ++level) {
    GTBlock& subsystem = system->addSubsystem(u"s");
    GTBlock& ioPort = contents(subsystem)->addPort(u"p", Side::Left, 1);
    line.push_back(outerPort(ioPort));
    system->addLine(line);
    system = contents(subsystem);
    line = {right(ioPort), left(system->addBlock(u"B", "test/two"))};
  }
  system->addLine(line);
  const Told told = read(MachineData(diagram, "test").get());
  EXPECT_EQ(told.blocks.size(), 1050u);
  EXPECT_EQ(told.loose, 1000u) << "right ports of the deep blocks";
  EXPECT_EQ(pairsOf(told).size(), 100000u + 1000u - 1u);
}

}  // namespace host_tests
