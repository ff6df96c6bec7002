// Voltage and current sources, constant, sinusoidal and controlled.

#include "domains/physical/kinds.hpp"

namespace kinemo::physical {

namespace {

constexpr char E[] = "electrical";

std::vector<Port> two_poles() {
  return {left("p", E, "+"), right("n", E, "-")};
}

/// The controlling pair on the left, the controlled one on the right.
std::vector<Port> controlled() {
  return {left("cp", E, "c+"), left("cn", E, "c-"), right("p", E, "+"), right("n", E, "-")};
}

std::vector<Parameter> sine(const char* amplitude, const char* unit) {
  return {number("amplitude", amplitude, "1", unit), number("offset", "Mean value", "0", unit),
          number("frequency", "Frequency", "50", "Hz"), number("phase", "Phase", "0", "rad")};
}

}  // namespace

std::vector<BlockKind> electrical_source_kinds() {
  return with_icons({
      {"voltage_source",
       "Voltage Source",
       "Ideal constant voltage from p to n.",
       two_poles(),
       {number("v", "Voltage", "1", "V")},
       false,
       drawn_as("voltage_source.svg")},
      {"current_source",
       "Current Source",
       "Ideal constant current, from p through the source to n.",
       two_poles(),
       {number("i", "Current", "1", "A")},
       false,
       drawn_as("current_source.svg")},
      {"ac_voltage_source", "AC Voltage Source", "Ideal sinusoidal voltage from p to n.", two_poles(),
       sine("Peak voltage", "V")},
      {"ac_current_source", "AC Current Source", "Ideal sinusoidal current, from p through the source to n.",
       two_poles(), sine("Peak current", "A"), false, drawn_as("ac_current_source.svg")},
      {"voltage_controlled_voltage_source",
       "Voltage-Controlled Voltage Source",
       "Voltage from p to n in proportion to the voltage from cp to cn.",
       controlled(),
       {number("K", "Gain", "1", "1")},
       false,
       drawn_as("voltage_controlled_voltage_source.svg")},
      {"voltage_controlled_current_source",
       "Voltage-Controlled Current Source",
       "Current from p to n in proportion to the voltage from cp to cn.",
       controlled(),
       {number("K", "Transconductance", "1", "S")},
       false,
       drawn_as("voltage_controlled_current_source.svg")},
      {"current_controlled_voltage_source",
       "Current-Controlled Voltage Source",
       "Voltage from p to n in proportion to the current from cp to cn.",
       controlled(),
       {number("K", "Transresistance", "1", "Ohm")},
       false,
       drawn_as("current_controlled_voltage_source.svg")},
      {"current_controlled_current_source",
       "Current-Controlled Current Source",
       "Current from p to n in proportion to the current from cp to cn.",
       controlled(),
       {number("K", "Gain", "1", "1")},
       false,
       drawn_as("current_controlled_current_source.svg")},
  });
}

}  // namespace kinemo::physical
