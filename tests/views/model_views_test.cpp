#include "tests/support/physical_environment.hpp"
#include "views/block_library.hpp"
#include "views/block_ports.hpp"
#include "views/model_dot.hpp"
#include "views/model_graphml.hpp"
#include "views/model_json.hpp"
#include "views/model_summary.hpp"
#include "views/parameter_text.hpp"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <limits>
#include <sstream>

namespace kinemo::views {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class ModelViews : public test::PhysicalEnvironment {
 protected:
  embedded::block_diagram::Diagram& example(const std::string& name) {
    formats::DiagnosticList problems;
    auto* diagram = formats::diagram::read_diagram(KINEMO_SOURCE_DIR "/examples/" + name, problems);
    if (diagram == nullptr) throw std::runtime_error(test::all_text(problems));
    return *diagram;
  }

  static nlohmann::json json_of(const gl::core::Model& model) {
    std::ostringstream out;
    write_model_json(out, "m", "physical", model);
    return nlohmann::json::parse(out.str());
  }
};

TEST_F(ModelViews, JsonHoldsTheWholeGraph) {
  const gl::core::Model model = compile(example("rc_lowpass.yaml"));
  const nlohmann::json json = json_of(model);
  EXPECT_EQ(1, json.at("schema"));
  EXPECT_EQ("physical", json.at("domain"));
  const nlohmann::json& filter = json.at("graph").at("components").at("Filter");
  EXPECT_EQ("rc_lowpass/Filter", filter.at("object"));
  EXPECT_EQ(3U, filter.at("exports").size());
  const nlohmann::json& resistor = filter.at("graph").at("components").at("R1");
  EXPECT_EQ("physical.resistor", resistor.at("type"));
  EXPECT_EQ("physical.electrical", resistor.at("connectors").at("p"));
  EXPECT_EQ("F", filter.at("graph").at("components").at("C1").at("parameters").at("C").at("unit"));
  EXPECT_EQ(1000.0, json.at("runtimeParameters").at("R0").at("value"));
}

// What the JSON says of nodes, exports and connections is enough to walk it without our own code.
TEST_F(ModelViews, JsonConnectionsNameWhatIsThere) {
  const nlohmann::json json = json_of(compile(example("motor_drive.yaml")));
  std::vector<const nlohmann::json*> graphs{&json.at("graph")};
  std::size_t connections = 0;
  while (!graphs.empty()) {
    const nlohmann::json& graph = *graphs.back();
    graphs.pop_back();
    for (const nlohmann::json& connection : graph.at("connections")) {
      ++connections;
      EXPECT_TRUE(graph.at("nodes").contains(connection.at(0).get<std::string>()));
      EXPECT_TRUE(graph.at("components")
                      .at(connection.at(1).get<std::string>())
                      .at("connectors")
                      .contains(connection.at(2).get<std::string>()));
    }
    for (const nlohmann::json& component : graph.at("components")) {
      if (!component.contains("graph")) continue;
      for (const auto& [node, connector] : component.at("exports").items()) {
        EXPECT_TRUE(component.at("graph").at("nodes").contains(node));
        EXPECT_TRUE(component.at("connectors").contains(connector.get<std::string>()));
      }
      graphs.push_back(&component.at("graph"));
    }
  }
  EXPECT_EQ(count(compile(*embedded::block_diagram::Diagram::find("motor_drive"))).connections, connections);
}

TEST_F(ModelViews, CompilingTwiceGivesTheSameJson) {
  embedded::block_diagram::Diagram& diagram = example("motor_drive.yaml");
  EXPECT_EQ(json_of(compile(diagram)), json_of(compile(diagram)));
}

TEST_F(ModelViews, ParametersAreNumbersByRowsTextsAndExpressions) {
  gl::core::Component part(kmf::VnIdPath1("a.b"));
  const data2::core::ValueData matrix({2, 3}, {1, 2, 3, 4, 5, 6});
  part.addParameter("M", gl::core::Parameter(ParameterVariant(data2::core::Value(matrix))));
  const data2::core::Expr expression = *data2::cvi::CorvaneParser()("2*R0 + sin(x)");
  part.addParameter("e", gl::core::Parameter(ParameterVariant(expression)));
  part.addParameter("t", gl::core::Parameter(ParameterVariant(ustring(u"\u00e4\"/\n"))));
  gl::core::Graph graph;
  graph.insert("P", part);
  const nlohmann::json json = json_of(gl::core::Model(graph, {}));
  const nlohmann::json& parameters = json.at("graph").at("components").at("P").at("parameters");
  EXPECT_EQ(nlohmann::json::parse("[[1, 3, 5], [2, 4, 6]]"), parameters.at("M").at("value"));
  const std::string text = parameters.at("e").at("expression");
  EXPECT_EQ(expression, *data2::cvi::CorvaneParser()(text)) << text;
  EXPECT_EQ("\xC3\xA4\"/\n", parameters.at("t").at("text"));
}

/// Resistors with R = 2*n+1 kOhm, R = R0, and R = n mOhm told in Ohm; a gear in a subsystem with the parameter k = n/2.
constexpr const char* tunable =
    "kinemo: 1\n"
    "settings: {PropagateRuntimeParameters: 'on'}\n"
    "workspace: {R0: {value: 2, unit: Ohm, runtime: true}, n: {value: 3, runtime: true}, idle: {value: 1, runtime: "
    "true}}\n"
    "blocks:\n"
    "  A: {type: physical/resistor, parameters: {R: 2*n+1, R_unit: kOhm, R_conf: runtime}}\n"
    "  B: {type: physical/resistor, parameters: {R: R0, R_conf: runtime}}\n"
    "  C: {type: physical/resistor, parameters: {R: \"kinemo.Value(n, 'mOhm')\", R_conf: runtime}}\n"
    "  S:\n"
    "    mask: {k: n/2}\n"
    "    blocks: {G: {type: physical/gear_box, parameters: {ratio: k, ratio_conf: runtime}}}\n";

TEST_F(ModelViews, JsonTellsExpressionsWithTheirUnits) {
  const nlohmann::json json = json_of(compile(read(tunable)));
  const nlohmann::json& components = json.at("graph").at("components");
  const auto expect = [](const nlohmann::json& component, const char* name, const char* expression, const char* unit) {
    EXPECT_EQ((nlohmann::json{{"expression", expression}, {"unit", unit}}), component.at("parameters").at(name));
  };
  expect(components.at("A"), "R", "2*n + 1", "kOhm");
  expect(components.at("B"), "R", "R0", "Ohm");
  expect(components.at("C"), "R", "kinemo.Value(n, 'mOhm')", "Ohm");
  expect(components.at("S"), "k", "n/2", "");
  expect(components.at("S").at("graph").at("components").at("G"), "ratio", "k", "1");
  EXPECT_EQ(nlohmann::json::parse(R"({"R0": {"value": 2.0, "unit": "Ohm"}, "n": {"value": 3.0, "unit": ""}})"),
            json.at("runtimeParameters"));
}

TEST_F(ModelViews, SummaryTellsExpressionsWithTheirUnits) {
  std::ostringstream out;
  write_summary(out, "m", "physical", compile(read(tunable)), {});
  for (const char* line : {"R = (2*n + 1) kOhm\n", "R = R0 Ohm\n", "R = (kinemo.Value(n, 'mOhm')) Ohm\n", "ratio = k\n",
                           "run-time parameters\n  R0 = 2 Ohm\n  n = 3\n"})
    EXPECT_THAT(out.str(), HasSubstr(line));
  EXPECT_THAT(out.str(), Not(HasSubstr("idle")));
}

TEST_F(ModelViews, DotTellsNumbersAndExpressionsInTooltips) {
  std::ostringstream out;
  write_model_dot(out, "m", compile(read(tunable)));
  for (const char* text : {"\nphysical.resistor\nR = (2*n + 1) kOhm\"", "\nratio = k\"",
                           "tooltip=\"run-time parameters\nR0 = 2 Ohm\nn = 3\""})
    EXPECT_THAT(out.str(), HasSubstr(text));
}

TEST_F(ModelViews, DotShowsNamesAsTheUserWroteThem) {
  std::ostringstream out;
  write_model_dot(out, "m",
                  compile(read("kinemo: 1\nname: m\nblocks:\n"
                               "  S/&1: {type: subsystem, ports: {left: [a]}, blocks: {\"\u05d0.\\n1\": "
                               "{type: physical/resistor}}, lines: [[a, [\"\u05d0.\\n1\", p]]]}\n"
                               "  G: {type: physical/electrical_reference}\nlines: [[S/&1.a, G]]\n")));
  EXPECT_THAT(out.str(), HasSubstr("label=\"\u05d0."));
  EXPECT_THAT(out.str(), HasSubstr("tooltip=\"m/S//&amp;1/\u05d0."));
  EXPECT_THAT(out.str(), HasSubstr("label=\"S/&amp;1\""));
}

TEST_F(ModelViews, ParameterTextsAreForPeople) {
  const auto bound = [](const char* text, const char* unit) {
    return data2::core::Expr(data2::core::UnitBindExpr(*data2::cvi::CorvaneParser()(text), units2::core::parse(unit)));
  };
  const auto value = [](std::vector<std::size_t> shape, std::vector<double> elements, const char* unit) {
    return data2::core::Value(data2::core::ValueData(std::move(shape), std::move(elements), units2::core::parse(unit)));
  };
  const std::vector<std::pair<ParameterVariant, std::string>> cases{
      {ustring(u"a'b"), "'a'b'"},
      {value({1, 1}, {5}, "Ohm"), "5 Ohm"},
      {value({1, 1}, {5}, "1"), "5"},
      {value({2, 2}, {1, 3, 2, 4}, "V"), "[1 2; 3 4] V"},
      {value({0, 0}, {}, ""), "[]"},
      {value({1, 1}, {std::numeric_limits<double>::infinity()}, "m"), "Inf m"},
      {data2::core::Expr(), ""},
      {bound("x", "Ohm"), "x Ohm"},
      {bound("2*x", "Ohm"), "(2*x) Ohm"},
      {bound("2*x", "1"), "2*x"},
      {*data2::cvi::CorvaneParser()("2*x"), "2*x"},
      {bound("kinemo.Value(x, 'kOhm')", "Ohm"), "(kinemo.Value(x, 'kOhm')) Ohm"},
  };
  for (const auto& [parameter, text] : cases) EXPECT_EQ(parameter_text(parameter), text);
}

gl::core::Model nested_model(int levels) {
  gl::core::Graph graph;
  graph.insert("leaf", gl::core::Component(kmf::VnIdPath1("a.b")));
  for (int i = 0; i < levels; ++i) {
    gl::core::Graph outer;
    outer.insert("s", gl::core::Component(graph, {}));
    graph = outer;
  }
  return gl::core::Model(graph, {});
}

TEST_F(ModelViews, DepthDoesNotMatter) {
  constexpr int levels = 20'000;
  const gl::core::Model model = nested_model(levels);
  std::ostringstream json;
  write_model_json(json, "m", "d", model);
  EXPECT_THAT(json.str(), HasSubstr("\"a.b\""));
  const ModelCounts counts = count(model);
  EXPECT_EQ(1U, counts.components);
  EXPECT_EQ(static_cast<std::size_t>(levels), counts.depth);
}

TEST_F(ModelViews, SummaryCutsLongTrees) {
  gl::core::Graph graph;
  for (int i = 0; i < 50; ++i)
    graph.insert(kmf::VnId("c" + std::to_string(i)), gl::core::Component(kmf::VnIdPath1("a.b")));
  std::ostringstream out;
  SummaryOptions options;
  options.component_lines = 10;
  write_summary(out, "m", "d", gl::core::Model(graph, {}), options);
  EXPECT_THAT(out.str(), HasSubstr("50 components"));
  EXPECT_THAT(out.str(), HasSubstr("and 40 more"));
}

TEST_F(ModelViews, DotHoldsEveryLeafOnce) {
  std::ostringstream out;
  write_model_dot(out, "m", compile(example("rc_lowpass.yaml")));
  const std::string text = out.str();
  EXPECT_THAT(text, HasSubstr("subgraph \"cluster_Filter\""));
  EXPECT_EQ(text.find("\"Filter/R1\" [shape=box"), text.rfind("\"Filter/R1\" [shape=box"));
  EXPECT_THAT(text, HasSubstr("\"Filter/R1\" [shape=box"));
  EXPECT_EQ(std::count(text.begin(), text.end(), '{'), std::count(text.begin(), text.end(), '}'));
}

/// Reads XML as far as this writer's goes: counts the elements by name and kind, and sees that they are closed in turn.
/// One element, or one end, is on a line.
std::map<std::string, std::size_t> counted_elements(const std::string& xml) {
  std::map<std::string, std::size_t> counts;
  std::vector<std::string> open;
  std::istringstream in(xml);
  for (std::string line; std::getline(in, line);) {
    const std::size_t begin = line.find('<');
    if (begin == std::string::npos) throw std::runtime_error("no element: " + line);
    if (line[begin + 1] == '?') continue;
    const bool ends = line[begin + 1] == '/';
    const std::size_t name_begin = begin + (ends ? 2 : 1);
    const std::string name = line.substr(name_begin, line.find_first_of(" />", name_begin) - name_begin);
    if (ends) {
      if (open.empty() || open.back() != name) throw std::runtime_error("not open: " + line);
      open.pop_back();
      continue;
    }
    const std::size_t tag_end = line.find('>');
    if (name == "data") {
      ++counts[line.substr(begin, line.rfind("</") - begin)];
    } else if (line[tag_end - 1] != '/') {
      open.push_back(name);
    }
    ++counts[name];
  }
  if (!open.empty()) throw std::runtime_error("not closed: " + open.back());
  return counts;
}

std::string graphml_of(const gl::core::Model& model, const std::string& name = "m") {
  std::ostringstream out;
  write_model_graphml(out, name, "physical", model);
  return out.str();
}

TEST_F(ModelViews, GraphmlHoldsAllOfTheModel) {
  for (const char* name : {"rc_lowpass.yaml", "motor_drive.yaml"}) {
    const gl::core::Model model = compile(example(name));
    const ModelCounts expected = count(model);
    auto found = counted_elements(graphml_of(model));
    EXPECT_EQ(expected.subgraphs + 1, found["graph"]) << name;
    EXPECT_EQ(expected.components, found["<data key=\"kind\">component"]);
    EXPECT_EQ(expected.subgraphs, found["<data key=\"kind\">subgraph"]);
    EXPECT_EQ(expected.nodes, found["<data key=\"kind\">node"]);
    std::size_t exports = 0;
    for (const auto& [line, times] : found) exports += line.rfind("<data key=\"export", 0) == 0 ? times : 0;
    EXPECT_EQ(expected.connections, found["edge"] - exports);
    EXPECT_GT(exports, 0U);
  }
}

TEST_F(ModelViews, GraphmlTiesConnectorsToNodesThroughTheLevels) {
  const std::string text = graphml_of(compile(example("rc_lowpass.yaml")));
  EXPECT_THAT(text, HasSubstr("<node id=\"Filter.R1\">"));
  EXPECT_THAT(text, HasSubstr("<data key=\"type\">physical.resistor</data>"));
  EXPECT_THAT(text, HasSubstr("<edge source=\"Filter.R1\" sourceport=\"p\" target=\"Filter.:"));
  EXPECT_THAT(text, testing::ContainsRegex("<edge source=\"Filter\" sourceport=\"[a-zA-Z0-9_]+\" target=\":"));
  EXPECT_THAT(text, testing::ContainsRegex("<edge source=\"Filter\" sourceport=\"[a-zA-Z0-9_]+\" target=\"Filter\\.:"));
}

TEST_F(ModelViews, GraphmlOfDeepModelsIsClosed) {
  constexpr int levels = 1'000;
  EXPECT_EQ(levels + 1U, counted_elements(graphml_of(nested_model(levels)))["graph"]);
}

TEST_F(ModelViews, GraphmlEscapesAnyName) {
  EXPECT_THAT(graphml_of(gl::core::Model(gl::core::Graph(), {}), "a<b>&\"c\x01\n\xED\xA0\x80\xEF\xBF\xBE\xC3\xA4"),
              HasSubstr(">a&lt;b&gt;&amp;&quot;c\xEF\xBF\xBD&#10;\xEF\xBF\xBD\xEF\xBF\xBD\xC3\xA4<"));
}

TEST_F(ModelViews, LibraryTellsPortsAndParameters) {
  const std::vector<LibraryBlock> blocks = describe_blocks({"physical/resistor", "physical/spice/mosfet"});
  EXPECT_TRUE(embedded::block_diagram::Diagram::open().empty());
  ASSERT_EQ(2U, blocks.front().ports.size());
  EXPECT_EQ("p", blocks.front().ports.front().name);
  EXPECT_EQ("physical.electrical", blocks.front().ports.front().type);
  const auto found = std::find_if(blocks.front().parameters.begin(), blocks.front().parameters.end(),
                                  [](const LibraryParameter& parameter) { return parameter.name == "R"; });
  ASSERT_NE(blocks.front().parameters.end(), found);
  EXPECT_EQ("Ohm", found->unit);
  std::ostringstream out;
  write_library_json(out, blocks);
  EXPECT_EQ("left", nlohmann::json::parse(out.str()).at("blocks").at("physical/resistor").at("ports").at(0).at("side"));
}

TEST_F(ModelViews, NumberedPortsStandInTheOrderOfTheirNumbers) {
  namespace host = embedded::block_diagram;
  const host::Diagram& diagram =
      read("kinemo: 1\nblocks: {M: {type: physical/spice/mosfet, parameters: {terminals: 6}}}\n");
  const GTBlock& block = *diagram.findBlock(u"M");
  EXPECT_EQ((std::vector<std::string>{"n1", "n2", "n3", "n4", "n5", "n6"}), port_names(block));
  EXPECT_THAT(describe_unknown_port(block, "n66"), HasSubstr("did you mean 'n6'"));
}

}  // namespace
}  // namespace kinemo::views
