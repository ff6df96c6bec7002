// Heat. Positive heat flows from port a to port b.

#include "domains/physical/kinds.hpp"
#include "domains/physical/model_settings.hpp"

namespace kinemo::physical {

namespace {

constexpr char T[] = "thermal";

std::vector<Port> two_sides() {
  return {left("a", T, "A"), right("b", T, "B")};
}

}  // namespace

std::vector<BlockKind> thermal_kinds() {
  return with_icons({
      {"thermal_mass",
       "Thermal Mass",
       "Body that stores heat: Q = mass*c_p*dT/dt.",
       {left("a", T, "A")},
       {number("mass", "Mass", "1", "kg"), number("c_p", "Specific heat", "447", "J/(kg*K)"),
        from_setting(initial_temperature_setting, "T_0", "Initial temperature", "300.15", "K")}},
      {"conduction",
       "Conductive Heat Transfer",
       "Heat through a layer by Fourier's law: Q = k*area/thickness*(T_a - T_b).",
       two_sides(),
       {number("area", "Area", "1e-4", "m^2"), number("thickness", "Thickness", "0.1", "m"),
        number("k", "Thermal conductivity", "401", "W/(m*K)")}},
      {"convection",
       "Convective Heat Transfer",
       "Heat over a surface by Newton's law: Q = h*area*(T_a - T_b).",
       two_sides(),
       {number("area", "Area", "1e-4", "m^2"), number("h", "Heat transfer coefficient", "20", "W/(m^2*K)")}},
      {"radiation",
       "Radiative Heat Transfer",
       "Heat between two surfaces by the Stefan-Boltzmann law: Q = k*area*(T_a^4 - T_b^4).",
       two_sides(),
       {number("area", "Area", "1e-4", "m^2"), number("k", "Radiation coefficient", "4e-8", "W/(m^2*K^4)")}},
      {"thermal_resistance",
       "Thermal Resistance",
       "Ideal thermal resistance: T_a - T_b = R*Q.",
       two_sides(),
       {number("R", "Thermal resistance", "1", "K/W")}},
      {"heat_flow_source",
       "Heat Flow Source",
       "Ideal constant heat flow from a to b.",
       two_sides(),
       {number("Q", "Heat flow", "1", "W")}},
      {"temperature_source",
       "Temperature Source",
       "Ideal constant temperature difference from a to b.",
       two_sides(),
       {number("T", "Temperature difference", "293.15", "K")}},
      {"thermal_reference", "Thermal Reference", "Point of temperature 0 K.", {left("a", T)}, {}, true},
  });
}

}  // namespace kinemo::physical
