// Mechanics of motion along a line. Port r is the rod, port c the case; positive force pushes r away from c.

#include "domains/physical/kinds.hpp"

namespace kinemo::physical {

namespace {

constexpr char T[] = "translational";

std::vector<Port> rod_and_case() {
  return {left("r", T, "R"), right("c", T, "C")};
}

}  // namespace

std::vector<BlockKind> translational_kinds() {
  return with_icons({
      {"mass",
       "Mass",
       "Body that moves: force = m*dv/dt.",
       {left("r", T, "R")},
       {number("m", "Mass", "1", "kg"), number("v_0", "Initial velocity", "0", "m/s")}},
      {"translational_spring",
       "Translational Spring",
       "Ideal spring: force = k*x.",
       rod_and_case(),
       {number("k", "Spring rate", "1000", "N/m"), number("x_0", "Initial deformation", "0", "m")}},
      {"translational_damper",
       "Translational Damper",
       "Ideal viscous damper: force = D*v.",
       rod_and_case(),
       {number("D", "Damping coefficient", "100", "N/(m/s)")}},
      {"translational_friction",
       "Translational Friction",
       "Friction between rod and case: breakaway, Coulomb and viscous part.",
       rod_and_case(),
       {number("F_breakaway", "Breakaway force", "25", "N"), number("F_coulomb", "Coulomb force", "20", "N"),
        number("v_breakaway", "Breakaway velocity", "0.1", "m/s"),
        number("D", "Viscous coefficient", "100", "N/(m/s)")}},
      {"translational_hard_stop",
       "Translational Hard Stop",
       "Limits the way between rod and case by stiff stops.",
       rod_and_case(),
       {limit("upper", "Upper bound", "0.1", "m"), limit("lower", "Lower bound", "-0.1", "m"),
        number("k", "Stiffness of the stops", "1e6", "N/m"), number("D", "Damping of the stops", "150", "N/(m/s)")}},
      {"lever",
       "Lever",
       "Ideal lever about a fixed pivot: the velocity of b is -arm_b/arm_a times that of a.",
       {left("a", T, "A"), right("b", T, "B")},
       {number("arm_a", "Arm at a", "1", "m"), number("arm_b", "Arm at b", "1", "m")}},
      {"force_source",
       "Force Source",
       "Ideal constant force between rod and case.",
       rod_and_case(),
       {number("F", "Force", "1", "N")}},
      {"velocity_source",
       "Velocity Source",
       "Ideal constant velocity of the rod against the case.",
       rod_and_case(),
       {number("v", "Velocity", "1", "m/s")}},
      {"translational_reference",
       "Translational Reference",
       "Frame that doesn't move: velocity 0.",
       {left("r", T)},
       {},
       true},
  });
}

}  // namespace kinemo::physical
