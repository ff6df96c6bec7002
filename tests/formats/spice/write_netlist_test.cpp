// Netlists that are written: names, ground, definitions, parameters, and that reading them back gives the same circuit.

#include "formats/spice/write_netlist.hpp"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "formats/spice/diagram_names.hpp"
#include "formats/spice/read_netlist.hpp"
#include "tests/support/physical_environment.hpp"
#include "views/nets.hpp"

namespace kinemo::formats::spice {
namespace {

namespace host = embedded::block_diagram;
using testing::HasSubstr;
using testing::Not;

class WriteNetlist : public test::PhysicalEnvironment {
 protected:
  host::Diagram& read_circuit(const std::string& text, const std::string& name = "circuit.cir") {
    DiagnosticList problems;
    host::Diagram* diagram = read_netlist_text(text, name, {}, problems);
    if (diagram == nullptr) {
      throw std::runtime_error(test::all_text(problems));
    }
    return *diagram;
  }

  /// What is written for a diagram, which is closed; problems are in the list.
  std::string write(host::Diagram& diagram, DiagnosticList& problems) {
    diagram.setParameter("PropagateRuntimeParameters", u"on");
    std::ostringstream text;
    const bool written =
        write_netlist(text, compile(diagram), diagram.name(), DiagramNames(diagram, "model.yaml"), problems);
    EXPECT_EQ(written, !text.str().empty());
    host::Diagram::close(diagram);
    return text.str();
  }

  std::string write(host::Diagram& diagram) {
    DiagnosticList problems;
    const std::string text = write(diagram, problems);
    EXPECT_EQ(test::all_text(problems), "");
    return text;
  }

  std::string write_circuit(const std::string& text) { return write(read_circuit("title\n" + text)); }

  std::string problems_of(const std::string& yaml) {
    DiagnosticList problems;
    EXPECT_EQ(write(read(yaml), problems), "");
    return test::all_text(problems);
  }
};

bool has_line(const std::string& text, const std::string& line) {
  return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
}

/// Lines that a text should have.
void expect_lines(const std::string& text, std::initializer_list<const char*> lines) {
  for (const char* line : lines) {
    EXPECT_TRUE(has_line(text, line)) << line << "\nin\n" << text;
  }
}

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t found = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++found;
  }
  return found;
}

// --- names

TEST_F(WriteNetlist, KeepsNamesThatTextsReferTo) {
  expect_lines(
      write_circuit("V1 in 0 dc 0 pulse(1 2)\nl1 in a 1u\nL2 b 0 2u\nk1 l1 L2 0.9\nf1 0 a V1 2\n"
                    "b1 c 0 v=v(in)*i(V1)+v(a,b)\nr1 c open 1k\nr2 b c 1k\n"),
      {"v1 in 0 dc 0 pulse(1 2)", "k1 l1 l2 0.9", "f1 0 a v1 2", "b1 c 0 v={v(in)*i(v1)+v(a,b)}", "r1 c open 1000"});
}

TEST_F(WriteNetlist, MakesNamesLegalAndUnique) {
  const std::string text = write(read(R"yaml(
kinemo: 1
name: names
blocks:
  Upper stage: {type: physical/resistor}
  R1: {type: physical/resistor}
  r1: {type: physical/resistor}
  "R(2)": {type: physical/resistor}
  B: {type: physical/spice/behavioral_source, parameters: {text: "v=v(out) + i(Meter)"}}
  Meter: {type: physical/voltage_source}
  G: {type: physical/electrical_reference}
lines:
  - {name: out, ports: [Upper stage.p, R1.p, Meter.p]}
  - {name: Out, ports: [r1.p, "R(2).p", B.n1]}
  - {name: "0", ports: [Upper stage.n, R1.n, r1.n]}
  - {name: a b, ports: ["R(2).n", Meter.n]}
  - [B.n2, G.g]
)yaml"));
  expect_lines(text, {"rUpper_stage out_2 R1_n 1", "R1 out_2 R1_n 1", "r1_2 Out R1_n 1", "R_2_ Out a_b 1",
                      "B Out 0 v=v(out_2) + i(vMeter)", "vMeter out_2 a_b dc 1"});
}

TEST_F(WriteNetlist, NamesNodesThatNothingElseJoins) {
  const std::string text = write_circuit(
      "v1 in 0 1\nx1 in out s\nx2 in nc t\n.subckt s i o\nr1 i o 1\nr2 o 0 1\n.ends\n"
      ".subckt t i o\nx1 i o s\nx2 i lost u\n.ends\n.subckt u i n\nr1 i 0 1\nb1 0 i i=v(n)\n.ends");
  expect_lines(text, {"x1 in out s", "x2 in nc t", ".subckt t i o", "x1 i o s", "x2 i lost u", ".subckt u i n"});
}

TEST_F(WriteNetlist, GlobalNodesOfTextsStayGlobal) {
  const std::string text =
      write_circuit(".global vdd\nv1 vdd 0 1\nx1 a s\nr1 a 0 1\n.subckt s a\nb1 a 0 v=v(vdd)+v(a)\n.ends");
  EXPECT_TRUE(has_line(text, ".global vdd")) << text;
}

// --- ground

TEST_F(WriteNetlist, GroundIsGroundOnAllLevels) {
  const std::string text = write(read(R"yaml(
kinemo: 1
name: grounds
blocks:
  V: {type: physical/voltage_source}
  Inner:
    ports: {left: [p, ref]}
    blocks:
      R: {type: physical/resistor}
      G: {type: physical/electrical_reference}
    lines: [[p, R.p], [R.n, ref, G.g]]
  Outside:
    ports: {left: [p], right: [n]}
    blocks:
      R: {type: physical/resistor}
    lines: [{name: a, ports: [p, R.p]}, {name: b, ports: [R.n, n]}]
lines:
  - {name: in, ports: [V.p, Inner.p, Outside.p]}
  - [V.n, Inner.ref, Outside.n]
)yaml"));
  expect_lines(text, {".subckt Inner p", "R p 0 1", "xInner in Inner", ".subckt Outside a b", "R a b 1",
                      "xOutside in 0 Outside"});
  EXPECT_EQ(count(text, "\nV "), 1U);
}

// --- definitions and parameters

TEST_F(WriteNetlist, OneDefinitionServesAllCallsOfOneContent) {
  const std::string text = write_circuit(
      ".param g=2\nx1 a 0 s v={g*2}\nx2 a b s v=3\nx3 b 0 s\n.subckt s p n v=7\nr1 p m {v}\nr2 m n {v+g}\n.ends");
  EXPECT_EQ(count(text, ".subckt"), 1U) << text;
  expect_lines(text, {".param g=2", "r1 p m {v}", "r2 m n {v+g}", "x1 a 0 s v={g*2}", "x2 a b s v=3", "x3 b 0 s v=7"});
  const std::string apart = write_circuit(
      "x1 a 0 s k=1\nx2 a 0 s k=2\n.subckt s p n k=0\n.if (k==1)\nr1 p n 1\n.else\nc1 p n 1\n.endif\nr2 p n "
      "1\n.ends");
  expect_lines(apart, {"x1 a 0 s", "x2 a 0 s_2"});
}

/// The simulator would read the `a` in the value of `b` as the new one.
TEST_F(WriteNetlist, ValuesOfCallsNameNoParametersOfTheDefinition) {
  const std::string text = write(read(R"yaml(
kinemo: 1
name: swap
workspace: {a: {value: 1, runtime: true}, b: {value: 2, runtime: true}}
blocks:
  V: {type: physical/voltage_source}
  G: {type: physical/electrical_reference}
  S:
    mask: {a: b, b: 2*a}
    ports: {left: [p], right: [n]}
    blocks:
      R1: {type: physical/resistor, parameters: {R: a, R_conf: runtime}}
      R2: {type: physical/resistor, parameters: {R: b, R_conf: runtime}}
    lines: [{name: p, ports: [p, R1.p]}, {name: m, ports: [R1.n, R2.p]}, {name: n, ports: [R2.n, n]}]
lines: [{name: in, ports: [V.p, S.p]}, [V.n, S.n, G.g]]
)yaml"));
  expect_lines(text, {".param a=1", ".param b=2", "xS in 0 S a_2={b} b_2={2*a}", "R1 p m {a_2}", "R2 m n {b_2}"});
}

TEST_F(WriteNetlist, ParametersGetNamesThatTheSimulatorTakes) {
  const std::string text = write(read(R"yaml(
kinemo: 1
name: words
workspace:
  temper: {value: 1, runtime: true}
  R: {value: 2, unit: kOhm, runtime: true}
  r: {value: 3, runtime: true}
blocks:
  R1: {type: physical/resistor, parameters: {R: R*temper/r, R_conf: runtime}}
  V: {type: physical/voltage_source}
  G: {type: physical/electrical_reference}
lines: [[R1.p, V.p], [R1.n, V.n, G.g]]
)yaml"));
  expect_lines(text, {".param p_temper=1", ".param R=2000", ".param r_2=3", "* the parameter r is named r_2 here",
                      "* the parameter temper is named p_temper here", "R1 R1_p 0 {R*p_temper/r_2}"});
}

TEST_F(WriteNetlist, ModelsOfOneNameStayApart) {
  const std::string text = write_circuit(
      ".param is0=1e-14\n.model dm d(is={is0})\n.model q npn bf=100\nd1 a 0 dm\nq1 a a 0 q\nx1 a s\nx2 a s\n"
      "x3 a t\nx4 a t k=3\nr1 a 0 1\n.subckt s p\n.model dm d n=2\nd1 p 0 dm\nd2 p 0 dm\nq1 p p 0 q\n.ends\n"
      ".subckt t p k=2\n.model dm d(is={k*is0})\nd1 p 0 dm\n.ends");
  EXPECT_EQ(count(text, ".model"), 4U) << text;
  EXPECT_EQ(count(text, ".subckt"), 2U) << text;
  expect_lines(text, {".model q npn bf=100", ".model dm d(is={is0})", "x4 a t k=3"});
  EXPECT_THAT(text.substr(text.find(".subckt t")), HasSubstr("d(is={k*is0})"));
}

TEST_F(WriteNetlist, LongCardsAreContinued) {
  std::string model = ".model qm npn";
  for (int i = 0; i < 40; ++i) {
    model += " p" + std::to_string(i) + "=1.25e-12";
  }
  std::istringstream lines(write_circuit(model + "\nq1 a a 0 qm\nr1 a 0 1"));
  std::size_t continued = 0;
  for (std::string line; std::getline(lines, line);) {
    EXPECT_LE(line.size(), 110U);
    continued += line.front() == '+' ? 1 : 0;
  }
  EXPECT_GE(continued, 5U);
}

TEST_F(WriteNetlist, AnyDepthIsWritten) {
  std::string text = "v1 a 0 1\nx1 a s1\n";
  constexpr int depth = 400;
  for (int i = 1; i <= depth; ++i) {
    const std::string next = i < depth ? "x1 m s" + std::to_string(i + 1) : "r2 m 0 1";
    text += ".subckt s" + std::to_string(i) + " p\nr1 p m 1\n" + next + "\n.ends\n";
  }
  EXPECT_EQ(count(write_circuit(text), ".subckt"), static_cast<std::size_t>(depth));
}

// --- parts of the ordinary library

TEST_F(WriteNetlist, ElectricalPartsBecomeElements) {
  const std::pair<const char*, std::vector<const char*>> rows[] = {
      {"resistor, parameters: {R: 2, R_unit: kOhm}", {"rX p n 2000"}},
      {"conductor", {"gX p n p n 1"}},
      {"capacitor, parameters: {v_0: 2}", {"cX p n 1e-06 ic=2"}},
      {"capacitor, parameters: {R_s: 5, G_p: 1e-3}", {"gcX_p p n p n 0.001", "rcX_s p cX_s 5", "cX cX_s n 1e-06"}},
      {"inductor, parameters: {R_s: 5}", {"rlX_s p lX_s 5", "lX lX_s n 0.001"}},
      {"exponential_diode", {".model junction d is=1e-14 n=1 tnom=27", "dX p n junction temp=27"}},
      {"current_sensor", {"vX p n dc 0"}},
      {"voltage_source", {"vX p n dc 1"}},
      {"current_source, parameters: {i: 3, i_unit: mA}", {"iX p n dc 0.003"}},
      {"ac_voltage_source, parameters: {offset: 2, phase: 90, phase_unit: deg}", {"vX p n sin(2 1 50 0 0 90)"}},
      {"spice/diode, parameters: {model: dm, model_card: d is=1f, value: 2}",
       {".model dm d is=1f", "dX n1 n2 dm area=2"}},
  };
  for (const auto& [part, lines] : rows) {
    const bool is_spice = std::string(part).find("spice") == 0;
    const std::string p = is_spice ? "n1" : "p";
    const std::string n = is_spice ? "n2" : "n";
    const std::string text = write(read("kinemo: 1\nname: part\nblocks:\n  X: {type: physical/" + std::string(part) +
                                        "}\n  RA: {type: physical/resistor}\nlines:\n  - {name: " + p + ", ports: [X." +
                                        p + ", RA.p]}\n  - {name: " + n + ", ports: [X." + n + ", RA.n]}\n"));
    for (const char* line : lines) {
      EXPECT_TRUE(has_line(text, line)) << line << "\nin\n" << text;
    }
  }
}

TEST_F(WriteNetlist, LimitsThatAreInfiniteArentWritten) {
  const auto op_amp = [this](const std::string& parameters) {
    return write(read("kinemo: 1\nname: part\nblocks:\n  X: {type: physical/finite_gain_op_amp, parameters: {" +
                      parameters +
                      "}}\n  G: {type: physical/electrical_reference}\nlines:\n  - {name: p, ports: [X.p, "
                      "X.o]}\n  - [X.n, X.ref, G.g]\n"));
  };
  expect_lines(op_amp("A: 5"), {"rbX_in p 0 1e+06", "bX bX_o 0 v=min(max(5*v(p,0),-15),15)", "rbX_out bX_o p 100"});
  const std::string unlimited = op_amp("A: 5, R_in: Inf, R_out: 0, V_min: -Inf, V_max: Inf");
  expect_lines(unlimited, {"bX p 0 v=5*v(p,0)"});
  EXPECT_EQ(count(unlimited, "rbX"), 0U) << unlimited;
}

TEST_F(WriteNetlist, WhatHasNoCounterpartIsToldAtOnce) {
  const std::string problems = problems_of(R"yaml(
kinemo: 1
name: refused
workspace: {m: {value: "[1 2]", runtime: true}}
blocks:
  D: {type: physical/diode}
  S:
    ports: {left: [p], right: [n]}
    blocks:
      R: {type: physical/resistor, parameters: {R: "m(2)", R_conf: runtime}}
    lines: [[p, R.p], [R.n, n]]
  M: {type: physical/spice/bjt, parameters: {model: qm}}
  N: {type: physical/spice/diode, parameters: {model: nd, model_card: numd level=1}}
  B: {type: physical/spice/mosfet, parameters: {model: nch.1, model_card: nmos lmin=1u}}
  G: {type: physical/electrical_reference}
lines:
  - [D.p, S.p, M.n1, M.n2, M.n3, N.n1, B.n1, B.n2, B.n3, B.n4]
  - [D.n, S.n, N.n2, G.g]
)yaml");
  EXPECT_THAT(problems,
              HasSubstr("model.yaml:6:3: error: block 'refused/D': the type physical.diode has no counterpart"));
  EXPECT_EQ(count(problems, "physical/: spice/..., resistor"), 1U) << problems;
  EXPECT_THAT(problems,
              HasSubstr("block 'refused/S/R': the parameter 'R' can't be written: it takes an element of 'm'"));
  EXPECT_THAT(problems, HasSubstr("block 'refused/M': the model 'qm' has no card"));
  EXPECT_THAT(problems, HasSubstr("[spice:numerical_model]"));
  EXPECT_THAT(problems, HasSubstr("[spice:binned_model]"));
  EXPECT_EQ(count(problems, "error: "), 5U) << problems;
}

// --- there and back

using Partition = std::set<std::set<std::string>>;

/// Which pins share a node; the names of blocks are those of the netlist.
Partition partition_of(const gl::core::Model& model, const host::Diagram& diagram) {
  Partition partition;
  for (const views::Net& net : views::make_nets(model, diagram)) {
    std::set<std::string> pins;
    for (const views::NetPin& pin : net.pins) {
      pins.insert(pin.port == "g" ? "ground" : pin.block + "." + std::to_string(pin.index));
    }
    partition.insert(pins);
  }
  return partition;
}

std::string contents_of(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A comment tells of parameters with new names, which they have already when they are read back.
std::string without_comments(const std::string& text) {
  std::istringstream lines(text);
  std::string result;
  for (std::string line; std::getline(lines, line);) {
    result += line.front() == '*' ? "" : line + "\n";
  }
  return result;
}

TEST_F(WriteNetlist, ReadingItBackGivesTheSameNetsAndTheSameText) {
  std::size_t tried = 0;
  for (const auto& entry : std::filesystem::directory_iterator(ROUND_TRIP_CIRCUITS)) {
    host::Diagram& original = read_circuit(contents_of(entry.path()), entry.path());
    const Partition expected = partition_of(compile(original), original);
    const std::string text = write(original);
    host::Diagram& again = read_circuit(text, entry.path());
    EXPECT_EQ(partition_of(compile(again), again), expected) << entry.path();
    EXPECT_EQ(without_comments(write(again)), without_comments(text)) << entry.path();
    ++tried;
  }
  EXPECT_GE(tried, 6U);
}

}  // namespace
}  // namespace kinemo::formats::spice
