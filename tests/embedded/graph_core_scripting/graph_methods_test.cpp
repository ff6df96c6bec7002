#include "embedded/class_system/dispatch.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/graph_core_scripting/load.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "tests/embedded/graph_core/sample_graphs.hpp"
#include "tests/embedded/scripting_runtime/runtime_fixture.hpp"

#include <gmock/gmock.h>

namespace embedded::graph_core_scripting {
namespace {

using gl::core::Component;
using gl::core::Graph;
using gl::core::Parameter;
using gl::core::test::number;
using scripting_runtime::base_workspace;
using scripting_runtime::ValueCase;

ParameterVariant expression(const char* text) {
  return data2::cvi::CorvaneParser()(text).value();
}

/// g is the loaded divider: d holds r1 and r2 in series (r1's block is named "R/1"), load lies beside it. r has the
/// run-time parameters R0 = 1 kOhm and k = 2, and names whose values aren't numeric.
class GraphScripts : public scripting_runtime::RuntimeTest {
 protected:
  GraphScripts() : objects_before_(omLiveObjectCount()) {
    class_system::install_dispatch();
    load();
    set("g", graph_class_name, sample());
    gl::core::RuntimeParameterInfo info;
    info.addParameter("R0", data2::core::ValueData(1, units2::core::parse("kOhm")));
    info.addParameter("k", 2.0);
    info.addNonValueParameter("mode");
    set("r", parameter_info_class_name, info);
  }
  ~GraphScripts() override {
    base_workspace().clear();
    EXPECT_EQ(omLiveObjectCount(), objects_before_) << "objects left alive";
    scripting_runtime::set_class_dispatch(nullptr);
  }

  template <class T>
  static void set(const char* name, const char* class_name, const T& value) {
    base_workspace().set(name, class_system::array_of(class_system::object_around(class_name, value)));
  }
  static Graph sample() {
    Graph inside = gl::core::test::divider().graph();
    Graph made;
    Component r1 = inside.components().at("r1");
    r1.tag(gl::core::OBJECT(), ustring(u"m/Divider/R//1"));
    r1.addParameter("R", Parameter(expression("kinemo.Value(gain*R0, 'Ohm')")));
    r1.addParameter("model", Parameter(ustring(u"thick film")));
    made.insert("r1", r1);
    made.insert("r2", inside.components().at("r2"));
    gl::core::test::connect(made, "left", {"r1.p"});
    gl::core::test::connect(made, "middle", {"r1.n", "r2.p"});
    gl::core::test::connect(made, "right", {"r2.n"});
    Component divider(made, {{"gain", Parameter(number(2))}});
    divider.exportNode("left", "a", "physical.electrical");
    divider.exportNode("right", "b", "physical.electrical");
    divider.tag(gl::core::OBJECT(), ustring(u"m/Divider"));
    Graph graph;
    graph.insert("d", divider);
    graph.insert("load", gl::core::test::resistor());
    gl::core::test::connect(graph, "top", {"d.a", "load.p"});
    gl::core::test::connect(graph, "bottom", {"d.b", "load.n"});
    return graph;
  }
  static void check(const std::vector<ValueCase>& cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(value_of(one.text), one.expected) << one.text;
  }
  static void check_errors(const std::vector<ValueCase>& cases) {
    for (const ValueCase& one : cases) EXPECT_EQ(error_of(one.text), one.expected) << one.text;
  }
  static std::string shown(const char* name) { return scripting_runtime::display_text(base_workspace().get(name)); }

 private:
  std::size_t objects_before_;
};

TEST_F(GraphScripts, ListComponentsNodesAndConnections) {
  check({{"g.components", "{'d';'load'}"},
         {"g.nodes", "{'bottom';'top'}"},
         {"g.connections(1)", "struct(node='bottom' component='d' connector='b' )"},
         {"numel(g.connections)", "4"},
         {"g.count", "struct(components=3 subgraphs=1 nodes=5 connections=8 levels=2 )"},
         {"kinemo.gl.Graph().components", "{0x1}"},
         {"numel(kinemo.gl.Graph().connections)", "0"}});
  EXPECT_EQ(shown("g"), "Graph of 2 components (1 subgraph), 2 nodes and 4 connections");
}

TEST_F(GraphScripts, PathsAreIdentifiersOrNamesOfBlocks) {
  check({{"g.subgraph('d').components", "{'r1';'r2'}"},
         {"g.subgraph('Divider').nodes", "{'left';'middle';'right'}"},
         {"isequal(g.subgraph(''), g)", "logical(1)"},
         {"isequal(g.subgraph('d'), g)", "logical(0)"},
         {"isequal(g.subgraph({'d'}), g.subgraph('Divider'))", "logical(1)"},
         {"g.component('Divider/R//1').path", "'d/r1'"},
         {"g.component({'Divider', 'R/1'}).block", "'m/Divider/R//1'"}});
  check_errors({{"g.subgraph('x1')", "scripting:NoSuchComponent(x1, /)"},
                {"g.subgraph('Dvider')", "scripting:NoSuchComponent(Dvider, /) NearestName(Divider)"},
                {"g.component('d/r3')", "scripting:NoSuchComponent(r3, d) NearestName(r1)"},
                {"g.component('d//r1')", "scripting:NoSuchComponent(d/r1, /)"},
                {"g.component('d/')", "scripting:NoSuchComponent(, d)"},
                {"g.subgraph('load')", "scripting:NotASubgraph(load)"},
                {"g.component('load/r1')", "scripting:NotASubgraph(load)"},
                {"g.component('')", "scripting:EmptyPath()"},
                {"g.component(1)", "array:NotText(double)"},
                {"g.component({1})", "array:NotText(double)"}});
}

TEST_F(GraphScripts, ComponentsTellWhatTheyAre) {
  check({{"g.component('load')",
          "struct(path='load' block='' type='physical.resistor' subgraph=logical(0) "
          "connectors=struct(p='physical.electrical' n='physical.electrical' ) "
          "parameters=struct(R=struct(value=1000 unit='Ohm' expression='' ) ) tags=struct() )"},
         {"g.component('d').connectors", "struct(a='physical.electrical' b='physical.electrical' )"},
         {"g.parameters('d/r1').R", "struct(value=[0x0] unit='Ohm' expression='gain*R0' )"},
         {"g.parameters('d/r1').model", "struct(value='thick film' unit='' expression='' )"},
         {"g.parameters('d').gain.value", "2"},
         {"numel(fieldnames(g.tags('load')))", "0"},
         {"g.tags('d')", "struct(OBJECT='m/Divider' )"},
         {"numel(fieldnames(g.tags('d/middle')))", "0"}});
  check_errors({{"g.tags('nowhere')", "scripting:NoSuchComponent(nowhere, /)"}});
}

TEST_F(GraphScripts, NetsReachThroughAllLevels) {
  const std::string bottom =
      "struct(component='d/r2' connector='n' block='' ;component='load' connector='n' block='' )";
  for (const char* port : {"'load.n'", "'d/r2.n'", "'d', 'b'", "'Divider/r2', 'n'"}) {
    EXPECT_EQ(value_of(std::string("g.net(") + port + ")"), bottom) << port;
  }
  check({{"g.net('d/r1.p')(1)", "struct(component='d/r1' connector='p' block='m/Divider/R//1' )"},
         {"numel(g.net('d/r1.n'))", "2"},
         {"g.subgraph('d').net('r1.p').component", "'r1'"}});
  check_errors({{"g.net('load')", "scripting:NoPortNamed(load)"},
                {"g.net('load.q')", "scripting:NoSuchPort(q, load)"},
                {"g.net('.n')", "scripting:EmptyPath()"},
                {"g.net('load', 1)", "classes:InputType(kinemo.gl.Graph.net, 2, char, double)"}});
}

TEST_F(GraphScripts, UnconnectedPortsAreNetsOfTheirOwn) {
  Graph graph;
  graph.insert("d", gl::core::test::divider());
  graph.insert("free", gl::core::test::resistor());
  set("u", graph_class_name, graph);
  check({{"u.net('free.p')", "struct(component='free' connector='p' block='' )"},
         {"u.net('d.a')", "struct(component='d/r1' connector='p' block='' )"},
         {"u.net('d/r1.p')", "struct(component='d/r1' connector='p' block='' )"}});
}

TEST_F(GraphScripts, PiecesAreAnArrayOfGraphs) {
  Graph graph = sample();
  graph.insert("lone", gl::core::test::resistor());
  set("two", graph_class_name, graph);
  check({{"size(two.connectedComponents)", "[2 1]"},
         {"numel(g.connectedComponents)", "1"},
         {"isequal(g.connectedComponents, g)", "logical(1)"},
         {"size([g; two])", "[2 1]"},
         {"isequal(kinemo.gl.Graph.net(g, 'd', 'a'), g.net('d.a'))", "logical(1)"}});
  EXPECT_EQ(value_of("numel(two.connectedComponents(1).components) + numel(two.connectedComponents(2).components)"),
            "3");
}

TEST_F(GraphScripts, ParameterInfosTellNamesValuesAndUnits) {
  check({{"r.names", "{'R0';'k'}"},
         {"r.nonValues", "{'mode'}"},
         {"r.values", "struct(R0=1 k=2 )"},
         {"r.units", "struct(R0='kOhm' k='' )"},
         {"kinemo.gl.RuntimeParameterInfo().names", "{0x1}"}});
  EXPECT_EQ(shown("r"), "Run-time parameters:\n  R0 = 1 kOhm\n  k = 2\n  mode isn't numeric");
  base_workspace().set("two", scripting_runtime::evaluate("[r; r]", scripting_runtime::Scope(base_workspace())));
  const scripting_runtime::DisplayLimits limits = scripting_runtime::display_limits();
  scripting_runtime::display_limits().width = 50;
  EXPECT_THAT(shown("two"), testing::EndsWith("\n    (2,1): Run-time parameters: R0 = 1 kOhm, k ..."));
  scripting_runtime::display_limits() = limits;
}

TEST_F(GraphScripts, ParametersAreEvaluatedForChangedValues) {
  check({{"r.evaluate(g, 'd/r1', 'R')", "2000 Ohm"},
         {"r.evaluate(g, 'Divider/R//1', 'R', 'R0', 3)", "6000 Ohm"},
         {"r.evaluate(g, 'd/r1', 'R', struct('R0', kinemo.Value(50, 'Ohm')))", "100 Ohm"},
         {"r.evaluate(g, 'd/r1', 'R', struct('k', 1), 'R0', 2)", "4000 Ohm"},
         {"r.evaluate(g, 'd', 'gain')", "2"}});
  check_errors({{"r.evaluate(g, 'd/r1', 'Q')", "scripting:NoSuchParameter(Q, d/r1)"},
                {"r.evaluate(g, 'd/r1', 'model')", "values:ParameterIsText(m/Divider/R//1, model)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R1', 1)", "values:UnknownRuntimeParameter(R1, R0)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R0')", "scripting:NameWithoutValue(R0)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R0', 'x')", "cvi:CannotConvert(char)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R0', [1 2])", "scripting:OtherShape(R0, 1x2, 1x1)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R0', [])", "scripting:OtherShape(R0, 0x0, 1x1)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R0', NaN)", "scripting:ValueIsNaN(R0)"},
                {"kinemo.gl.Graph.nett(g, 'd.a')", "NoSuchMethod(nett, kinemo.gl.Graph) NearestName(net)"},
                {"r.evaluate(g, 'd/r1', 'R', 'R0', kinemo.Value(1, 'V'))", "values:UnitsDiffer(R0, V, kOhm)"},
                {"r.evaluate(g, 'd/r1', 'R', repmat(struct('k', 1), 1, 2))", "scripting:ChangesNotOneStructure()"},
                {"r.evaluate(1, 'd/r1', 'R')",
                 "classes:InputType(kinemo.gl.RuntimeParameterInfo.evaluate, 1, kinemo.gl.Graph, double)"}});
}

TEST_F(GraphScripts, DepthTakesNoStack) {
  set("deep", graph_class_name, gl::core::test::nested(3000));
  check({{"deep.count", "struct(components=1 subgraphs=3000 nodes=6000 connections=6000 levels=3001 )"},
         {"deep.component(repmat({'s'}, 1, 3001)).type", "'physical.resistor'"},
         {"numel(deep.net(repmat({'s'}, 1, 3001), 'p'))", "1"},
         {"numel(deep.net('s.p'))", "1"},
         {"isequal(deep, deep.subgraph(''))", "logical(1)"},
         {"deep.subgraph(repmat({'s'}, 1, 3000)).components", "{'s'}"}});
}

TEST_F(GraphScripts, EveryMethodHasHelp) {
  for (const char* its_class : {graph_class_name, parameter_info_class_name}) {
    for (const std::string& method : scripting_runtime::methods_of(its_class)) {
      const scripting_runtime::Help* help = scripting_runtime::find_help(std::string(its_class) + '.' + method);
      ASSERT_NE(help, nullptr) << method;
      EXPECT_NE(help->usage.find('.' + method), std::string::npos) << method;
      EXPECT_FALSE(help->summary.empty() || help->details.empty()) << method;
    }
  }
  EXPECT_THAT(scripting_runtime::package_contents("kinemo.gl"),
              testing::IsSupersetOf({"Graph", "RuntimeParameterInfo"}));
}

}  // namespace
}  // namespace embedded::graph_core_scripting
