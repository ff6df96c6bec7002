// Mistakes in netlists. What is to be said about a line stands behind it as a comment: "; !error:column rule", several
// of them one after the other. Every diagnostic of a netlist must be expected, with its line, column and rule.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <sstream>

#include "formats/spice/netlist_reader.hpp"
#include "formats/spice/read_netlist.hpp"
#include "formats/spice/text_file.hpp"
#include "tests/formats/spice/flatten.hpp"
#include "tests/support/physical_environment.hpp"
#include "tests/support/temporary_folder.hpp"

namespace kinemo::formats::spice {
namespace {

using Found = std::vector<std::string>;

DiagnosticList read_all(const std::string& text, const std::filesystem::path& location = "t.cir") {
  DiagnosticList diagnostics;
  const Netlist netlist = read_cards_and_resolve(make_text_file(location.string(), location, text), diagnostics);
  if (!diagnostics.has_errors()) {
    flatten(netlist, diagnostics);
  }
  diagnostics.sort();
  return diagnostics;
}

Found found_in(const std::string& text) {
  Found found;
  const DiagnosticList diagnostics = read_all(text);
  for (const Diagnostic& one : diagnostics.all()) {
    found.push_back(std::to_string(one.line) + " " + std::string(to_string(one.severity)) + ":" +
                    std::to_string(one.column) + " " + one.rule);
  }
  return found;
}

Found expected_in(const std::string& text) {
  Found expected;
  std::istringstream lines(text);
  int number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    for (std::size_t at = line.find('!'); at != std::string::npos; at = line.find('!', at + 1)) {
      std::istringstream words(line.substr(at + 1));
      std::string severity;
      std::string rule;
      words >> severity >> rule;
      expected.push_back(std::to_string(number) + " " + severity + " " + rule);
    }
  }
  return expected;
}

const char* const netlists[] = {
    // calls and definitions
    R"(wrong number of nodes
x1 p q r s   ; !error:1 spice:node_count
x2 p s       ; !error:1 spice:node_count
x3           ; !error:1 spice:bad_card
.subckt s a b
r1 a b 1
r2 a         ; !error:1 spice:node_count
l1           ; !error:1 spice:node_count
.ends)",
    R"(names that nobody knows
x1 a b fulladder     ; !error:8 spice:unknown_subcircuit
x2 a b fuladder 3    ; !error:17 spice:unknown_subcircuit
x3 a b fuladder v=1 q=2 junk ; !warning:21 spice:unknown_parameter !warning:25 spice:ignored_word
d1 a b dmodd         ; !error:8 spice:unknown_model
q1 a b c qmod        ; !error:10 spice:unknown_model
r1 a b 1k rmod       ; fine: what the simulator doesn't know it ignores
j1 a b c jmod        ; !error:10 spice:unknown_model
w1 a b v1 sww        ; !error:11 spice:unknown_model
.modle x d           ; !warning:1 spice:unknown_directive
.subckt fuladder a b v=1
r1 a b {v}
.ends
.model dmod d)",
    R"(recursion
x1 a b s     ; (s calls itself through t)
.subckt s a b
x1 a b t
.ends
.subckt t a b
x1 a b s     ; !error:1 spice:recursion
.ends
.subckt unused a b
x1 a b unused ; !warning:1 spice:recursion
.ends)",
    R"(names that come twice
r1 a b 1
R1 a c 1     ; !error:1 spice:duplicate_element
x1 a b s
X1 a b s     ; !error:1 spice:duplicate_element
.if (1)
r1 a b 1     ; !error:1 spice:duplicate_element
r2 a b 1
.else
r2 a b 1
.endif
.subckt s a a  ; !error:13 spice:formal_twice
r1 a 0 1
.ends
.subckt s a b  ; !warning:9 spice:second_definition
r1 a b nonsense
.ends)",
    R"(twins that only the values tell
.if (k>1)
r1 a b 1
.endif
.if (k<3)
r1 a b 1     ; !error:1 spice:duplicate_element
.endif
.param k=2)",
    R"(nodes of the wrong number before the model
q1 a b qm         ; !error:1 spice:node_count
q2 a b c d e f qm ; !error:10 spice:unknown_model
m1 a b c mm       ; !error:1 spice:node_count
e1 a b c          ; !error:1 spice:node_count
e2 a b poly(2) c 0 d  ; !error:1 spice:node_count
e3 a b poly(x) c 0    ; !error:13 spice:bad_card
g1 a b laplace {v(c)} ; !error:8 spice:unsupported_form
g2 a b i='v(c)'       ; !error:8 spice:unsupported_form
f1 a b                ; !error:1 spice:bad_card
b1 a b 3              ; !error:1 spice:bad_card
k1 l1 0.5             ; !error:1 spice:bad_card
.model qm npn
.model mm nmos)",
    R"(multipliers without an effect
x1 p 0 o m=2
.subckt o a b
x1 a b s m=3            ; !warning:1 spice:replaced_multiplier
r1 a b 1 tc1=0 m={2}    ; !warning:1 spice:replaced_multiplier
r2 a b r={v(a)} m=2     ; fine: of such ones the simulator takes the first
g1 a b poly(1) a b 0 1  ; !warning:1 spice:not_multiplied
.ends
.subckt s a b
r1 a b 1
.ends)",
    // structure
    R"(unbalanced
.ends         ; !error:1 spice:unbalanced
.else         ; !error:1 spice:unbalanced
.endif        ; !error:1 spice:unbalanced
.endl         ; !error:1 spice:unbalanced
.endc         ; !error:1 spice:unbalanced
.subckt s a b ; !error:9 spice:unbalanced
.if (1)
.else
.elseif (1)   ; !error:1 spice:unbalanced
.endif
.if (1)       ; !error:1 spice:unbalanced
r1 a b 1)",
    R"(truncated in a control section
r1 a b 1
.control      ; !error:1 spice:unbalanced !note:1 spice:kept_aside
run)",
    R"(sections of a library in a netlist
.lib tt       ; !error:1 spice:section_outside_library
r1 a b 1
.lib          ; !error:1 spice:bad_card
.endl         ; !error:1 spice:unbalanced
.include      ; !error:1 spice:bad_card
.include nowhere.inc   ; !error:10 spice:missing_file
.lib nowhere.lib tt    ; !error:6 spice:missing_file
)",
    R"(+ the title may look like anything
+ 1k           ; !error:1 spice:nothing_to_continue
#include <x>   ; !error:1 spice:unknown_card
3 a b          ; !error:1 spice:unknown_card
[r9 a b        ; !warning:1 spice:odd_comment
a1 a b amod    ; !error:1 spice:unsupported_element
p1 a b 0 pmod  ; !error:1 spice:unsupported_element
.subckt        ; !error:1 spice:bad_card
.ends
.model x       ; !error:1 spice:bad_card
.func f {1}    ; !error:1 spice:bad_card
.func g(x)     ; !error:8 spice:bad_card)",
    // parameters and expressions
    R"(expressions
.param a={1+}     ; !error:13 spice:bad_expression
.param b=         ; !error:8 spice:bad_expression
.param c d=1      ; !warning:8 spice:no_value
.param e="text"   ; !warning:8 spice:text_parameter
r1 a b {d*}       ; !error:11 spice:bad_expression
r2 a b 1k5        ; fine: what stands behind the suffix is ignored
r3 a b
+ c=1 r={(d}      ; !error:10 spice:bad_expression
.if (d=           ; !error:8 spice:bad_expression
.endif
.if               ; !error:1 spice:bad_expression
.endif)",
    R"(parameters that need themselves
.param a={b} b={c+1}   ; !error:10 spice:parameter_cycle
.param c='2*a'
.param d={d+1}    ; !error:10 spice:parameter_cycle
.func f(x) {f(x)}
r1 a b {f(1)}     ; !error:9 spice:bad_expression)",
    R"(values that aren't there
r1 a b {nope}     ; !error:1 spice:no_value
r2 a b rr         ; !error:1 spice:no_value
.param a={b+1}    ; !error:10 spice:no_value
x1 a b s w={c}    ; !error:10 spice:no_value
x2 a b s
.subckt s a b w=1
r1 a b {w*q}      ; !error:1 spice:no_value
.if (v(a)>0)      ; !error:1 spice:no_value
.endif
.ends)",
    R"(what is odd but counts
.global vdd
.if (1)
.subckt s a vdd 0   ; !warning:1 spice:not_conditional !warning:9 spice:formal_is_global !warning:9 spice:formal_is_global
r1 a vdd 1
.ends t             ; !warning:1 spice:ends_name
.param k=1          ; !warning:1 spice:not_conditional
.endif
x1 a b c s
.tran 1n 1u         ; !note:1 spice:kept_aside
.op                 ; !note:1 spice:kept_aside
.tran 1n 2u)",
};

TEST(NetlistMistakes, AreAllToldWithTheirPlace) {
  for (const std::string text : netlists) {
    EXPECT_THAT(found_in(text), testing::UnorderedElementsAreArray(expected_in(text))) << text;
  }
}

std::string told(const std::string& text) {
  std::string all;
  const DiagnosticList diagnostics = read_all("title\n" + text);
  for (const Diagnostic& one : diagnostics.all()) {
    all += to_string(one) + "\n";
  }
  return all;
}

/// With the blocks of the physical domain.
class FaultyNetlists : public test::PhysicalEnvironment {
 protected:
  embedded::block_diagram::Diagram* read_kept(const std::string& text, DiagnosticList& diagnostics) {
    Options options;
    options.model_name = "m";
    options.on_errors = OnErrors::keep;
    return read_netlist_text(text, "t.cir", options, diagnostics);
  }
};

TEST_F(FaultyNetlists, AreKeptAsFarAsTheyCanBeRead) {
  for (const char* text : netlists) {
    DiagnosticList kept;
    DiagnosticList closed;
    auto* diagram = read_kept(text, kept);
    ASSERT_NE(nullptr, diagram) << text;
    embedded::block_diagram::Diagram::close(*diagram);
    diagram = read_netlist_text(text, "t.cir", {"m"}, closed);
    EXPECT_EQ(test::all_text(closed), test::all_text(kept)) << text;
    EXPECT_EQ(diagram == nullptr, closed.has_errors());
    if (diagram != nullptr) embedded::block_diagram::Diagram::close(*diagram);
  }
}

TEST_F(FaultyNetlists, NameTheBlocksOfTheirErrors) {
  DiagnosticList diagnostics;
  const auto* diagram = read_kept(R"(title
r1 in out 1k
a1 in out kind
d1 in
+ out nomodel
x1 in out nowhere
x2 in out sub
.subckt sub a b
r1 a b {1+}
.ends
.end
)",
                                  diagnostics);
  ASSERT_NE(nullptr, diagram);
  std::vector<std::string> objects;
  for (const Diagnostic& one : diagnostics.all()) {
    for (const DiagnosticObject& object : one.objects) objects.push_back(object.block);
  }
  EXPECT_THAT(objects, testing::ElementsAre("m/a1", "m/d1", "m/x1", "m/x2/r1"));
  EXPECT_EQ(5U, diagram->root().blocks().size());
}

TEST(NetlistMistakes, TellHowManyNodesAreMissing) {
  EXPECT_EQ(told("e1 a b poly(2) c 0 d"),
            "t.cir:2:1: error: element 'e1' has 5 node(s) and needs 6 [spice:node_count]\n");
  EXPECT_EQ(told("g1 a b c"), "t.cir:2:1: error: element 'g1' has 3 node(s) and needs 4 [spice:node_count]\n");
  EXPECT_EQ(told("q1 a b qm 2\n.model qm npn"),
            "t.cir:2:1: error: element 'q1' has 2 node(s) and needs 3 to 5 [spice:node_count]\n");
  EXPECT_EQ(told("r1 $n_0001 0 1k"),
            "t.cir:2:1: error: element 'r1' has 0 node(s) and needs 2 [spice:node_count]\n"
            "  note: a '$' behind a blank or comma begins a comment, so no name can begin with it\n");
}

TEST(NetlistMistakes, TellWhatWouldBeValid) {
  EXPECT_EQ(told("x1 a b fulladder\n.subckt fuladder a b\n.ends"),
            "t.cir:2:8: error: 'x1' calls the subcircuit 'fulladder', which isn't defined [spice:unknown_subcircuit]\n"
            "  note: did you mean 'fuladder'?\n");
  EXPECT_EQ(told("x1 a s\n.subckt s a b\n.ends"),
            "t.cir:2:1: error: 'x1' gives 1 node(s) to 's', which has 2 [spice:node_count]\n"
            "  t.cir:3:9: note: it is defined as 's a b'\n");
  EXPECT_EQ(told("x1 a b s 5\n.subckt s a b v=1\n.ends"),
            "t.cir:2:10: error: 'x1' calls the subcircuit '5', which isn't defined [spice:unknown_subcircuit]\n"
            "  note: parameters are given by name: 's name=5'\n");
  EXPECT_THAT(told("d1 a b dmodd\n.model dmod d"),
              testing::HasSubstr("there is no model 'dmodd' [spice:unknown_model]\n  note: did you mean 'dmod'?\n"));
  EXPECT_THAT(told("x1 a s\n.subckt s a\nx1 a t\n.ends\n.subckt t a\nx1 a s\n.ends"),
              testing::HasSubstr("subcircuit 's' calls itself: s -> t -> s"));
}

/// Netlists that are read from a folder of files.
class NetlistFiles : public testing::Test {
 protected:
  void make_pipe(const std::string& name) { ASSERT_EQ(0, ::mkfifo((m_folder.path() / name).c_str(), 0600)); }
  void write(const std::string& name, const std::string& text) { m_folder.write(name, text); }
  /// Elements of the netlist, or what was wrong, with file names relative to the folder.
  std::vector<std::string> elements_of(const std::string& text) {
    DiagnosticList diagnostics;
    const Netlist netlist =
        read_cards_and_resolve(make_text_file("top.cir", m_folder.path() / "top.cir", "title\n" + text), diagnostics);
    std::vector<std::string> result;
    for (const Diagnostic& one : diagnostics.all()) {
      const std::string file = std::filesystem::path(one.file).lexically_relative(m_folder.path()).string();
      result.push_back((file.empty() ? one.file : file) + ":" + std::to_string(one.line) + " " + one.rule);
    }
    if (!diagnostics.has_errors()) {
      for (const auto& [path, element] : flatten(netlist, diagnostics)) {
        result.push_back(path);
      }
    }
    return result;
  }

 private:
  test::TemporaryFolder m_folder;
};

TEST_F(NetlistFiles, AreIncludedWhereTheyAreNamedRelativeToTheFileThatNamesThem) {
  write("sub/Parts.inc", "r1 a b 1\n.include 'more.inc'\n.end\nr3 a b 1");
  write("sub/more.inc", "\xEF\xBB\xBFr2 a b 1 * \xB5 in Latin-1\n");
  EXPECT_THAT(elements_of(".INC \"sub/Parts.inc\"\nr4 a b 1"), testing::ElementsAre("r1", "r2", "r3", "r4"));
  EXPECT_THAT(elements_of(".inc sub//more.inc // comment"), testing::ElementsAre("r2"));
}

TEST_F(NetlistFiles, SectionsOfLibrariesAreTakenAlone) {
  write("m.lib",
        "* models\n.lib tt\nr1 a b 1\n.lib 'm.lib' common\n.endl tt\n.lib FF\nr1 b a 1\n.endl\n"
        ".lib common\n.subckt s a b\nr1 a b 1\n.ends\n.endl common\nr9 a b 1\n");
  EXPECT_THAT(elements_of(".lib m.lib TT\nx1 a b s"), testing::ElementsAre("r1", "x1.r1"));
  EXPECT_THAT(elements_of(".lib m.lib ss"), testing::ElementsAre("top.cir:2 spice:missing_section"));
}

TEST_F(NetlistFiles, MistakesInThemNameThem) {
  write("bad.lib", ".lib a\nr1 x\n.lib b\n.endl c\n.lib d\nr2 x y 1\n");
  write("sub/part.inc", "");
  write("loop.inc", "r1 a b 1\n.include loop.inc\n");
  write("binary.inc", std::string("r1 a b 1\n\0\1\2", 12));
  EXPECT_THAT(elements_of(".lib bad.lib a"),
              testing::UnorderedElementsAre("bad.lib:3 spice:unbalanced", "bad.lib:4 spice:section_name",
                                            "bad.lib:5 spice:unbalanced", "bad.lib:2 spice:node_count"));
  EXPECT_THAT(elements_of(".include loop.inc"), testing::ElementsAre("loop.inc:2 spice:include_cycle"));
  write("top.cir", "read only once\n");
  EXPECT_THAT(elements_of(".include top.cir"), testing::ElementsAre("top.cir:2 spice:include_cycle"));
  EXPECT_THAT(elements_of(".include binary.inc\n.include sub"),
              testing::ElementsAre("top.cir:2 spice:missing_file", "top.cir:3 spice:missing_file"));
}

TEST_F(NetlistFiles, ThatMayNeverEndAreRefusedAtOnce) {
  make_pipe("pipe.inc");
  EXPECT_THAT(elements_of(".include pipe.inc\n.include /dev/zero"),
              testing::ElementsAre("top.cir:2 spice:missing_file", "top.cir:3 spice:missing_file"));
}

TEST(NetlistMistakes, HugeExpansionsAreRefusedBeforeTheyBegin) {
  std::string text = "title\nx1 a s40\n.subckt s0 a\nr1 a 0 1\n.ends\n";
  for (int i = 1; i <= 40; ++i) {
    const std::string below = "s" + std::to_string(i - 1);
    text += ".subckt s" + std::to_string(i) + " a\nx1 a " + below + "\nx2 a " + below + "\n.ends\n";
  }
  EXPECT_THAT(found_in(text), testing::ElementsAre(testing::HasSubstr("spice:too_large")));
}

TEST(NetlistMistakes, AnyPrefixOfANetlistIsReadToItsEnd) {
  const std::string text =
      "title\n.param a={(b+1)*2} b='max(1,2)'\n.func f(x) {x*2}\n.subckt s a b w={f(a)}\n.if (w>1)\nq1 a b 0 "
      "qm\n.else\n"
      "e1 a b poly(2) a 0 b 0 0 1\n.endif\n.model qm npn(is={w})\n.ends\nx1 a b s w=\"2\"\nv1 a 0 dc 1 sin(0 {a} 1k)\n";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    for (const char* const tail : {"", "{", "'", "(", "=", "\n+", "\xff", "\n.ends"}) {
      read_all(text.substr(0, length) + tail);
    }
  }
}

}  // namespace
}  // namespace kinemo::formats::spice
