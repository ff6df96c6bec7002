// Passive electrical parts, semiconductors, sensors and the electrical reference.

#include "domains/physical/kinds.hpp"
#include "domains/physical/model_settings.hpp"

namespace kinemo::physical {

namespace {

constexpr char E[] = "electrical";

std::vector<Port> two_poles() {
  return {left("p", E, "+"), right("n", E, "-")};
}

std::vector<Port> two_port() {
  return {left("p1", E, "+"), left("n1", E, "-"), right("p2", E, "+"), right("n2", E, "-")};
}

std::vector<BlockKind> passive_kinds() {
  return {
      {"resistor", "Resistor", "Ideal resistor: v = R*i.", two_poles(), {number("R", "Resistance", "1", "Ohm")}},
      {"conductor", "Conductor", "Ideal conductor: i = G*v.", two_poles(), {number("G", "Conductance", "1", "S")}},
      {"capacitor",
       "Capacitor",
       "Capacitor with losses: i = C*dv/dt in series with R_s, both in parallel with G_p.",
       two_poles(),
       {number("C", "Capacitance", "1e-6", "F"), number("R_s", "Series resistance", "0", "Ohm"),
        number("G_p", "Parallel conductance", "0", "S"), number("v_0", "Initial voltage", "0", "V")}},
      {"inductor",
       "Inductor",
       "Inductor with losses: v = L*di/dt in series with R_s, both in parallel with G_p.",
       two_poles(),
       {number("L", "Inductance", "1e-3", "H"), number("R_s", "Series resistance", "0", "Ohm"),
        number("G_p", "Parallel conductance", "0", "S"), number("i_0", "Initial current", "0", "A")}},
      {"mutual_inductor",
       "Mutual Inductor",
       "Two coupled inductors with the mutual inductance k*sqrt(L1*L2).",
       two_port(),
       {number("L1", "Inductance of winding 1", "1e-3", "H"), number("L2", "Inductance of winding 2", "1e-3", "H"),
        number("k", "Coupling coefficient, at most 1", "0.9", "1")},
       false,
       drawn_as("mutual_inductor.svg")},
      {"ideal_transformer",
       "Ideal Transformer",
       "Lossless transformer: v1 = ratio*v2, i2 = ratio*i1.",
       two_port(),
       {number("ratio", "Winding ratio", "1", "1")},
       false,
       drawn_as("ideal_transformer.svg")},
      {"gyrator",
       "Gyrator",
       "Lossless gyrator: i1 = G*v2, i2 = G*v1.",
       two_port(),
       {number("G", "Gyration conductance", "1", "S")},
       false,
       drawn_as("gyrator.svg")},
      {"transmission_line",
       "Transmission Line",
       "Lossless transmission line of a fixed delay.",
       two_port(),
       {number("Z_0", "Characteristic impedance", "50", "Ohm"), number("T_d", "Delay", "1e-9", "s")},
       false,
       drawn_as("transmission_line.svg")},
  };
}

std::vector<BlockKind> active_kinds() {
  return {
      {"diode",
       "Diode",
       "Diode of two straight lines: open below the forward voltage, a small resistance above.",
       two_poles(),
       {number("V_f", "Forward voltage", "0.6", "V"), number("R_on", "Resistance when on", "0.3", "Ohm"),
        number("G_off", "Conductance when off", "1e-8", "S")},
       false,
       drawn_as("diode.svg")},
      {"exponential_diode",
       "Exponential Diode",
       "Diode by the Shockley equation: i = I_s*(exp(v/(N*V_t)) - 1).",
       two_poles(),
       {number("I_s", "Saturation current", "1e-14", "A"), number("N", "Emission coefficient", "1", "1"),
        from_setting(reference_temperature_setting, "T", "Temperature of the junction", "300.15", "K")},
       false,
       drawn_as("diode.svg")},
      {"switch",
       "Switch",
       "Switch between p and n, closed while the voltage from cp to cn is above the threshold.",
       {left("p", E, "+"), right("n", E, "-"), left("cp", E, "c+"), right("cn", E, "c-")},
       {number("V_t", "Threshold", "0.5", "V"), number("R_closed", "Resistance when closed", "0.01", "Ohm"),
        number("G_open", "Conductance when open", "1e-8", "S")}},
      {"op_amp",
       "Op-Amp",
       "Ideal operational amplifier: no input current, no voltage between the inputs; the output is against ground.",
       {left("p", E, "+"), left("n", E, "-"), right("o", E, "out")},
       {},
       false,
       drawn_as("op_amp.svg")},
      {"finite_gain_op_amp",
       "Finite-Gain Op-Amp",
       "Operational amplifier with gain, input and output resistance and a limited output.",
       {left("p", E, "+"), left("n", E, "-"), right("o", E, "out"), right("ref", E, "ref")},
       {number("A", "Gain", "1000", "1"), limit("R_in", "Input resistance", "1e6", "Ohm"),
        number("R_out", "Output resistance", "100", "Ohm"), limit("V_min", "Lowest output", "-15", "V"),
        limit("V_max", "Highest output", "15", "V")},
       false,
       drawn_as("finite_gain_op_amp.svg")},
      {"voltage_sensor", "Voltage Sensor", "Ideal voltmeter: carries no current.", two_poles()},
      {"current_sensor", "Current Sensor", "Ideal ammeter: has no voltage drop.", two_poles()},
      {"electrical_reference",
       "Electrical Reference",
       "Ground: the point of potential 0 of an electrical network.",
       {left("g", E)},
       {},
       true},
  };
}

}  // namespace

std::vector<BlockKind> electrical_kinds() {
  std::vector<BlockKind> kinds = passive_kinds();
  for (BlockKind& kind : active_kinds()) kinds.push_back(std::move(kind));
  return with_icons(std::move(kinds));
}

}  // namespace kinemo::physical
