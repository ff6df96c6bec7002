// Electrical parts of the ordinary library as elements of a netlist, or as small groups of them that do exactly the
// same.

#include <algorithm>
#include <array>

#include "formats/spice/write_elements.hpp"

namespace kinemo::formats::spice {

namespace {

std::string braced(const std::string& expression) {
  return "{" + expression + "}";
}

void write_resistor(const ElementWriter& e) {
  e.card({e.name(), e.node("p"), e.node("n"), e.value("R", "Ohm")});
}

/// A conductance may be 0, so it is a source that its own voltage controls.
void write_conductor(const ElementWriter& e) {
  e.card({e.name(), e.node("p"), e.node("n"), e.node("p"), e.node("n"), e.value("G", "S")});
}

/// A series resistance and a parallel conductance, each where it isn't 0; gives the node behind the resistance.
std::string write_losses(const ElementWriter& e) {
  if (!e.is_zero("G_p")) {
    e.card({e.new_element('g', "p"), e.node("p"), e.node("n"), e.node("p"), e.node("n"), e.value("G_p", "S")});
  }
  if (e.is_zero("R_s")) {
    return e.node("p");
  }
  const std::string inner = e.new_node("s");
  e.card({e.new_element('r', "s"), e.node("p"), inner, e.value("R_s", "Ohm")});
  return inner;
}

std::string initial(const ElementWriter& e, const char* parameter, const char* unit) {
  return e.is_zero(parameter) ? std::string() : "ic=" + e.value(parameter, unit);
}

void write_capacitor(const ElementWriter& e) {
  const std::string from = write_losses(e);
  e.card({e.name(), from, e.node("n"), e.value("C", "F"), initial(e, "v_0", "V")});
}

void write_inductor(const ElementWriter& e) {
  const std::string from = write_losses(e);
  e.card({e.name(), from, e.node("n"), e.value("L", "H"), initial(e, "i_0", "A")});
}

void write_mutual_inductor(const ElementWriter& e) {
  const std::string first = e.new_element('l', "1");
  const std::string second = e.new_element('l', "2");
  e.card({first, e.node("p1"), e.node("n1"), e.value("L1", "H")});
  e.card({second, e.node("p2"), e.node("n2"), e.value("L2", "H")});
  e.card({e.name(), first, second, e.value("k", "1")});
}

void write_transformer(const ElementWriter& e) {
  const std::string inner = e.new_node("1");
  const std::string sensor = e.new_element('v', "1");
  e.card({sensor, e.node("p1"), inner, "dc 0"});
  e.card({e.name(), inner, e.node("n1"), e.node("p2"), e.node("n2"), e.value("ratio", "1")});
  e.card({e.new_element('f', "2"), e.node("n2"), e.node("p2"), sensor, e.value("ratio", "1")});
}

void write_gyrator(const ElementWriter& e) {
  const std::string conductance = e.value("G", "S");
  e.card({e.name(), e.node("p1"), e.node("n1"), e.node("p2"), e.node("n2"), conductance});
  e.card({e.new_element('g', "2"), e.node("n2"), e.node("p2"), e.node("p1"), e.node("n1"), conductance});
}

void write_transmission_line(const ElementWriter& e) {
  e.card({e.name(), e.node("p1"), e.node("n1"), e.node("p2"), e.node("n2"), "z0=" + e.value("Z_0", "Ohm"),
          "td=" + e.value("T_d", "s")});
}

/// The model's nominal temperature is that of the junction, so that the saturation current is as given.
void write_exponential_diode(const ElementWriter& e) {
  const std::string temperature = e.value("T", "degC");
  const std::string model =
      e.model("junction", "d is=" + e.value("I_s", "A") + " n=" + e.value("N", "1") + " tnom=" + temperature);
  e.card({e.name(), e.node("p"), e.node("n"), model, "temp=" + temperature});
}

void write_switch(const ElementWriter& e) {
  if (e.is_zero("G_open")) {
    e.problem("the parameter 'G_open' can't be written: a switch of a netlist conducts a little when it is open");
  }
  const std::string model =
      e.model("contact", "sw vt=" + e.value("V_t", "V") + " vh=0 ron=" + e.value("R_closed", "Ohm") +
                             " roff=" + braced("1/" + e.operand("G_open", "S")));
  e.card({e.name(), e.node("p"), e.node("n"), e.node("cp"), e.node("cn"), model});
}

/// The source's equation is v(o) - v(n) = v(o) - v(p), and what it takes from the output doesn't go to the input.
void write_op_amp(const ElementWriter& e) {
  const std::string inner = e.new_node("o");
  const std::string sensor = e.new_element('v', "o");
  e.card({sensor, e.node("o"), inner, "dc 0"});
  e.card({e.name(), inner, e.node("n"), e.node("o"), e.node("p"), "1"});
  e.card({e.new_element('f', "n"), e.node("n"), "0", sensor, "1"});
}

std::string limited(const ElementWriter& e, const char* function, const std::string& text, const char* limit) {
  return e.is_infinite(limit) ? text : std::string(function) + "(" + text + "," + e.value(limit, "V") + ")";
}

/// The limits are those of the source behind the output resistance.
void write_finite_gain_op_amp(const ElementWriter& e) {
  if (!e.is_infinite("R_in")) {
    e.card({e.new_element('r', "in"), e.node("p"), e.node("n"), e.value("R_in", "Ohm")});
  }
  const std::string source = e.is_zero("R_out") ? e.node("o") : e.new_node("o");
  const std::string gained = e.value("A", "1") + "*v(" + e.node("p") + "," + e.node("n") + ")";
  e.card({e.name(), source, e.node("ref"), "v=" + limited(e, "min", limited(e, "max", gained, "V_min"), "V_max")});
  if (!e.is_zero("R_out")) {
    e.card({e.new_element('r', "out"), source, e.node("o"), e.value("R_out", "Ohm")});
  }
}

void write_nothing(const ElementWriter&) {}

void write_ammeter(const ElementWriter& e) {
  e.card({e.name(), e.node("p"), e.node("n"), "dc 0"});
}

void write_voltage_source(const ElementWriter& e) {
  e.card({e.name(), e.node("p"), e.node("n"), "dc " + e.value("v", "V")});
}

void write_current_source(const ElementWriter& e) {
  e.card({e.name(), e.node("p"), e.node("n"), "dc " + e.value("i", "A")});
}

void write_sine(const ElementWriter& e, const char* unit) {
  e.card({e.name(), e.node("p"), e.node("n"),
          "sin(" + e.value("offset", unit) + " " + e.value("amplitude", unit) + " " + e.value("frequency", "Hz") +
              " 0 0 " + e.value("phase", "deg") + ")"});
}

void write_voltage_controlled(const ElementWriter& e, const char* unit) {
  e.card({e.name(), e.node("p"), e.node("n"), e.node("cp"), e.node("cn"), e.value("K", unit)});
}

void write_current_controlled(const ElementWriter& e, const char* unit) {
  const std::string sensor = e.new_element('v', "c");
  e.card({sensor, e.node("cp"), e.node("cn"), "dc 0"});
  e.card({e.name(), e.node("p"), e.node("n"), sensor, e.value("K", unit)});
}

/// In the order of the library.
constexpr std::array<WrittenKind, 22> electrical_kinds{{
    {"resistor", 'r', write_resistor},
    {"conductor", 'g', write_conductor},
    {"capacitor", 'c', write_capacitor},
    {"inductor", 'l', write_inductor},
    {"mutual_inductor", 'k', write_mutual_inductor},
    {"ideal_transformer", 'e', write_transformer},
    {"gyrator", 'g', write_gyrator},
    {"transmission_line", 't', write_transmission_line},
    {"exponential_diode", 'd', write_exponential_diode},
    {"switch", 's', write_switch},
    {"op_amp", 'e', write_op_amp},
    {"finite_gain_op_amp", 'b', write_finite_gain_op_amp},
    {"voltage_sensor", '\0', write_nothing},
    {"current_sensor", 'v', write_ammeter},
    {"voltage_source", 'v', write_voltage_source},
    {"current_source", 'i', write_current_source},
    {"ac_voltage_source", 'v', [](const ElementWriter& e) { write_sine(e, "V"); }},
    {"ac_current_source", 'i', [](const ElementWriter& e) { write_sine(e, "A"); }},
    {"voltage_controlled_voltage_source", 'e', [](const ElementWriter& e) { write_voltage_controlled(e, "1"); }},
    {"voltage_controlled_current_source", 'g', [](const ElementWriter& e) { write_voltage_controlled(e, "S"); }},
    {"current_controlled_voltage_source", 'h', [](const ElementWriter& e) { write_current_controlled(e, "Ohm"); }},
    {"current_controlled_current_source", 'f', [](const ElementWriter& e) { write_current_controlled(e, "1"); }},
}};

}  // namespace

const WrittenKind* find_electrical_kind(std::string_view type) {
  constexpr std::string_view area = "physical.";
  if (type.substr(0, area.size()) != area) {
    return nullptr;
  }
  const auto found =
      std::find_if(electrical_kinds.begin(), electrical_kinds.end(),
                   [name = type.substr(area.size())](const WrittenKind& kind) { return kind.type == name; });
  return found != electrical_kinds.end() ? &*found : nullptr;
}

std::string electrical_kind_names() {
  std::string names;
  for (const WrittenKind& kind : electrical_kinds) {
    names += (names.empty() ? "" : ", ") + std::string(kind.type);
  }
  return names;
}

}  // namespace kinemo::formats::spice
