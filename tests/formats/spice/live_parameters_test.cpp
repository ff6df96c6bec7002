// Whatever depends on a parameter of a netlist must follow it in the model: what a reading with another value gives,
// the model gives when its variable takes that value.

#include <gmock/gmock.h>

#include <map>
#include <sstream>

#include "embedded/block_diagram/diagram.hpp"
#include "platform/data/data.hpp"
#include "tests/formats/spice/circuit_fixture.hpp"
#include "views/flat_network.hpp"

namespace kinemo::formats::spice {
namespace {

std::string number(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.9g", value);
  return text;
}

std::vector<double> numbers_of(const gl::core::Component& component, const std::string& parameter) {
  const auto found = component.parameters().find(parameter);
  return found == component.parameters().end()
             ? std::vector<double>()
             : boost::get<data2::core::Value>(found->second.get({})).data().elements();
}

/// A text with numbers in place of its marks.
std::string text_of(const gl::core::Component& component, const std::string& parameter, const std::string& row) {
  const auto found = component.parameters().find(parameter);
  std::string text = found == component.parameters().end()
                         ? ""
                         : kmf::ustring_to_utf8_string(boost::get<ustring>(found->second.get({})));
  const std::vector<double> numbers = numbers_of(component, row);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const std::string mark = "{" + std::to_string(i + 1) + "}";
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark)) {
      text.replace(at, mark.size(), number(numbers[i]));
    }
  }
  return text;
}

class LiveParameters : public CircuitFixture {
 protected:
  /// What all elements are worth, by their paths.
  std::map<std::string, std::string> worth(Diagram& diagram) {
    const gl::core::Model model = compile(diagram);
    std::map<std::string, std::string> result;
    for (const auto& [block, component, nets] : views::flatten(model).components) {
      const std::vector<double> value = numbers_of(*component, "value");
      result[block] = (value.empty() ? "" : number(value.front())) + "|" + text_of(*component, "text", "text_values") +
                      "|" + text_of(*component, "model_card", "model_values");
    }
    return result;
  }

  struct Case {
    ustring block;
    const char* parameter;
    const char* expected;
  };

  static void check(const Diagram& diagram, const std::vector<Case>& cases) {
    for (const Case& one : cases) {
      EXPECT_EQ(parameter(diagram, one.block, one.parameter), one.expected)
          << kmf::ustring_to_utf8_string(one.block) << " " << one.parameter;
    }
  }
};

TEST_F(LiveParameters, AreMarkedInTextsAndModelCards) {
  const Diagram& diagram = read_circuit(
      ".param a=2 c={3*4}\n.model qm npn(is={a*1e-15} bf={2*50} rb=c)\nq1 c b e qm\nv1 a 0 dc 5 sin(0 {-a} 1k {-a})\n"
      "b1 p 0 v={a-v(q)*a+i(v1)**c}\nb2 p 0 i={a*c} tc1={a}\nb3 p 0 v=u(v(b))&{1}+a\nr1 p 0 1k tc1=a tc2=nobody\n"
      "x1 b s is=4\n.subckt s p is=1\n.model dm d(is={is})\nd1 p 0 dm\nq1 p p 0 qm\n.ends");
  check(diagram, {{u"q1", "model_card", "npn(is={1} bf=100 rb={2})"},
                  {u"q1", "model_values", "[a*1e-15, c]"},
                  {u"q1", "model_values_conf", "runtime"},
                  {u"v1", "text", "sin(0 {1} 1k {1})"},
                  {u"v1", "text_values", "[-a]"},
                  {u"v1", "text_values_conf", "runtime"},
                  {u"b1", "text", "v={{1}-v(q)*{1}+i(v1)**{2}}"},
                  {u"b1", "text_values", "[a, c]"},
                  {u"b2", "text", "i={1} tc1={2}"},
                  {u"b2", "text_values", "[a*c, a]"},
                  {u"b3", "text", "v=u(v(b))&(1)+a"},
                  {u"b3", "text_values_conf", "compiletime"},
                  {u"r1", "text", "tc1={1} tc2=nobody"},
                  {u"x1/d1", "model_card", "d(is={1})"},
                  {u"x1/d1", "model_values", "[is]"},
                  {u"x1/q1", "model_values", "[a*1e-15, c]"}});
}

TEST_F(LiveParameters, AreToldInTheNamesThatAnElementSees) {
  const Diagram& diagram = read_circuit(
      ".param a=2 b={2*a} max=1 p_max=3\n.model dm d(is={a} rs={b} n={max+p_max})\nx1 p s w={b} max=5\n"
      ".subckt s p w=1 max=2\n.model dl d(is={w} rs={max})\nd1 p 0 dm\nd2 p 0 dl\nx1 p t w={2*w}\n"
      ".subckt t p w=1\nd1 p 0 dm\nd2 p 0 dl\nr1 p 0 {w+b}\n.ends\n.ends");
  check(diagram, {{u"x1", "w", "2*a"},
                  {u"x1/d1", "model_card", "d(is={1} rs={2} n={3})"},
                  {u"x1/d1", "model_values", "[a, 2*a, 1 + p_max]"},  // `max` of the top level is hidden
                  {u"x1/d2", "model_values", "[w, p_max_1]"},
                  {u"x1/x1", "w", "2*w"},
                  {u"x1/x1/d2", "model_values", "[2*a, p_max_1]"},  // `w` of x1 is hidden
                  {u"x1/x1/r1", "value", "w + 2*a"}});
  EXPECT_THAT(test::all_text(problems), testing::HasSubstr("circuit.cir:7:1: note: a parameter that element 'd1'"));
}

TEST_F(LiveParameters, FollowOthersAsAFreshReadingDoes) {
  const char* const circuits[] = {
      // chains, functions, and what the running circuit decides
      ".param b={2*a} c='b**2+a' d={c>10 ? b : -c}\n.func f(x) {x*b+a}\nr1 p 0 {f(d)} tc1={f(1)}\nv1 p 0 pulse(0 d "
      "1n)\n"
      "b1 p 0 i={v(p)*f(c)-d*time}\n.model dm d(is={c*1p} rs=d)\nd1 p 0 dm area={d}\nk1 l1 l2 {a/100}\nl1 p 0 1\nl2 q "
      "0 1",
      // through calls, defaults and local parameters, three levels down
      ".param b={a+1}\nx1 p s v={b*a}\n.subckt s p v=1 w={v*2}\n.param u={w+v+a+b}\nr1 p 0 {u} tc1={v}\nx1 p t n={u}\n"
      ".ends\n.subckt t p n=1 u=7\n.param u2={u*n}\nx1 p i v={u2+n}\n.ends\n.subckt i p v=0\nr1 p 0 {v+b}\n"
      "e1 p 0 q 0 {v} \ne2 p 0 poly(1) q 0 0 {b}\n.ends",
      // models of outer scopes whose names mean something else further in
      ".model dm d(is={a})\nx1 p s w={a*3}\n.subckt s p w=1\n.model dl d(is={w} rs={a+w})\nd1 p 0 dm\nx1 p t w=5 "
      "v={w+1}\n"
      ".subckt t p v=0 w=1\nd1 p 0 dl\nd2 p 0 dm\nx1 p u w={v}\n.subckt u p w=0\nd1 p 0 dl\n.ends\n.ends\n.ends",
      // what calls multiply
      "x1 p o m={a}\n.subckt o p\nx1 p s\nr1 p 0 {a}\n.ends\n.subckt s p\nr1 p 0 1 tc1=2\ng1 p 0 p 0 {3+a}\n.ends",
      // names that the host has another use for
      ".param max={a} end={max+1} text={end} value=text length={value}\nx1 p s\nr1 p 0 {max(end,length)} tc1={value}\n"
      ".subckt s p model={a} pi={model} model_values={pi} elements={pi} m={a}\nr1 p 0 {pi+m} "
      "tc1={model_values+elements}\n"
      ".ends",
  };
  for (const char* const circuit : circuits) {
    const auto fresh = [&](const std::string& value) -> Diagram& {
      return read_circuit(".param a=" + value + "\n" + circuit, {"fresh"});
    };
    Diagram& live = read_circuit(std::string(".param a=2\n") + circuit);
    const auto before = worth(live);
    live.setVariable("a", u"7", "", true);
    const auto after = worth(live);
    for (const auto& [value, expected] : {std::pair("2", before), std::pair("7", after)}) {
      Diagram& diagram = fresh(value);
      EXPECT_EQ(expected, worth(diagram)) << circuit;
      Diagram::close(diagram);
    }
    EXPECT_NE(before, after);
    Diagram::close(live);
  }
}

TEST_F(LiveParameters, StayExpressionsInTheCompiledModel) {
  Diagram& diagram = read_circuit(
      ".param a=2 b={2*a}\nv1 p 0 sin(0 b 1k)\nd1 p 0 dm\n.model dm d(is={b} rs={a})\nx1 p s w={b}\n"
      ".subckt s p w=1\nb1 p 0 v={v(p)*w}\n.ends");
  diagram.setParameter("PropagateRuntimeParameters", u"on");
  const gl::core::Model model = compile(diagram);
  EXPECT_THAT(model.runtimeParameters().runtimeParameters(), testing::ElementsAre(kmf::VnId("a")));
  const auto network = views::flatten(model);
  const auto expression = [&](std::size_t component, const char* parameter) {
    const ParameterVariant value = network.components[component].component->parameters().at(parameter).get({});
    std::ostringstream text;
    data2::core::out(text, 0, 0, data2::core::without_unit(boost::get<data2::core::Expr>(value)));
    return text.str();
  };
  ASSERT_EQ(4U, network.components.size());  // ground is the first one
  EXPECT_EQ("[2*a, a]", expression(1, "model_values"));
  EXPECT_EQ("[2*a]", expression(2, "text_values"));
  EXPECT_EQ("[w]", expression(3, "text_values"));
}

TEST_F(LiveParameters, ThatGrowWithoutEndStandForThemselves) {
  std::string doubling = ".param a0=1\n";
  for (int i = 0; i < 60; ++i) {
    doubling += ".param a" + std::to_string(i + 1) + "={(a" + std::to_string(i) + "+a" + std::to_string(i) + ")/2}\n";
  }
  const std::string local = ".subckt s p a0=1\n" + doubling.substr(doubling.find('\n') + 1) + "r1 p 0 {a60}\n.ends\n";
  Diagram& diagram = read_circuit(doubling + "r1 p 0 {a60} tc1={a60}\nx1 p s a0=3\n" + local);
  EXPECT_EQ((std::map<std::string, std::string>{{"0", "||"}, {"r1", "1|tc1=1|"}, {"x1/r1", "3||"}}), worth(diagram));
  EXPECT_LT(parameter(diagram, u"r1", "value").size(), 3'000U);
  EXPECT_LT(parameter(diagram, u"x1", "a60").size(), 3'000U);
  EXPECT_THAT(test::all_text(problems), testing::HasSubstr("note: parameter 'a7' doesn't follow"));
}

}  // namespace
}  // namespace kinemo::formats::spice
