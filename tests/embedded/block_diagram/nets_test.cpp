#include "host_fixture.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <algorithm>
#include <map>
#include <numeric>
#include <set>

namespace host_tests {

/// The fixture diagram.
///
///     S.r ---- Filter.in   Filter.out ---- L.l      (line "load" ends at Filter.out, too)
///     S.l ---- Filter.ref ---------------- L.r
///
///     Filter:  in ---- R.l   R.r --+-- out
///                                  +-- C.l   C.r ---- ref
class NetsTest : public HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    System& root = newDiagram().root();
    source = &root.addBlock(u"S", "test/two");
    load = &root.addBlock(u"L", "test/two");
    filter = &root.addSubsystem(u"Filter");
    System& inside = *contents(*filter);
    in = &inside.addPort(u"in", Side::Left, 1);
    ref = &inside.addPort(u"ref", Side::Left, 2);
    out = &inside.addPort(u"out", Side::Right, 1);
    r = &inside.addBlock(u"R", "test/two");
    c = &inside.addBlock(u"C", "test/two");
    inside.addLine({right(*in), left(*r)});
    inside.addLine({right(*r), left(*c), right(*out)});
    inside.addLine({right(*c), right(*ref)});
    root.addLine({right(*source), subsystemPort(*filter, u"in")});
    root.addLine({subsystemPort(*filter, u"out"), left(*load)});
    root.addLine({left(*source), subsystemPort(*filter, u"ref"), right(*load)});
    root.addLine({subsystemPort(*filter, u"out")}, u"load");
  }

  /// Number of peers told of one port.
  static const cvArray_tag* peers(const cvUniquePtr& connectivity, std::size_t element) {
    return cvGetField(connectivity.get(), element, "DstPort");
  }

  GTBlock *source, *load, *filter, *in, *ref, *out, *r, *c;
};

using Ports = std::set<gtPort*>;
Ports members(const gtPort* port) {
  const std::vector<gtPort*>& net = netOf(*port);
  return Ports(net.begin(), net.end());
}

TEST_F(NetsTest, LinesJoinPortsOfOneSystem) {
  EXPECT_EQ(members(left(*c)), (Ports{right(*r), left(*c), right(*out)}));
  EXPECT_EQ(members(left(*source)), (Ports{left(*source), subsystemPort(*filter, u"ref"), right(*load)}));
  EXPECT_EQ(members(left(*load)), (Ports{left(*load), subsystemPort(*filter, u"out")}));
  EXPECT_EQ(&netOf(*left(*c)), &netOf(*right(*r))) << "one net is one list";
}

TEST_F(NetsTest, LinesAtAPortAreThoseThatEndThere) {
  const std::vector<const Line*> lines = linesAt(*subsystemPort(*filter, u"out"));
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1]->name, u"load");
  EXPECT_TRUE(linesAt(*left(filter->host().system->addBlock(u"free", "test/two"))).empty());
}

TEST_F(NetsTest, AnEditChangesTheNets) {
  System& root = parentSystem(*source);
  ASSERT_EQ(members(right(*source)).size(), 2u);
  root.addLine({right(*source), left(*load)});
  EXPECT_EQ(members(right(*source)),
            (Ports{right(*source), subsystemPort(*filter, u"in"), subsystemPort(*filter, u"out"), left(*load)}));
}

TEST_F(NetsTest, ALineMayNameAPortTwiceButNotOneOfAnotherSystem) {
  System& root = parentSystem(*source);
  root.addLine({left(*load), left(*load), left(*load)});
  EXPECT_EQ(root.lines().back()->ports.size(), 1u);
  EXPECT_EQ(errorOf([&] {
              root.addLine({left(*load), left(*c)});
            }),
            "kinemo:host:diagram:LineAcrossSystems(model/Filter/C.LConn1, model)");
  EXPECT_EQ(errorOf([&] { contents(*filter)->addLine({subsystemPort(*filter, u"in")}); }),
            "kinemo:host:diagram:LineAcrossSystems(model/Filter.in, model/Filter)");
}

TEST_F(NetsTest, FewerPortsEndTheLinesOfThoseThatGo) {
  System& root = parentSystem(*source);
  GTBlock& three = root.addBlock(u"T", "test/left3");
  root.addLine({left(three, 0), left(three, 2)});
  root.addLine({left(three, 2)}, u"stub");
  const std::size_t lines = root.lines().size();
  const double kept = left(three, 0)->getHandle();
  const double gone = left(three, 2)->getHandle();
  three.setGrNumLeftConnectionPorts(1, nullptr);
  EXPECT_EQ(left(three, 0)->getHandle(), kept);
  EXPECT_EQ(Handle2GantrelObject(gone), nullptr);
  EXPECT_EQ(members(left(three, 0)), Ports{left(three, 0)});
  EXPECT_EQ(root.lines().size(), lines - 2) << "what joins nothing any more is no line";
}

TEST_F(NetsTest, OuterPortsStandBySideAndOrderAndKeepTheirLines) {
  System& inside = *contents(*filter);
  const double refHandle = outerPort(*ref)->getHandle();
  GTBlock& first = inside.addPort(u"first", Side::Left, -3);
  GTBlock& tied = inside.addPort(u"tied", Side::Left, 1);
  const auto leftNames = [&] {
    std::vector<ustring> names;
    for (int i = 0; i < filter->getGrNumLeftConnectionPorts(); ++i) {
      EXPECT_EQ(left(*filter, i)->index, i);
      names.push_back(ioPortOf(*left(*filter, i))->getGrName());
    }
    return names;
  };
  EXPECT_EQ(leftNames(), (std::vector<ustring>{u"first", u"in", u"tied", u"ref"}));
  EXPECT_EQ(outerPort(first), left(*filter, 0));
  EXPECT_EQ(outerPort(*ref)->getHandle(), refHandle);
  setParameter(first, "Port", u"9");
  EXPECT_EQ(leftNames(), (std::vector<ustring>{u"in", u"tied", u"ref", u"first"}));
  setParameter(*ref, "Port", u"-9");
  EXPECT_EQ(leftNames(), (std::vector<ustring>{u"ref", u"in", u"tied", u"first"}));
  EXPECT_EQ(members(left(*source)), (Ports{left(*source), subsystemPort(*filter, u"ref"), right(*load)}));
  setParameter(tied, "Side", u"right");
  EXPECT_EQ(leftNames(), (std::vector<ustring>{u"ref", u"in", u"first"}));
  EXPECT_EQ(ioPortOf(*right(*filter, 1)), &tied) << "of equal orders the earlier place comes first";
}

TEST_F(NetsTest, APortOfAVariantMeetsThatOfTheActiveChoiceBySideAndName) {
  System& root = parentSystem(*source);
  GTBlock& variant = root.addSubsystem(u"V");
  System& inside = *contents(variant);
  GTBlock& p = inside.addPort(u"p", Side::Left, 1);
  GTBlock& q = inside.addPort(u"q", Side::Right, 1);
  GTBlock& light = inside.addSubsystem(u"light");
  GTBlock& heavy = inside.addSubsystem(u"heavy");
  contents(light)->addPort(u"p", Side::Left, 1);
  contents(light)->addPort(u"q", Side::Left, 2);  // on the other side than the variant's
  contents(heavy)->addPort(u"q", Side::Right, 1);
  setParameter(variant, "Variant", u"on");
  setParameter(variant, "ActiveVariant", u"light");
  EXPECT_EQ(members(right(p)), (Ports{right(p), subsystemPort(light, u"p")}));
  EXPECT_EQ(members(right(q)), Ports{right(q)});
  setParameter(variant, "ActiveVariant", u"heavy");
  EXPECT_EQ(members(right(p)), Ports{right(p)});
  EXPECT_EQ(members(right(q)), (Ports{right(q), subsystemPort(heavy, u"q")}));
  setParameter(variant, "ActiveVariant", u"none");
  EXPECT_EQ(activeChoice(variant), nullptr);
  EXPECT_EQ(members(right(q)), Ports{right(q)});
}

TEST_F(NetsTest, ConnectivityNamesEveryPortWithItsPlace) {
  const cvUniquePtr connectivity = getParam(*filter, "PortConnectivity");
  ASSERT_EQ(cvGetNumberOfElements(connectivity.get()), 3u);
  std::vector<std::string> types;
  for (std::size_t i = 0; i < 3; ++i)
    types.push_back(text(cvUniquePtr(cvCreateSharedCopy(cvGetField(connectivity.get(), i, "Type")))));
  EXPECT_EQ(types, (std::vector<std::string>{"LConn1", "LConn2", "RConn1"}));
  EXPECT_EQ(cvGetScalar(peers(connectivity, 0)), right(*source)->getHandle());
  EXPECT_EQ(cvGetNumberOfElements(peers(connectivity, 1)), 2u);
}

/// What follows from the answers for the given blocks alone: classes of port handles.
std::map<double, double> classesFrom(const std::vector<GTBlock*>& blocks) {
  std::map<double, double> parent;
  const auto find = [&](double x) {
    parent.try_emplace(x, x);
    while (parent[x] != x) x = parent[x];
    return x;
  };
  for (const GTBlock* block : blocks) {
    std::vector<cvUniquePtr> inputs;
    inputs.push_back(number(block->getHandle()));
    inputs.push_back(text("PortConnectivity"));
    cvArray_tag* lent[] = {inputs[0].get(), inputs[1].get()};
    cvArray_tag* output = nullptr;
    kmf::call_internal_corvane(1, &output, 2, lent, "get_param");
    const cvUniquePtr connectivity(output);
    const std::vector<gtPort*> all = ports(*block);
    for (std::size_t i = 0; i < all.size(); ++i) {
      const cvArray_tag* far = cvGetField(output, i, "DstPort");
      for (std::size_t k = 0; k < cvGetNumberOfElements(far); ++k) {
        const double a = find(all[i]->getHandle());
        const double b = find(cvGetElement(far, k));
        parent[std::max(a, b)] = std::min(a, b);
      }
    }
  }
  std::map<double, double> classes;
  for (const auto& entry : parent) classes[entry.first] = find(entry.first);
  return classes;
}

TEST_F(NetsTest, AnswersOfSubsystemsAndIoPortsAloneJoinTheirNets) {
  // Leaves that come first by handle, and passages between them, on one net.
  System& inside = *contents(*filter);
  GTBlock& late = inside.addPort(u"late", Side::Left, 7);
  inside.addLine({left(*r), right(late), left(inside.addBlock(u"X", "test/two"))});
  const std::map<double, double> classes = classesFrom(inside.ioPorts());
  for (const GTBlock* ioPort : inside.ioPorts()) {
    for (const gtPort* member : netOf(*ioPort->getGrRightConnectionPort(0)))
      EXPECT_EQ(classes.at(member->getHandle()), classes.at(ioPort->getGrRightConnectionPort(0)->getHandle()));
  }
}

TEST_F(NetsTest, ANetOfAHundredThousandPortsIsToldInLinearSize) {
  System& root = parentSystem(*source);
  std::vector<gtPort*> line;
  std::vector<GTBlock*> blocks;
  for (int i = 0; i < 50; ++i) {
    blocks.push_back(&root.addBlock(u"M" + ustring(1, static_cast<char16_t>(u'A' + i)), "test/many"));
    for (gtPort* port : ports(*blocks.back())) line.push_back(port);
  }
  root.addLine(line);
  ASSERT_EQ(netOf(*line.front()).size(), 100000u);
  std::size_t told = 0;
  for (const GTBlock* block : blocks) {
    const cvUniquePtr connectivity = getParam(*block, "PortConnectivity");
    for (std::size_t i = 0; i < cvGetNumberOfElements(connectivity.get()); ++i)
      told += cvGetNumberOfElements(peers(connectivity, i));
  }
  EXPECT_EQ(told, 2u * (100000u - 1u));
}

TEST_F(NetsTest, InsideAnOpaqueSubsystemNothingIsConnected) {
  System& inside = *contents(*filter);
  GTBlock& nested = inside.addSubsystem(u"nested");
  GTBlock& deep = contents(nested)->addPort(u"deep", Side::Left, 1);
  contents(nested)->addLine({right(deep), left(contents(nested)->addBlock(u"R", "test/two"))});
  ASSERT_EQ(cvGetNumberOfElements(peers(getParam(*in, "PortConnectivity"), 0)), 1u);
  setParameter(*filter, "Opaque", u"on");
  for (const GTBlock* ioPort : {in, &deep})
    EXPECT_EQ(cvGetNumberOfElements(peers(getParam(*ioPort, "PortConnectivity"), 0)), 0u);
  EXPECT_EQ(cvGetNumberOfElements(peers(getParam(*filter, "PortConnectivity"), 0)), 1u) << "its icon is seen";
}

}  // namespace host_tests
