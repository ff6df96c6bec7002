#include "platform/block_diagram/library.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "domains/physical/kinds.hpp"
#include "domains/physical/prepared_kind.hpp"
#include "formats/spice/element_kinds.hpp"
#include "platform/foundation/strings.hpp"
#include "tests/domains/physical/physical_fixture.hpp"

#include <algorithm>
#include <set>
#include <sstream>

namespace kinemo::physical::test {

namespace {

using testing::ElementsAreArray;
using testing::UnorderedElementsAreArray;

ustring wide(const std::string& text) {
  return kmf::utf8_string_to_ustring(text);
}

/// Block names hold the kind's name with the separator taken out of the way.
ustring block_name(const BlockKind& kind) {
  std::string name = kind.name;
  std::replace(name.begin(), name.end(), '/', '_');
  return wide(name);
}

/// The ports that a block has when nobody has set its parameters.
std::vector<Port> standard_ports(const BlockKind& kind) {
  if (!kind.rule.port) return kind.ports;
  std::vector<Port> ports;
  for (const Parameter& parameter : kind.parameters) {
    if (parameter.name != kind.rule.parameter) continue;
    for (std::size_t i = 0; i < std::stoul(parameter.value); ++i) ports.push_back(kind.rule.port(i));
  }
  return ports;
}

class PhysicalLibrary : public PhysicalTest {
 protected:
  /// One block of each kind; all ports of one type are joined to one net.
  void placeAll() {
    std::map<std::string, std::vector<gtPort*>> nets;
    for (const BlockKind& kind : all_kinds()) {
      for (gtPort* port : bd::ports(place(block_name(kind), "physical/" + kind.name)))
        nets[gtGetPortDomainPortType(port)].push_back(port);
    }
    for (const auto& net : nets) diagram->root().addLine(net.second);
  }

  void expectPorts(const BlockKind& kind, const GTBlock& block) {
    std::vector<std::string> left, right, shown_left, shown_right;
    std::vector<Port> ports = standard_ports(kind);
    std::stable_sort(ports.begin(), ports.end(), [](const Port& a, const Port& b) { return a.rank < b.rank; });
    for (const Port& port : ports)
      (port.side == Side::left ? left : right).push_back("physical." + port.type);
    for (const gtPort* port : bd::ports(block))
      (port->isLeft() ? shown_left : shown_right).push_back(gtGetPortDomainPortType(port));
    EXPECT_EQ(left, shown_left);
    EXPECT_EQ(right, shown_right);
  }

  void expectComponent(const BlockKind& kind, const gl::core::Component& component) {
    std::string type = "physical." + kind.name;
    std::replace(type.begin(), type.end(), '/', '.');
    EXPECT_EQ(std::string(component.type()), type);
    std::vector<kmf::VnId> connectors;
    for (const Port& port : standard_ports(kind)) connectors.emplace_back(port.id);
    EXPECT_EQ(component.connectorOrder(), connectors);
    EXPECT_EQ(component.hasTag("Reference"), kind.reference);
    const auto is_row = [](const Parameter& parameter) { return parameter.form == ParameterForm::row; };
    EXPECT_EQ(component.parameters().size() + std::count_if(kind.parameters.begin(), kind.parameters.end(), is_row),
              kind.parameters.size());
    for (const Parameter& parameter : kind.parameters) expectParameter(parameter, component);
  }

  void expectParameter(const Parameter& parameter, const gl::core::Component& component) {
    SCOPED_TRACE(parameter.name);
    if (parameter.form == ParameterForm::row) {
      EXPECT_EQ(component.parameters().count(parameter.name), 0u);
      return;
    }
    const gl::core::ParameterType& type = component.parameters().at(parameter.name).type();
    if (parameter.form != ParameterForm::expression) {
      EXPECT_EQ(text_of(component, parameter.name.c_str()), wide(parameter.value));
      EXPECT_EQ(type.kind(), gl::core::ParameterType::Kind::Text);
      return;
    }
    const auto [value, unit] = number_of(component, parameter.name.c_str());
    EXPECT_EQ(value, std::stod(parameter.value));
    EXPECT_EQ(unit, parameter.unit);
    EXPECT_EQ(type.kind(), gl::core::ParameterType::Kind::Number);
  }
};

}  // namespace

TEST_F(PhysicalLibrary, EveryKindShowsItsPortsAndCompilesToItsComponent) {
  placeAll();
  const gl::core::Graph graph = compile().graph();
  const auto components = byPath(graph);
  EXPECT_EQ(graph.nodes().size(), 4u);
  for (const BlockKind& kind : all_kinds()) {
    SCOPED_TRACE(kind.name);
    expectPorts(kind, *diagram->root().find(block_name(kind)));
    const auto found = components.find(u"m/" + block_name(kind));
    if (found == components.end()) {
      ADD_FAILURE() << "no component";
      continue;
    }
    expectComponent(kind, found->second);
  }
}

TEST_F(PhysicalLibrary, EveryConnectorIsTiedToANode) {
  placeAll();
  const gl::core::Graph graph = compile().graph();
  std::size_t declared = 0;
  for (const BlockKind& kind : all_kinds()) declared += standard_ports(kind).size();
  EXPECT_EQ(graph.connections({}).size(), declared);
}

TEST_F(PhysicalLibrary, BlocksOfAKindShareOneMask) {
  const auto mask = MaskInterface::mask(&place(u"a", "physical/resistor"));
  ASSERT_NE(mask, nullptr);
  EXPECT_EQ(mask, MaskInterface::mask(&place(u"b", "physical/resistor")));
  std::vector<std::string> names;
  for (const GTMaskParameter& parameter : mask->parameters) names.push_back(parameter.name);
  EXPECT_THAT(names, ElementsAreArray({"R", "R_unit", "R_conf"}));
  EXPECT_EQ(mask->parameters[1].value, u"Ohm");
  EXPECT_EQ(mask->parameters[2].value, u"compiletime");
}

TEST(PhysicalModule, TakesEverythingBackWhenItIsClosed) {
  const kinemo::test::LeakGuard guard;
  for (int round = 0; round < 2; ++round) {
    {
      embedded::Environment environment;
      EXPECT_EQ(environment.loadDomain(KINEMO_PHYSICAL_MODULE), "physical");
      EXPECT_EQ(gt_prototype_names().size(), all_kinds().size());
      EXPECT_TRUE(gl::gti::TranslationManager::get().hasDomain("physical"));
    }
    EXPECT_EQ(gt_find_prototype("physical/resistor"), nullptr);
    EXPECT_FALSE(gl::gti::TranslationManager::get().hasDomain("physical"));
    EXPECT_EQ(DomainMgrPrototypeRegistry::get().getDefaultMgr("physical"), nullptr);
  }
}

TEST(PhysicalKinds, AreWellFormed) {
  std::set<std::string> names;
  for (const BlockKind& kind : all_kinds()) {
    SCOPED_TRACE(kind.name);
    EXPECT_TRUE(names.insert(kind.name).second);
    EXPECT_FALSE(kind.title.empty());
    EXPECT_THAT(kind.text, testing::EndsWith("."));
    std::set<std::string> ids;
    for (const Port& port : standard_ports(kind)) {
      EXPECT_TRUE(ids.insert(port.id).second) << port.id;
      EXPECT_THAT(port.type, testing::AnyOf("electrical", "rotational", "translational", "thermal"));
    }
    for (const Parameter& parameter : kind.parameters) {
      EXPECT_TRUE(ids.insert(parameter.name).second) << parameter.name;
      EXPECT_TRUE(kmf::VnId::isLegal(parameter.name));
      EXPECT_EQ(parameter.unit.empty(), !is_numeric(parameter.form)) << parameter.name;
      EXPECT_NO_THROW(units2::core::parse(parameter.unit)) << parameter.unit;
    }
  }
}

TEST(PhysicalKinds, HoldEveryElementOfNetlists) {
  std::map<std::string, BlockKind> kinds;
  for (const BlockKind& kind : spice_kinds()) kinds.emplace("physical/" + kind.name, kind);
  EXPECT_EQ(kinds.size(), formats::spice::element_kinds.size());
  for (const auto& element : formats::spice::element_kinds) {
    SCOPED_TRACE(element.block);
    const BlockKind& kind = kinds.at(std::string(element.block));
    std::vector<std::string> parameters;
    for (const Parameter& parameter : kind.parameters) parameters.push_back(parameter.name);
    std::istringstream listed{std::string(element.parameters)};
    std::vector<std::string> wanted{std::istream_iterator<std::string>(listed), {}};
    for (const auto& [text, row] : {std::pair("text", "text_values"), std::pair("model_card", "model_values")})
      if (std::count(wanted.begin(), wanted.end(), text) != 0) wanted.push_back(row);
    EXPECT_THAT(parameters, UnorderedElementsAreArray(wanted));
    if (!kind.rule.port) {
      EXPECT_EQ(element.min_nodes, element.max_nodes);
      EXPECT_EQ(kind.ports.size(), element.min_nodes);
    } else {
      EXPECT_EQ(kind.rule.minimum, element.min_nodes);
      EXPECT_GE(element.max_nodes, kind.rule.maximum);
      EXPECT_TRUE(element.max_nodes == formats::spice::unlimited_nodes || element.max_nodes == kind.rule.maximum);
    }
    const std::vector<Port> ports = standard_ports(kind);
    for (std::size_t i = 0; i < ports.size(); ++i) EXPECT_EQ(ports[i].id, "n" + std::to_string(i + 1));
  }
}

}  // namespace kinemo::physical::test
