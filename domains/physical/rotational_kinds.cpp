// Mechanics of rotation. Port r is the shaft, port c the case; positive torque turns r against c.

#include "domains/physical/kinds.hpp"

namespace kinemo::physical {

namespace {

constexpr char R[] = "rotational";

std::vector<Port> shaft_and_case() {
  return {left("r", R, "R"), right("c", R, "C")};
}

}  // namespace

std::vector<BlockKind> rotational_kinds() {
  return with_icons({
      {"inertia",
       "Inertia",
       "Body that rotates: torque = J*dw/dt.",
       {left("r", R, "R")},
       {number("J", "Moment of inertia", "0.01", "kg*m^2"), number("w_0", "Initial speed", "0", "rad/s")}},
      {"rotational_spring",
       "Rotational Spring",
       "Ideal torsion spring: torque = k*angle.",
       shaft_and_case(),
       {number("k", "Spring rate", "10", "N*m/rad"), number("angle_0", "Initial twist", "0", "rad")}},
      {"rotational_damper",
       "Rotational Damper",
       "Ideal viscous damper: torque = D*w.",
       shaft_and_case(),
       {number("D", "Damping coefficient", "0.001", "N*m/(rad/s)")}},
      {"rotational_friction",
       "Rotational Friction",
       "Friction between shaft and case: breakaway, Coulomb and viscous part.",
       shaft_and_case(),
       {number("T_breakaway", "Breakaway torque", "25", "N*m"), number("T_coulomb", "Coulomb torque", "20", "N*m"),
        number("w_breakaway", "Breakaway speed", "0.1", "rad/s"),
        number("D", "Viscous coefficient", "0.001", "N*m/(rad/s)")}},
      {"rotational_hard_stop",
       "Rotational Hard Stop",
       "Limits the angle between shaft and case by stiff stops.",
       shaft_and_case(),
       {limit("upper", "Upper bound", "0.1", "rad"), limit("lower", "Lower bound", "-0.1", "rad"),
        number("k", "Stiffness of the stops", "1e6", "N*m/rad"),
        number("D", "Damping of the stops", "0.01", "N*m/(rad/s)")}},
      {"gear_box",
       "Gear Box",
       "Ideal gear: the speed of the input shaft s is ratio times that of the output shaft o.",
       {left("s", R, "S"), right("o", R, "O")},
       {number("ratio", "Gear ratio", "5", "1"), choice("direction", "Output shaft rotates", {"same", "opposite"})}},
      {"torque_source",
       "Torque Source",
       "Ideal constant torque between shaft and case.",
       shaft_and_case(),
       {number("T", "Torque", "1", "N*m")}},
      {"angular_velocity_source",
       "Angular Velocity Source",
       "Ideal constant speed of the shaft against the case.",
       shaft_and_case(),
       {number("w", "Speed", "1", "rad/s")}},
      {"rotational_reference", "Rotational Reference", "Frame that doesn't rotate: speed 0.", {left("r", R)}, {}, true},
  });
}

}  // namespace kinemo::physical
