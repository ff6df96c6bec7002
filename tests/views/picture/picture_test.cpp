// Scenes of systems: what stands where, what is joined, what is marked. The geometry of lines has its own tests.

#include "views/picture/picture.hpp"

#include "platform/foundation/strings.hpp"
#include "tests/support/physical_environment.hpp"
#include "views/find_block.hpp"
#include "views/layout/geometry.hpp"
#include "views/picture/draw_scene.hpp"
#include "views/picture/finding_marks.hpp"
#include "views/picture/io_places.hpp"
#include "views/picture/net_labels.hpp"
#include "views/picture/scene.hpp"
#include "views/picture/stub_labels.hpp"
#include "views/picture/value_text.hpp"
#include "views/systems.hpp"

#include <gmock/gmock.h>

#include <map>
#include <set>

namespace kinemo::views::picture {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

// a --- Outer( p --- R --- m --- C --- q ) --- G; the line "out" runs from R to C
constexpr const char* nested = R"(kinemo: 1
name: m
blocks:
  V.1: {type: physical/voltage_source, parameters: {v: 2*5}}
  Outer:
    type: subsystem
    ports: {left: [p], right: [q]}
    blocks:
      R: {type: physical/resistor, parameters: {R: 4.7, R_unit: kOhm}}
      C: {type: physical/capacitor}
    lines:
      - [p, R.p]
      - {name: out, ports: [R.n, C.p]}
      - [C.n, q]
  G: {type: physical/electrical_reference}
lines:
  - [[V.1, p], Outer.p]
  - [[V.1, n], Outer.q, G.g]
)";

class Picture : public test::PhysicalEnvironment {
 protected:
  static Scene scene(host::System& system) {
    ShapeMaker shapes;
    return make_scene(system, shapes, NetTypes(system.diagram()));
  }

  static host::System& inside(host::Diagram& diagram, const std::string& path) {
    UnknownName unknown;
    return *find_system(diagram, path, unknown);
  }

  static layout::Point corner(const Scene& scene, const ustring& block) {
    for (std::size_t i = 0; i < scene.shapes.size(); ++i) {
      if (scene.shapes[i].block->getGrName() == block) return scene.drawing.corners[i];
    }
    throw std::runtime_error("no such block in the scene");
  }

  static std::vector<std::string> marked(const PictureRequest& request) {
    std::vector<std::string> paths;
    for (const host::System* system : request.systems) paths.push_back(kmf::ustring_to_utf8_string(system->path()));
    return paths;
  }
};

TEST_F(Picture, NetsAreNamedAfterLinesPortsAndReferences) {
  host::Diagram& diagram = read(nested);
  std::map<ustring, std::size_t> nets;
  for (host::System* system : {&diagram.root(), &inside(diagram, "Outer")}) {
    for (const SceneNet& net : scene(*system).nets) nets[net.name] = net.ports->size();
  }
  const std::map<ustring, std::size_t> expected{{u"V.1.p", 2}, {u"G", 3}, {u"p", 2}, {u"out", 2}, {u"q", 2}};
  EXPECT_EQ(expected, nets);
}

TEST_F(Picture, NetsOfSubsystemsHaveTheColourOfWhatTheyReach) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  A: {type: subsystem, ports: {right: [x]}, blocks: {J: {type: physical/inertia}}, lines: [[x, J.r]]}
  B: {type: subsystem, ports: {left: [x]}}
lines: [[A.x, B.x]]
)");
  const Scene drawn = scene(diagram.root());
  ASSERT_EQ(1u, drawn.nets.size());
  const GTColor& color = drawn.nets.front().color;
  EXPECT_NE(0, color.red + color.green + color.blue);
}

TEST_F(Picture, PlacesOfTheFileStayAndPortsStandBesideThem) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  S:
    type: subsystem
    ports: {left: [a, b], right: [c]}
    blocks:
      R1: {type: physical/resistor, at: [200, 100, 60, 40]}
      R2: {type: physical/resistor, at: [200, 110, 60, 40], mirror: on}
    lines: [[b, R1.p], [a, R2.n], [c, R1.n, R2.p]]
)");
  const Scene drawn = scene(inside(diagram, "S"));
  EXPECT_EQ(200, corner(drawn, u"R1").x);
  EXPECT_EQ(110, corner(drawn, u"R2").y);
  // b stands as high as what it is joined to; a makes room below it although it wants to be 10 units lower.
  EXPECT_EQ(110, corner(drawn, u"b").y);
  EXPECT_EQ(140, corner(drawn, u"a").y);
  EXPECT_LT(corner(drawn, u"a").x + 20, 200);
  EXPECT_GT(corner(drawn, u"c").x, 260);
}

TEST_F(Picture, ATurnedBlockStandsUprightWithItsNameBeside) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  R1: {type: physical/resistor}
  R2: {type: physical/resistor, rotate: 90}
)");
  const Scene drawn = scene(diagram.root());
  const BlockShape& lying = drawn.shapes[0];
  const BlockShape& upright = drawn.shapes[1];
  EXPECT_GT(lying.box.size.width, lying.box.size.height);
  EXPECT_EQ(lying.box.size.width, upright.box.size.height);
  EXPECT_EQ(lying.box.size.height, upright.box.size.width);
  EXPECT_GT(lying.captions.front().at.y, lying.box.size.height);
  EXPECT_GT(upright.captions.front().at.x, upright.box.size.width);
}

TEST_F(Picture, ANameAboveEverythingIsInsideOfThePicture) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  R1: {type: physical/resistor, at: [0, 0, 60, 10]}
  R2: {type: physical/resistor, at: [200, 0, 60, 10]}
lines: [{name: out, ports: [R1.n, R2.p]}]
)");
  const Scene drawn = scene(diagram.root());
  ASSERT_TRUE(drawn.nets.front().label);
  EXPECT_LT(drawn.nets.front().label->place.y, 0);
  EXPECT_LE(drawn.drawing.bounds.y, drawn.nets.front().label->place.y);
}

TEST_F(Picture, PortsStandAtTheirSidesWhereTheLayoutPlacesTheBlocks) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  S:
    type: subsystem
    ports: {left: [in, out], right: [supply]}
    blocks:
      R1: {type: physical/resistor}
      R2: {type: physical/resistor}
    lines: [[in, supply, R1.p], [R1.n, R2.p], [out, R2.n]]
)");
  const Scene drawn = scene(inside(diagram, "S"));
  EXPECT_EQ(corner(drawn, u"in").x, corner(drawn, u"out").x);
  EXPECT_LT(corner(drawn, u"out").x + 40, corner(drawn, u"R1").x);
  EXPECT_GT(corner(drawn, u"supply").x, corner(drawn, u"R2").x + 40);
}

TEST_F(Picture, ValuesAreToldAsTheUserWroteThem) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  R: {type: physical/resistor, parameters: {R: 4.7, R_unit: kOhm}}
  F: {type: physical/resistor, parameters: {R: 10*r, R_unit: kOhm}}
  M: {type: physical/spice/bjt, parameters: {model: q2n2222}}
  W: {type: physical/spice/voltage_source, parameters: {value: 1, text: sin 0 1 1k}}
  Z: {type: physical/spice/resistor, parameters: {value: 50}}
  G: {type: physical/electrical_reference}
  S: {type: subsystem}
  C: {type: physical/capacitor, parameters: {C: 4.7e-6}}
  D: {type: physical/resistor, parameters: {R: 1234567.8}}
  T: {type: physical/resistor, parameters: {R: 1e3}}
  H: {type: physical/resistor, parameters: {R: 1e30}}
  N: {type: physical/spice/mosfet}
  Pico: {type: physical/spice/inductor, parameters: {value: 3.69030941553353e-11}}
  Milli: {type: physical/resistor, parameters: {R: 0.266535044422507}}
  Round: {type: physical/resistor, parameters: {R: 999.96}}
  Below: {type: physical/resistor, parameters: {R: -0.00099994}}
  Given: {type: physical/resistor, parameters: {R: 12.345678, R_unit: kOhm}}
  Other: {type: physical/resistor, parameters: {R: 0.0123456789, R_unit: kOhm}}
  Mass: {type: physical/mass, parameters: {m: 0.123456789}}
  Damper: {type: physical/translational_damper, parameters: {D: 12345.6}}
  Long: {type: physical/resistor, parameters: {R: first_resistance+second_resistance}}
)");
  std::vector<ustring> values;
  for (const GTBlock* block : diagram.root().blocks()) values.push_back(value_text(*block));
  EXPECT_THAT(values, ElementsAre(u"4.7 kOhm", u"10*r", u"q2n2222", u"sin 0 1 1k", u"50 Ohm", u"", u"", u"4.7 uF",
                                  u"1.235 MOhm", u"1 kOhm", u"1e30 Ohm", u"", u"36.9 pH", u"266.5 mOhm", u"1 kOhm",
                                  u"-999.9 uOhm", u"12.35 kOhm", u"12.35 Ohm", u"0.1235 kg", u"12.35 kN/(m/s)",
                                  u"first_resi\u2026esistance"));
}

TEST_F(Picture, NetsAndSystemsAreFoundByWhatUsersType) {
  host::Diagram& diagram = read(nested);
  const auto net_size = [&](const std::string& name) {
    UnknownName unknown;
    const gtPort* port = find_net(diagram, name, unknown);
    if (port == nullptr) return unknown.text + "; valid: " + unknown.valid;
    return kmf::ustring_to_utf8_string(port->getGrOwnerBlock()->getGrName()) +
           std::to_string(host::netOf(*port).size());
  };
  EXPECT_EQ("R2", net_size("Outer/R.n"));
  EXPECT_EQ("R2", net_size("m/Outer/out"));
  EXPECT_EQ("Outer3", net_size("Outer.q"));
  EXPECT_EQ("V.12", net_size("V.1.p"));
  EXPECT_THAT(net_size("Outer/R.x"), HasSubstr("'Outer/R' has no port 'x'; valid: 'p', 'n'"));
  EXPECT_THAT(net_size("Outer/Q.p"), HasSubstr("'m/Outer' has no block 'Q'"));
  EXPECT_THAT(net_size("Outer/R/Q.p"), HasSubstr("the block 'Outer/R' has nothing inside; valid: a subsystem"));
  EXPECT_THAT(net_size("V.1.z"), HasSubstr("'V.1' has no port 'z'"));
  EXPECT_EQ("G3", net_size("G"));
  EXPECT_THAT(net_size("Outer/R"), HasSubstr("'Outer/R' has 2 ports"));
  EXPECT_THAT(net_size("Outer/ouzt"), HasSubstr("did you mean 'out'?"));
  EXPECT_THAT(net_size("Outr/out"), HasSubstr("did you mean 'Outer'?"));
  EXPECT_THAT(net_size("nothing"), HasSubstr("no line is called 'nothing'"));
  EXPECT_THAT(net_size(""), HasSubstr("no line is called ''"));
  UnknownName unknown;
  EXPECT_EQ(&diagram.root(), find_system(diagram, "m", unknown));
  EXPECT_EQ(nullptr, find_system(diagram, "Outer/R", unknown));
  EXPECT_THAT(unknown.text, HasSubstr("'Outer/R' has nothing inside"));
}

TEST_F(Picture, CaptionsOfPlacedBlocksKeepClearOfOtherBlocksAndCaptions) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  Supply_resistor_of_stage_1: {type: physical/resistor, at: [0, 0, 60, 40]}
  Supply_resistor_of_stage_2: {type: physical/resistor, at: [100, 0, 60, 40]}
  C_1: {type: physical/capacitor, at: [0, 70, 60, 40]}
  C_2: {type: physical/capacitor, at: [100, 70, 60, 40]}
  Turned_1: {type: physical/resistor, at: [300, 0, 40, 60], rotate: 90}
  Turned_2: {type: physical/resistor, at: [350, 0, 40, 60], rotate: 90}
  Supply of the first stage: {type: physical/capacitor, at: [500, 0, 60, 40]}
  Supply of the second stage: {type: physical/capacitor, at: [600, 0, 60, 40]}
)");
  const Scene drawn = scene(diagram.root());
  std::vector<std::pair<std::size_t, layout::Rectangle>> things;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < drawn.shapes.size(); ++i) {
    const layout::Box& box = drawn.shapes[i].box;
    things.push_back({i, layout::outline(box)});
    for (const layout::Rectangle& text : box.texts) things.push_back({i, layout::moved(text, box.corner)});
    for (const Caption& caption : drawn.shapes[i].captions) texts.push_back(kmf::ustring_to_utf8_string(caption.text));
  }
  for (std::size_t i = 0; i < things.size(); ++i) {
    for (std::size_t k = 0; k < i; ++k)
      EXPECT_FALSE(layout::overlap(things[i].second, things[k].second)) << things[i].first << " on " << things[k].first;
  }
  EXPECT_THAT(texts, ElementsAre(HasSubstr("stage_1"), "1 Ohm", HasSubstr("stage_2"), "1 Ohm", "C_1", "1 uF", "C_2",
                                 "1 uF", "Turned_1", "1 Ohm", "Turned_2", "1 Ohm", "Supply of the", "first stage",
                                 "1 uF", "Supply of the second stage", "1 uF"));
}

/// Letters are 5 units wide and 8 high.
layout::Size letters(const ustring& text) {
  return {5 * static_cast<double>(text.size()), 8};
}

TEST(NetLabels, StandBesideALineWhereThereIsRoom) {
  layout::Box box;
  box.size = {40, 40};
  layout::Box huge;
  huge.size = {2e9, 2e9};
  layout::Drawing drawing;
  drawing.corners = {{100, 60}, {-1e9, 5000}};
  const std::vector<std::vector<std::vector<layout::Point>>> lines{
      {{{0, 100}, {0, 50}, {30, 50}}, {{0, 100}, {200, 100}}},  // the long one runs below the box
      {{{0, 200}, {50, 200}}},                                  // without a name
      {{{0, 300}, {16, 300}, {16, 390}}},                       // beside the vertical one
      {{{0, 6000}, {90, 6000}}},                                // under a box larger than any page
      {{{500, 80}, {540, 80}}},                                 // between two lines, and too short for the name
      {{{490, 66}, {545, 66}, {545, 94}, {490, 94}}},
  };
  drawing.routes.resize(lines.size());
  for (std::size_t i = 0; i < lines.size(); ++i) drawing.routes[i].lines = lines[i];
  LabelRoom room({box, huge}, drawing);
  const auto labels =
      place_net_labels(room, drawing, {u"net_with", u"", u"side", u"none", u"abcdefghij", u""}, letters);
  ASSERT_TRUE(labels[0]);
  EXPECT_LT(labels[0]->place.y + 8, 100);
  EXPECT_LT(labels[0]->place.x + 40, 100) << "left of the box";
  EXPECT_GE(labels[0]->place.x, 2.75) << "clear of the net's own vertical line";
  EXPECT_FALSE(labels[1]) << "no name";
  ASSERT_TRUE(labels[2]);
  EXPECT_GE(labels[2]->place.x, 18.75) << "two units from the line";
  EXPECT_FALSE(labels[3]);
  ASSERT_TRUE(labels[4]);
  EXPECT_EQ(u"abc\u2026ij", labels[4]->text);
}

TEST(StubLabels, FindRoomBesideTheirLinesOrLieOnLinesAlone) {
  layout::Box left;
  left.size = {40, 40};
  layout::Drawing drawing;
  drawing.corners = {{-40, 0}, {60, 0}};
  drawing.routes.resize(3);
  // Two stubs that face each other, and a line of another net between them.
  drawing.routes[0].stubs = {{{0, 0}, {0, 20}, {15, 20}, layout::Direction::right, {17, 16, 25, 8}}};
  drawing.routes[1].stubs = {{{1, 0}, {60, 20}, {45, 20}, layout::Direction::left, {18, 16, 25, 8}}};
  drawing.routes[2].lines = {{{30, -50}, {30, 90}}};
  LabelRoom room({left, left}, drawing);
  place_stub_labels(room, drawing);
  const layout::Rectangle a = drawing.routes[0].stubs[0].label;
  const layout::Rectangle b = drawing.routes[1].stubs[0].label;
  EXPECT_FALSE(layout::overlap(a, b));
  for (const layout::Rectangle& label : {a, b}) {
    EXPECT_GE(label.x, 0);
    EXPECT_LE(layout::right(label), 60);
  }
}

TEST_F(Picture, ANamedNetOfOnePortHasAStub) {
  host::Diagram& diagram = read(R"(kinemo: 1
blocks:
  R1: {type: physical/resistor}
  R2: {type: physical/resistor, at: [0, 0, 60, 40]}
lines:
  - {name: open, ports: [R1.p]}
  - {name: end, ports: [R2.n]}
)");
  const Scene drawn = scene(diagram.root());
  std::vector<ustring> names;
  for (std::size_t i = 0; i < drawn.nets.size(); ++i) {
    names.push_back(drawn.nets[i].name);
    EXPECT_EQ(1u, drawn.drawing.routes[i].stubs.size());
  }
  EXPECT_THAT(names, UnorderedElementsAre(u"open", u"end"));
}

TEST(PortMarks, AreOutsideOfTheirBlocks) {
  const layout::Rectangle block{100, 200, 60, 40};
  const layout::Pin pins[] = {{{0, 10}, layout::Direction::left},
                              {{60, 10}, layout::Direction::right},
                              {{30, 0}, layout::Direction::up},
                              {{30, 40}, layout::Direction::down}};
  for (const layout::Pin& pin : pins) {
    const layout::Point center = port_mark(pin, {100, 200});
    const layout::Rectangle ring = layout::grown({center.x, center.y, 0, 0}, port_mark_radius);
    EXPECT_FALSE(layout::overlap(block, ring));
    EXPECT_LT(layout::distance(center, {100 + pin.at.x, 200 + pin.at.y}), 10) << "on the line of a stub";
  }
}

TEST_F(Picture, AMarkedNetRunsThroughTheLevels) {
  host::Diagram& diagram = read(nested);
  UnknownName unknown;
  Marks marks;
  marks.add_net(*find_net(diagram, "Outer/C.n", unknown));
  std::set<ustring> ports;
  for (const gtPort* port : marks.ports) ports.insert(port->getGrOwnerBlock()->getGrName());
  EXPECT_THAT(ports, UnorderedElementsAre(u"V.1", u"Outer", u"G", u"C", u"q"));
  EXPECT_EQ(2u, marks.nets.size());
}

TEST_F(Picture, FindingsAreMarkedInEverySystemOnTheWay) {
  host::Diagram& diagram = read(nested);
  formats::DiagnosticList findings;
  findings.error("some:rule", {"m.yaml", 1, 1}, "text").objects = {{"m/Outer/R", {}, false}, {"m/G", "g", true}};
  findings.error("some:rule", {"m.yaml", 1, 1}, "text").objects = {{"m/No such block", {}, false}, {"", "", false}};
  const PictureRequest pdf = picture_of_findings(diagram, findings, embedded::drawing::Format::Pdf);
  EXPECT_THAT(marked(pdf), ElementsAre("m", "m/Outer"));
  EXPECT_EQ(2u, pdf.marks.blocks.size()) << "R, and Outer around it";
  EXPECT_EQ(2u, pdf.marks.nets.size());
  EXPECT_THAT(marked(picture_of_findings(diagram, findings, embedded::drawing::Format::Svg)), ElementsAre("m"));
  EXPECT_THAT(marked(picture_of_findings(diagram, {}, embedded::drawing::Format::Pdf)), ElementsAre("m"));
}

TEST_F(Picture, AFileWithFaultsIsDrawnAsFarAsItCouldBeRead) {
  formats::DiagnosticList findings;
  host::Diagram* diagram = formats::diagram::read_diagram_text(R"(kinemo: 1
name: m
blocks:
  R: {type: physical/resistor, parameters: {Q: 1}}
  U/2: {type: physical/resistr}
  V: {type: physical/voltage_source}
  S: {type: subsystem, ports: {left: [a]}, blocks: {C: {type: physical/capacitor}}, lines: [[a, C.q]]}
  G: {type: physical/electrical_reference}
lines:
  - [R.p, U/2.x, V.p]
  - [R.n, U/2.y]
  - [Nobody.p, G, V.n]
)",
                                                               "m.yaml", findings, formats::OnErrors::keep);
  ASSERT_NE(nullptr, diagram);
  EXPECT_EQ(4u, findings.error_count()) << test::all_text(findings);
  const PictureRequest request = picture_of_findings(*diagram, findings, embedded::drawing::Format::Pdf);
  std::set<ustring> blocks;
  for (const GTBlock* block : request.marks.blocks) blocks.insert(block->getGrName());
  EXPECT_THAT(blocks, UnorderedElementsAre(u"R", u"U/2", u"S", u"C"));
  std::set<ustring> ports;
  for (const gtPort* port : request.marks.ports) ports.insert(port->getGrOwnerBlock()->getGrName());
  EXPECT_THAT(ports, UnorderedElementsAre(u"G", u"V")) << "of the net that Nobody was to join";
  std::map<ustring, std::size_t> nets;
  for (const SceneNet& net : scene(diagram->root()).nets) nets[net.name] = net.ports->size();
  EXPECT_THAT(nets, UnorderedElementsAre(std::pair(u"R.p", 3u), std::pair(u"R.n", 2u), std::pair(u"G", 2u)));
}

TEST_F(Picture, PlacesThatShowNothingAreWarnedOf) {
  formats::DiagnosticList problems;
  host::Diagram* diagram = formats::diagram::read_diagram_text(
      "kinemo: 1\nblocks:\n  A: {type: physical/resistor, at: [5, 5, 0, 0.4]}\n"
      "  B: {type: physical/resistor, at: [1e300, 0, 10, 10]}\n",
      "m.yaml", problems);
  ASSERT_NE(nullptr, diagram);
  EXPECT_THAT(test::all_text(problems), HasSubstr("m.yaml:3:36: warning: width or height of 'at' is less than 1"));
  EXPECT_THAT(test::all_text(problems), HasSubstr("m.yaml:4:36: warning: no picture has room for 'at'"));
  const Scene drawn = scene(diagram->root());
  EXPECT_EQ(5, corner(drawn, u"A").x);
  EXPECT_EQ(80, drawn.shapes.front().box.size.width) << "as wide as its icon";
  EXPECT_LT(corner(drawn, u"B").x, 1000);
}

TEST_F(Picture, AnyNameAndAnySizeCanBeDrawn) {
  formats::DiagnosticList warnings;
  host::Diagram& diagram = *formats::diagram::read_diagram_text(
      "kinemo: 1\nblocks:\n"
      "  \"<b>&amp;\\n</b>\": {type: physical/resistor, at: [0, 0, 0, 0]}\n"
      "  \"\\u05d0\\u05d1\\u05d2 \\u6f22\\u5b57\": {type: physical/resistor, at: [1e9, 0, 10, 10]}\n"
      "  \"\\u202e\\ufeff\": {type: physical/resistor, at: [50, 80, 0, 3], rotate: 270}\n"
      "  S: {type: subsystem, ports: {left: [\"<\", \"&\"]}}\n",
      "model.yaml", warnings);
  for (const auto format : {embedded::drawing::Format::Svg, embedded::drawing::Format::Png}) {
    PictureRequest request;
    request.format = format;
    request.systems = {&diagram.root()};
    EXPECT_GT(make_picture(diagram, request).size(), 100u);
  }
}

}  // namespace
}  // namespace kinemo::views::picture
