// Parts that stand in two areas of physics at once.

#include "domains/physical/kinds.hpp"
#include "domains/physical/model_settings.hpp"

namespace kinemo::physical {

namespace {

constexpr char E[] = "electrical";
constexpr char R[] = "rotational";
constexpr char T[] = "translational";
constexpr char H[] = "thermal";

std::vector<Port> poles_and(const char* mechanics) {
  return {left("p", E, "+"), left("n", E, "-"), right("r", mechanics, "R"), right("c", mechanics, "C")};
}

std::vector<Port> poles_and_heat() {
  return {left("p", E, "+"), right("n", E, "-"), right("h", H, "H")};
}

}  // namespace

std::vector<BlockKind> converter_kinds() {
  return with_icons({
      {"rotational_electromechanical_converter",
       "Rotational Electromechanical Converter",
       "Lossless motor or generator: v = K*w, torque = K*i.",
       poles_and(R),
       {number("K", "Constant of proportionality", "0.1", "V/(rad/s)")}},
      {"translational_electromechanical_converter",
       "Translational Electromechanical Converter",
       "Lossless linear motor or generator: v = K*velocity, force = K*i.",
       poles_and(T),
       {number("K", "Constant of proportionality", "0.1", "V/(m/s)")}},
      {"dc_motor",
       "DC Motor",
       "Permanent-magnet motor with armature resistance and inductance, inertia and bearing friction.",
       poles_and(R),
       {number("R", "Armature resistance", "3.9", "Ohm"), number("L", "Armature inductance", "12e-6", "H"),
        number("K", "Torque constant", "0.01", "N*m/A"), number("J", "Rotor inertia", "1e-6", "kg*m^2"),
        number("D", "Rotor damping", "1e-7", "N*m/(rad/s)")}},
      {"wheel_and_axle",
       "Wheel and Axle",
       "Ideal wheel: the velocity of its rim is radius times the speed of its axle.",
       {left("a", R, "A"), right("p", T, "P")},
       {number("radius", "Wheel radius", "0.05", "m")}},
      {"rack_and_pinion",
       "Rack and Pinion",
       "Ideal rack and pinion; the direction tells how the rack moves while the pinion turns in the positive sense.",
       {left("s", R, "S"), right("r", T, "R")},
       {number("radius", "Effective pinion radius", "0.1", "m"),
        choice("direction", "Rack moves", {"positive", "negative"})}},
      {"lead_screw",
       "Lead Screw",
       "Ideal screw and nut: the nut moves by lead in one turn of the screw.",
       {left("s", R, "S"), right("n", T, "N")},
       {number("lead", "Way of the nut in one turn", "0.01", "m"),
        choice("helix", "Helix", {"right-hand", "left-hand"})}},
      {"thermal_resistor",
       "Thermal Resistor",
       "Resistor whose resistance R*(1 + alpha*(T - T_ref)) depends on its temperature, and that heats port h.",
       poles_and_heat(),
       {number("R", "Resistance at the reference temperature", "1", "Ohm"),
        number("alpha", "Temperature coefficient", "3.9e-3", "1/K"),
        from_setting(reference_temperature_setting, "T_ref", "Reference temperature", "300.15", "K")}},
      {"heating_resistor",
       "Heating Resistor",
       "Constant resistor that gives all its electrical power as heat to port h.",
       poles_and_heat(),
       {number("R", "Resistance", "1", "Ohm")}},
      {"peltier_element",
       "Peltier Element",
       "Thermoelectric converter between its sides a and b: Seebeck effect, resistance and conduction.",
       {left("p", E, "+"), right("n", E, "-"), left("a", H, "A"), right("b", H, "B")},
       {number("alpha", "Seebeck coefficient", "0.05", "V/K"), number("R", "Resistance", "2", "Ohm"),
        number("K", "Thermal conductance", "0.5", "W/K")}},
  });
}

}  // namespace kinemo::physical
