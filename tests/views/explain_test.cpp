#include "views/explain.hpp"

#include "platform/foundation/strings.hpp"
#include "tests/support/physical_environment.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace kinemo::views {
namespace {

using ::testing::HasSubstr;

/// Run-time: R0 in kOhm, T0, and without numbers `word` and `none`. In F a mask of several parameters, in it G with one
/// more.
constexpr const char* model_text = R"yaml(kinemo: 1
settings: {PropagateRuntimeParameters: "on", ReferenceTemperature: T0 + 5, InitialTemperature: 300 + 10}
workspace:
  R0: {value: 1, unit: kOhm, runtime: on}
  word: {value: "'ten'", runtime: on}
  none: {value: "[]", runtime: on}
  T0: {value: 20, unit: degC, runtime: on}
  fixed: 3
blocks:
  Top: {type: physical/resistor, parameters: {R: R0 + fixed, R_conf: runtime}}
  None: {type: physical/resistor, parameters: {R: sum(none) + 1, R_conf: runtime}}
  Warm: {type: physical/exponential_diode, parameters: {T_conf: runtime}}
  Cool: {type: physical/exponential_diode}
  Mass: {type: physical/thermal_mass, parameters: {T_0_conf: runtime}}
  Sla/sh/ed:
    mask: {q: R0}
    blocks: {R: {type: physical/resistor, parameters: {R: q, R_conf: runtime}}}
  F:
    type: subsystem
    mask: {R: 2*R0, C: 1e-6, unused: R0, cell: "{R0}", note: {value: R0, kind: text}, w: numel(word)*R0}
    ports: {left: [in], right: [out]}
    blocks:
      G:
        type: subsystem
        mask: {r: R/2, k: fixed*R/R}
        ports: {left: [in], right: [out]}
        blocks:
          a/b: {type: physical/resistor, parameters: {R: r + R, R_unit: Ohm, R_conf: runtime}}
          Set: {type: physical/resistor, parameters: {R: r}}
          K: {type: physical/resistor, parameters: {R: k*r, R_conf: runtime}}
        lines: [[in, a/b.p, Set.p, K.p], [out, a/b.n, Set.n, K.n]]
      Fixed: {type: physical/resistor, parameters: {R: fixed, R_conf: runtime}}
      Cap: {type: physical/resistor, parameters: {R: C, R_conf: runtime}}
      Cell: {type: physical/resistor, parameters: {R: "numel(cell)", R_conf: runtime}}
      Word: {type: physical/resistor, parameters: {R: "numel(word)*R0", R_conf: runtime}}
      W: {type: physical/resistor, parameters: {R: w, R_conf: runtime}}
      If: {type: physical/resistor, parameters: {R: "feval(@max, R0, 1)", R_conf: runtime}}
      Seven: {type: physical/resistor, parameters: {R: 7, R_conf: runtime}}
    lines:
      - [in, G.in, Fixed.p, Cap.p, Cell.p, Word.p, W.p, If.p, Seven.p]
      - [out, G.out, Fixed.n, Cap.n, Cell.n, Word.n, W.n, If.n, Seven.n]
  V:
    variant: {choices: {on: {blocks: {R: {type: physical/resistor}}}, off: {blocks: {R: {type: physical/resistor}}}}, active: on}
  O: {type: subsystem, opaque: on, mask: {q: R0}, ports: {left: [x]}, parameters: {ComponentType: my.part, PortTypes: x=electrical}}
  Gnd: {type: physical/electrical_reference}
lines:
  - [Top.p, F.in]
  - [Top.n, F.out, O.x, Gnd]
)yaml";

class Explain : public test::PhysicalEnvironment {
 protected:
  Explain() : diagram(read(model_text)), model(compile(diagram)) {}

  std::string explained(const std::string& block, const std::string& parameter) {
    formats::DiagnosticList problems;
    const auto explanation = explain(model, diagram, block, parameter, "model.yaml", problems);
    if (!explanation) return test::all_text(problems);
    std::ostringstream text;
    write_explanation_text(text, *explanation);
    return text.str();
  }

  embedded::block_diagram::Diagram& diagram;
  gl::core::Model model;
};

TEST_F(Explain, FollowsAValueThroughMasksToItsVariables) {
  EXPECT_EQ(explained("F/G/a//b", "R"),
            "F/G/a//b, parameter R\n"
            "  R in the dialog of 'F/G/a//b' (model.yaml:28): r + R = 3 kOhm, in Ohm, runtime\n"
            "    R in the mask of 'F' (model.yaml:18): 2*R0 = 2 kOhm\n"
            "      R0 in the model workspace: 1 kOhm, run-time parameter\n"
            "    r in the mask of 'F/G' (model.yaml:23): R/2 = 1 kOhm\n"
            "      R in the mask of 'F' (model.yaml:18): see above\n"
            "in the compiled model: (r + R) Ohm\n"
            "tunable: yes, through R0\n");
}

TEST_F(Explain, FollowsASettingInThePlaceOfTheText) {
  EXPECT_EQ(explained("Warm", "T"),
            "Warm, parameter T\n"
            "  T in the dialog of 'Warm' (model.yaml:12): follows a setting of the model, in K, runtime\n"
            "    T0 in the model workspace: 20 degC, run-time parameter\n"
            "in the compiled model: (T0 + 5) K\n"
            "tunable: yes, through T0\n");
}

TEST_F(Explain, TellsTheFirstReasonWhyAParameterIsFixed) {
  struct Case {
    const char* block;
    const char* parameter;
    const char* reason;
  };
  for (const Case& row :
       {Case{"Top", "R", "yes, through R0"},
        Case{"F", "R", "yes, through R0"},
        Case{"F/G", "r", "yes, through R0"},
        Case{"F/G/K", "R", "yes, through R0"},
        Case{"F/G/Set", "R", "R_conf is 'compiletime', not 'runtime'"},
        Case{"F/Fixed", "R", "'fixed' of the model workspace isn't marked as a run-time parameter"},
        Case{"F/Cap", "R", "the text '1e-6' in the mask of 'F' names no variable"},
        Case{"F/Cell", "R", "the text '{R0}' in the mask of 'F' doesn't give an array of real numbers"},
        Case{"F/Word", "R", "'word' is marked as run-time, but isn't an array of real numbers"},
        Case{"F/W", "R", "'word' of the model workspace is marked as run-time, but isn't an array of real numbers"},
        Case{"F/If", "R", "is outside of the expressions that can stay alive"},
        Case{"F/Seven", "R", "the text '7' in the dialog of 'F/Seven' names no variable"},
        Case{"F/Seven", "R_unit", "is taken as it stands"},
        Case{"F", "note", "is taken as it stands"},
        Case{"F", "unused", "nothing inside of the subsystem depends on it"},
        Case{"O", "q", "the block is opaque"},
        Case{"V/off/R", "R", "the block has no part in the compiled model"},
        Case{"V/off/R", "R", "(not evaluated)"},
        Case{"None", "R", "'none' is marked as run-time, but is empty"},
        Case{"Cool", "T", "no, as T_conf is 'compiletime'"},
        Case{"Mass", "T_0", "no, as it follows a setting of the model, since T_0_from is 'model'"}}) {
    EXPECT_THAT(explained(row.block, row.parameter), HasSubstr(row.reason)) << row.block << " " << row.parameter;
  }
}

TEST_F(Explain, NamesThatAreNotThereAreErrorsWithNearOnes) {
  EXPECT_THAT(explained("F/Sevan", "R"), HasSubstr("'model/F' has no block 'Sevan'; did you mean 'Seven'?"));
  EXPECT_THAT(explained("F/G/H/I", "R"), HasSubstr("'model/F/G' has no block 'H/I'"));
  EXPECT_THAT(explained("Top", "R_untt"), HasSubstr("did you mean 'R_unit'?"));
  EXPECT_THAT(explained("Gnd", "R"), HasSubstr("no parameter 'R'"));
  EXPECT_THAT(explained("model/Top", "R"), HasSubstr("Top, parameter R"));
  EXPECT_THAT(explained("model/F/Sevan", "R"), HasSubstr("'model/F' has no block 'Sevan'; did you mean 'Seven'?"));
  EXPECT_THAT(explained("Sla//sh//ed/R", "R"), HasSubstr("yes, through R0"));
  EXPECT_THAT(explained("Sla//sh//ed/S", "R"), HasSubstr("'model/Sla//sh//ed' has no block 'S'"));
  EXPECT_THAT(explained("Sla//sh//edd", "R"), HasSubstr("did you mean 'Sla//sh//ed'?"));
}

}  // namespace
}  // namespace kinemo::views
