// The dialect case by case: a netlist, and what it expands to. The expectations are what the simulator made of the same
// netlists, in its own names.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "formats/spice/netlist_reader.hpp"
#include "formats/spice/text_file.hpp"
#include "tests/formats/spice/flatten.hpp"

namespace kinemo::formats::spice {
namespace {

using Lines = std::vector<std::string>;

/// Elements as "path node node ...", or the errors instead.
Lines expand_text(const std::string& text, bool with_values = false) {
  DiagnosticList diagnostics;
  const Netlist netlist = read_cards_and_resolve(make_text_file("t.cir", "t.cir", text), diagnostics);
  Lines lines;
  if (!diagnostics.has_errors()) {
    for (const auto& [path, element] : flatten(netlist, diagnostics)) {
      std::string line = path;
      for (const std::string& node : element.nodes) {
        line += " " + node;
      }
      line += with_values ? " : " + element.value + (element.text.empty() ? "" : " | " + element.text) : std::string();
      lines.push_back(line);
    }
  }
  for (const Diagnostic& diagnostic : diagnostics.all()) {
    if (diagnostic.severity == Severity::error) {
      lines.push_back(to_string(diagnostic));
    }
  }
  return lines;
}

struct Case {
  std::string netlist;  ///< without its title line
  Lines expected;
};

void check(const std::vector<Case>& cases, bool with_values = false) {
  for (const Case& one : cases) {
    EXPECT_EQ(expand_text("title\n" + one.netlist, with_values), one.expected) << one.netlist;
  }
}

TEST(NetlistDialect, FirstLineIsTheTitleWhateverItHolds) {
  EXPECT_EQ(expand_text("R1 a b 1k\nR2 a b 1k\n"), Lines{"r2 a b"});
  EXPECT_EQ(expand_text(".subckt s a b\nR2 a b 1k"), Lines{"r2 a b"});
  EXPECT_EQ(expand_text(""), Lines{});
}

TEST(NetlistDialect, LinesCommentsAndContinuations) {
  check({{"r1 a b 1k; comment\nr2 a b 1k $comment\nr3 a b 1k // comment\n * r4\n;r5 a b 1\n $ r6 a b 1",
          {"r1 a b", "r2 a b", "r3 a b"}},
         {"r1 a b$ 1k\nr2 a$x b 1k\nr3 a,$ b 1k\n+ b 1k", {"r1 a b$", "r2 a$x b", "r3 a b"}},
         {"r1 a\n* comment\n\n  + b\n+1k\n", {"r1 a b"}},
         {"r1 a b 1k\r\nr2 a b 1k\rr3 a b 1k", {"r1 a b", "r2 a b", "r3 a b"}},
         {"  r1 a b 1k\n.end\nr2 a b 1k\n#nonsense", {"r1 a b"}},
         {"r1 a b 1k\n.end of the first part\nr2 a b 1k\n\x1A", {"r1 a b", "r2 a b"}},
         {"r1 a b \\\\\n 1k\nr2 a \\\\  \n\n b \\\\\n + 1k\n* r3 \\\\\nr4 a b\n\\\\\n1k\nr5 a b 1k",
          {"r1 a b", "r2 a b", "r4 a b", "r5 a b"}},
         {"r1 a b 1k\n! r2 a b 1k\n[r3 a b\n+ 1k\n(r4 a b) 1k", {"r1 a b"}},
         {"r1(a b) 1k\nr2 (a,b) 1k\nR3 A, B 1K", {"r1 a b", "r2 a b", "r3 a b"}}});
}

TEST(NetlistDialect, MicroSignsAreTheLetterU) {
  check({{"r\xC2\xB5 a b\xC2\xB5 4.7\xC2\xB5\nr2 \xC2\xB5 b\xC2\xB5\n+ {1\xC2\xB5*2}\nc1 a b\xC2\xB5 1\xCE\xBC\x46",
          {"c1 a bu : 1e-06", "r2 u bu : 2e-06", "ru a bu : 4.7e-06"}},
         {"r1 a b\xB5 1\xB5\nr2 a bu 1\xB0", {"r1 a bu : 1e-06", "r2 a bu : 1"}},
         {"r1 a b 47k\xCE\xA9\nr2 a b 47\xE2\x84\xA6", {"r1 a b : 47000", "r2 a b : 47"}}},
        true);
}

TEST(NetlistDialect, GroundIsOneNodeEverywhere) {
  check({{"r1 a GND 1\nr2 a gnd! 1\nr3 00 01 1\nx1 a s\n.subckt s p\nr1 p 0 1\nr2 p Gnd 1\n.ends",
          {"r1 a 0", "r2 a gnd!", "r3 00 01", "x1.r1 a 0", "x1.r2 a 0"}}});
}

TEST(NetlistDialect, DefinitionsMayBeNestedLocalAndShadowing) {
  check({{"x1 p q o\nx2 p q i\n.subckt o a b\nx1 a b i\n.subckt i a b\nr1 a b 1\n.ends i\n.ends\n"
          ".subckt i a b\nr2 a b 1\n.ends",
          {"x1.x1.r1 p q", "x2.r2 p q"}},
         {"xo a b o\n.subckt i a b\nr1 a b 1\n.ends\n.subckt p a b\nx1 a b i\n.ends\n"
          ".subckt o a b\nx1 a b p\n.subckt i a b\nr2 a b 1\n.ends\n.ends",
          {"xo.x1.x1.r1 a b"}},
         {"x1 p p s\n.subckt s a b\nr1 a b 1\n.ends\n.subckt s a b\nr2 a b 1\n.ends", {"x1.r1 p p"}},
         {"x1 a b s\n.SUBCKT S (a,b) W=1\nr1 a b 1\n.ENDS other", {"x1.r1 a b"}},
         {"x1 a b s\n.Macro s a b\nr1 a b 1\n.EOM", {"x1.r1 a b"}},
         {"x1 s\nx2 s params:\n.subckt s\nr1 a 0 1\n.ends", {"x1.r1 x1.a 0", "x2.r1 x2.a 0"}}});
}

TEST(NetlistDialect, GlobalNodesAreStrongerThanFormalOnes) {
  check({{"x1 p q s\nr2 vdd 0 1\n.subckt s a vdd\nr1 a vdd n\n.global vdd n2\n.ends\n.param n=1",
          {"r2 vdd 0", "x1.r1 p vdd"}},
         {"x1 a c s\n.subckt s b gnd\nr1 b gnd 1\n.ends", {"x1.r1 a 0"}}});
}

TEST(NetlistDialect, InnerNodesCanBeNamedFromOutside) {
  check(
      {{"x3 p q t\nr4 x3.x2.n x3.x2.a 1\n.subckt s a b\nr1 a n 1\nr2 n b 1\n.ends\n"
        ".subckt t a b\nx2 a b s\nr3 x2.n a 1\n.ends",
        {"r4 x3.x2.n x3.x2.a", "x3.r3 x3.x2.n p", "x3.x2.r1 p x3.x2.n", "x3.x2.r2 x3.x2.n q"}}});
}

TEST(NetlistDialect, CallsGiveParametersByName) {
  const std::string sub = ".subckt sub p q params: v=1 w = 2\nr1 p q {v+w}\n.ends\n";
  check({{sub + "x1 a b sub v=3 w=4", {"x1.r1 a b : 7"}},
         {sub + "x1 a b sub params: v = 3 w= '2 * 2'", {"x1.r1 a b : 7"}},
         {sub + "x1 a b sub PARAMS:v=3 w=4", {"x1.r1 a b : 7"}},
         {".subckt s a b params:v=3\nr1 a b v\n.ends\nx1 a b s", {"x1.r1 a b : 3"}},
         {sub + "x1 a b sub zz=5 m=2", {"x1.r1 a b : 3 | m=2"}},
         {sub + ".param v=10\nx1 a b sub w={v}", {"x1.r1 a b : 11"}},
         {".subckt s a b j={k*2} k=1\nr1 a b {j}\n.ends\nx1 a b s k=2", {"x1.r1 a b : 4"}},
         {".param k=9\n.subckt s a b k={k}\nr1 a b k\n.ends\nx1 a b s", {"x1.r1 a b : 9"}},
         {".subckt s a b v=1\n.param z={v+1}\nx2 a b in\n.ends\n.subckt in p q\nr1 p q {z*2}\n.ends\nx1 a b s v=3",
          {"x1.x2.r1 a b : 8"}}},
        true);
}

TEST(NetlistDialect, CallsMultiplyTheDevicesInside) {
  const std::string s = ".subckt s a b\nr1 a b 1\n.ends\n";
  check(
      {{"x1 a s m={k+1}\n.param k=8\n.subckt s a\nr1 a 0 1k\nr2 a 0 1k tc1=1\nr3 a 0 r={v(a)}\nc1 a 0 1u\nl1 a 0 1\n"
        "i1 a 0 dc 1 ac 1\ng1 a 0 a 0 2\ng2 a 0 cur={v(a)}\nf1 a 0 v1 2\nd1 a 0 dm 2 off\nq1 a a 0 qm\nm1 a a 0 0 nm "
        "w=1\nj1 a a 0 jm\nz1 a a 0 zm\n.model dm d\n.model qm npn\n.model nm nmos\n.model jm njf\n.model zm "
        "nmf\n.ends",
        {"x1.c1 a 0 : 1e-06 | m=9", "x1.d1 a 0 : 2 | off m=9", "x1.f1 a 0 : 2 | m=9", "x1.g1 a 0 a 0 : 18",
         "x1.g2 a 0 :  | cur={v(a)} m=9", "x1.i1 a 0 : 1 | ac 1 m=9", "x1.j1 a a 0 :  | m=9", "x1.l1 a 0 : 1 | m=9",
         "x1.m1 a a 0 0 :  | w=1 m=9", "x1.q1 a a 0 :  | m=9", "x1.r1 a 0 : 1000 | m=9", "x1.r2 a 0 : 1000 | tc1=1 m=9",
         "x1.r3 a 0 :  | r={v(a)} m=9", "x1.z1 a a 0 :  | m=9"}},
       {"x1 a s m=9\n.subckt s a\nv1 a 0 1\nb1 a 0 i=v(a)\ne1 b 0 a 0 2\nh1 c 0 v1 2\nl1 a 0 1\nl2 a 0 1\nk1 l1 l2 1\n"
        "t1 a 0 b 0 z0=50\n.ends",
        {"x1.b1 a 0 :  | i={v(a)}", "x1.e1 x1.b 0 a 0 : 2", "x1.h1 x1.c 0 : 2", "x1.k1 : 1", "x1.l1 a 0 : 1 | m=9",
         "x1.l2 a 0 : 1 | m=9", "x1.t1 a 0 x1.b 0 :  | z0=50", "x1.v1 a 0 : 1"}},
       // what is inside gives way, also to the 1 of calls that give none
       {s + "x1 p 0 o m=2\nx2 p 0 o\nx3 p 0 s m=5\n.subckt o a b\nx1 a b s m=3\nr1 a b 1 m=4\n.ends",
        {"x1.r1 p 0 : 1 | m=4 m=2", "x1.x1.r1 p 0 : 1 | m=2", "x2.r1 p 0 : 1 | m=4 m=1", "x2.x1.r1 p 0 : 1 | m=1",
         "x3.r1 p 0 : 1 | m=5"}},
       // through definitions without a call that gives one
       {"x1 p 0 t m=2\n.subckt t a b\nx1 a b o\n.ends\n.subckt o a b\nx1 a b s\n.ends\n" + s,
        {"x1.x1.x1.r1 p 0 : 1 | m=2"}},
       // definitions with a parameter of that name see to it themselves
       {"x1 p 0 s m=2\nx2 p 0 t m=2\n.subckt s a b m=5\nr1 a b 1\nr2 a b 1 m={m}\n.ends\n.subckt t a b\n.param m=4\nr1 "
        "a b 1\n.ends\nx3 p 0 u m=3\n.subckt u a b\nx1 a b s m=7\n.ends\n",
        {"x1.r1 p 0 : 1", "x1.r2 p 0 : 1 | m=2", "x2.r1 p 0 : 1", "x3.x1.r1 p 0 : 1", "x3.x1.r2 p 0 : 1 | m=3"}},
       {s + ".param m=4\nx1 p 0 s", {"x1.r1 p 0 : 1"}}},
      true);
}

TEST(NetlistDialect, ParametersInAnyOrderTheLastOneWins) {
  check({{".param a=b b=2\nr1 x y {a}\n.param b = 3 ; comment", {"r1 x y : 3"}},
         {".param a = 1 + 2 b='a*2'\nr1 x y b", {"r1 x y : 6"}},
         {".param s=\"text\" a=1meg\nr1 x y 'a'\nr2 x y 1Mil", {"r1 x y : 1e+06", "r2 x y : 2.54e-05"}},
         {".func f(x) {g(x)*2}\n.func g(x) = 'x+1'\n.param h(x,y)={f(x)-y} k={h(1,1)}\nr1 a b {k}", {"r1 a b : 3"}},
         {".func f(x) {x*2}\n.subckt o a b\n.func f(x) {x*3}\nr1 a b {f(1)}\n.ends\nxo a b o\nr2 a b {f(1)}",
          {"r2 a b : 2", "xo.r1 a b : 3"}}},
        true);
}

TEST(NetlistDialect, ConditionsAreDecidedForEachInstance) {
  const std::string sub =
      ".subckt s a b k=1\n.if (k==1)\nr1 a b 1\n.elseif (k==2)\n.if (n>1)\nr2 a b 2\n.endif\n.else\nr1 b a "
      "3\n.endif\n.ends\n";
  check({{sub + ".param n=2\nx1 a b s\nx2 a b s k=2\nx3 a b s k=3\nx4 a b s k=2 n=0",
          {"x1.r1 a b", "x2.r2 a b", "x3.r1 b a", "x4.r2 a b"}},
         {".if (0)\nr1 a b 1\n.endif\n.if (1)\nr1 b a 1\n.endif", {"r1 b a"}}});
}

TEST(NetlistDialect, NodesRunUpToTheModel) {
  const std::string models =
      ".model qm npn(is=1)\n.model nm.1 nmos lmin=1\n.model dm d\n.model vm vdmos\n.model jm njf\n.model sw sw\n"
      ".model csw csw\n.model tl ltra\n.model tx txl\n.model uu urc\n.model rm r\n";
  check({{models + "q1 c b e qm\nq2 c b e s qm 2\nq3 c b e s t qm area=2\nq4 (c b e) qm",
          {"q1 c b e", "q2 c b e s", "q3 c b e s t", "q4 c b e"}},
         {models + "m1 d g s b nm w=1u\nm2 d g s vm\nm3 d g s t c vm thermal\nm4 d g s b e p c nm",
          {"m1 d g s b", "m2 d g s", "m3 d g s t c", "m4 d g s b e p c"}},
         {models + "q1 a b qm qm\nd1 dm a dm\nd2 dm dm dm\nm1 nm nm nm nm nm\nm2 nm nm vm vm vm",
          {"d1 dm a", "d2 dm dm", "m1 nm nm nm nm", "m2 nm nm vm", "q1 a b qm"}},
         {models + "d1 a k dm 2\nd2 a k t dm thermal\nj1 d g s jm 1\nz1 d g s jm",
          {"d1 a k", "d2 a k t", "j1 d g s", "z1 d g s"}},
         {models + "s1 a b (c d) sw on\nw1 a b v1 csw\no1 a 0 b 0 tl\ny1 a 0 b 0 tx length=1\nu1 a b 0 uu l=1",
          {"o1 a 0 b 0", "s1 a b c d", "u1 a b 0", "w1 a b", "y1 a 0 b 0"}},
         {"x1 a b s\n.subckt s a b\nd1 a b dl\nx1 a b i\n.model dl d\n.subckt i a b\nd1 a b dl\n.ends\n.ends",
          {"x1.d1 a b", "x1.x1.d1 a b"}}});
}

TEST(NetlistDialect, ControlledSourcesHaveTheNodesOfTheirForm) {
  check({{"e1 a b c d 2\ne2 a b (c,d) gain=2\ne3 a b vcvs c d 2\ng1 a b vccs c d 2",
          {"e1 a b c d", "e2 a b c d", "e3 a b c d", "g1 a b c d"}},
         {"e1 a b POLY(2) c 0 d 0 0 1 1\ne2 a b poly 2 (c,0) (d,0) 0 1 1\ng1 a b poly( 1 ) c d 0 1",
          {"e1 a b c 0 d 0", "e2 a b c 0 d 0", "g1 a b c d"}},
         {"e1 a b value = {v(c)*2}\ne2 a b vol='v(c)'\ng1 a b cur='v(c)'\ne3 a b table {v(c)} = (0,0) (1,1)",
          {"e1 a b", "e2 a b", "e3 a b", "g1 a b"}},
         {"f1 a b v1 2\nf2 a b poly(2) v1 v2 0 1 1\nh1 a b ccvs v1 2\nb1 a b v=v(c)+2 tc1=1",
          {"b1 a b", "f1 a b", "f2 a b", "h1 a b"}},
         {"l1 a b 1u\nl2 c d 1u\nk1 l1 l2 0.9\nk2 l1 l2 k=0.9\nt1 a 0 b 0 z0=50 td=1n",
          {"k1", "k2", "l1 a b", "l2 c d", "t1 a 0 b 0"}}});
}

TEST(NetlistDialect, ValuesAndTextsOfElements) {
  check({{".param amp=5\nv1 a 0 dc amp sin(0 {amp*2} 1k)\nv2 a 0 1 ac 1\nv3 a 0 pulse(0 amp 1n) dc=2\nv4 a 0 DC PWL(0 "
          "0 1 1)",
          {"v1 a 0 : 5 | sin(0 10 1k)", "v2 a 0 : 1 | ac 1", "v3 a 0 : 2 | pulse(0 5 1n)",
           "v4 a 0 :  | dc pwl(0 0 1 1)"}},
         {".param k=2\nb1 a 0 i = v(c) * k + k tc1=k\ne1 a 0 value={v(c)+k}\nr1 a b '1k*(1+v(c))' tc1={k}\nc1 a b "
          "c={k*1u} ic=k",
          {"b1 a 0 :  | i={v(c)*2+2} tc1=2", "c1 a b : 2e-06 | ic=2", "e1 a 0 :  | value={v(c)+2}",
           "r1 a b :  | r={1000*(1+v(c))} tc1=2"}},
         {".model rm r rsh=1\nr1 a b rm l=1 w=2\nr2 a b 1k rm\nr3 a b rm 2k\nr4 a b resistance=5",
          {"r1 a b :  | l=1 w=2", "r2 a b : 1000", "r3 a b : 2000", "r4 a b : 5"}},
         {"e1 a 0 b 0 {2*3} m=2\nf1 a 0 v1 gain=4\ng1 a 0 poly(1) b 0 0 1",
          {"e1 a 0 b 0 : 6 | m=2", "f1 a 0 : 4", "g1 a 0 b 0 :  | poly(1) 0 1"}}},
        true);
}

TEST(NetlistDialect, WhatOnlyTheCircuitDecidesStaysAsItStands) {
  check({{"b1 a 0 v=u(v(b))&1\nb2 a 0 i={v(b)} + 1\nr1 a b 'v(a)~2'\ne1 a 0 value={pwl(time,0,0,1,k)}\n.param k=2",
          {"b1 a 0 :  | v=u(v(b))&1", "b2 a 0 :  | i={v(b)+1}", "e1 a 0 :  | value={pwl(time,0,0,1,2)}",
           "r1 a b :  | r='v(a)~2'"}},
         {".param t={temper+1} u={t*2}\nr1 a b {u}", {"r1 a b : there is no parameter 'u'"}}},
        true);
}

TEST(NetlistDialect, WhatNobodyCallsMayBeWrong) {
  check({{"r1 a b 1\n.subckt u a b\nx1 a b nosuch\nq1 a b c nomodel\nr1 a\nx2 a b u\n.ends", {"r1 a b"}}});
}

TEST(NetlistDialect, DeepAndWideNetlistsExpandWithoutDeepRecursion) {
  std::string deep = "title\nxtop a 0 s0\n";
  constexpr int levels = 2'000;
  for (int i = 0; i < levels; ++i) {
    deep += ".subckt s" + std::to_string(i) + " a b\nx a b s" + std::to_string(i + 1) + "\n.ends\n";
  }
  deep += ".subckt s" + std::to_string(levels) + " a b\nr1 a b 1\n.ends\n";
  const Lines result = expand_text(deep);
  ASSERT_EQ(result.size(), 1U);
  EXPECT_EQ(result.front().substr(result.front().size() - 11), ".x.x.r1 a 0");
  std::string wide = "title\n.subckt s a b\nr1 a b 1\n.ends\n";
  for (int i = 0; i < 20'000; ++i) {
    wide += "x" + std::to_string(i) + " n" + std::to_string(i) + " 0 s\n";
  }
  EXPECT_EQ(expand_text(wide).size(), 20'000U);
}

}  // namespace
}  // namespace kinemo::formats::spice
