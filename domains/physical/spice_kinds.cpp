// The elements of netlists. Ports are named n1, n2, ... in the order of the nodes on the element's card; parameters
// keep what the card says: `value` as an expression, the rest as texts. In `text` and `model_card`, `{k}` stands for
// element k of the row `text_values` or `model_values`, counted from 1.

#include "domains/physical/kinds.hpp"

namespace kinemo::physical {

namespace {

/// Longest list of nodes that a polynomial source may have; far beyond what any netlist holds.
constexpr std::size_t most_terminals = 100'000;

Port spice_port(std::size_t position) {
  return {"n" + std::to_string(position + 1), position % 2 == 0 ? Side::left : Side::right, "electrical",
          std::to_string(position + 1)};
}

std::vector<Port> nodes(std::size_t count) {
  std::vector<Port> ports;
  for (std::size_t i = 0; i < count; ++i) ports.push_back(spice_port(i));
  return ports;
}

Parameter value(const char* prompt, const char* unit) {
  return number("value", prompt, "0", unit);
}

Parameter terminals(const char* count) {
  return text("terminals", "Number of nodes", count);
}

PortRule counted(std::size_t minimum, std::size_t maximum, std::size_t step = 1) {
  return {"terminals", minimum, maximum, step, spice_port};
}

const Parameter model = text("model", "Name of the model card");
const Parameter model_card = text("model_card", "Model card: type and parameters");
const Parameter rest = text("text", "Rest of the card");
const Parameter elements = text("elements", "Names of the controlling or coupled elements");

std::vector<BlockKind> passive_kinds() {
  return {
      {"spice/resistor",
       "R",
       "Resistor of a netlist.",
       nodes(2),
       {value("Resistance", "Ohm"), model, model_card, rest}},
      {"spice/capacitor",
       "C",
       "Capacitor of a netlist.",
       nodes(2),
       {value("Capacitance", "F"), model, model_card, rest}},
      {"spice/inductor", "L", "Inductor of a netlist.", nodes(2), {value("Inductance", "H"), model, model_card, rest}},
      {"spice/mutual_inductor",
       "K",
       "Coupling of inductors of a netlist, which it names.",
       {},
       {value("Coupling coefficient", "1"), elements}},
      {"spice/switch", "S", "Voltage-controlled switch of a netlist.", nodes(4), {model, model_card, rest}},
      {"spice/current_switch",
       "W",
       "Current-controlled switch of a netlist.",
       nodes(2),
       {elements, model, model_card, rest}},
      {"spice/transmission_line", "T", "Lossless transmission line of a netlist.", nodes(4), {rest}},
      {"spice/lossy_line", "O", "Lossy transmission line of a netlist.", nodes(4), {model, model_card, rest}},
      {"spice/txl_line", "Y", "Single lossy transmission line of a netlist.", nodes(4), {model, model_card, rest}},
      {"spice/rc_line", "U", "Uniform distributed RC line of a netlist.", nodes(3), {model, model_card, rest}},
  };
}

std::vector<BlockKind> source_kinds() {
  constexpr std::size_t many = most_terminals;
  return {
      {"spice/voltage_source", "V", "Voltage source of a netlist.", nodes(2), {value("DC voltage", "V"), rest}},
      {"spice/current_source", "I", "Current source of a netlist.", nodes(2), {value("DC current", "A"), rest}},
      {"spice/behavioral_source", "B", "Source of a netlist that follows an expression.", nodes(2), {rest}},
      {.name = "spice/vcvs",
       .title = "E",
       .text = "Voltage-controlled voltage source of a netlist.",
       .parameters = {terminals("4"), value("Gain", "1"), rest},
       .rule = counted(2, many, 2)},
      {.name = "spice/vccs",
       .title = "G",
       .text = "Voltage-controlled current source of a netlist.",
       .parameters = {terminals("4"), value("Transconductance", "S"), rest},
       .rule = counted(2, many, 2)},
      {"spice/cccs",
       "F",
       "Current-controlled current source of a netlist.",
       nodes(2),
       {value("Gain", "1"), elements, rest}},
      {"spice/ccvs",
       "H",
       "Current-controlled voltage source of a netlist.",
       nodes(2),
       {value("Transresistance", "Ohm"), elements, rest}},
  };
}

std::vector<BlockKind> semiconductor_kinds() {
  return {
      {.name = "spice/diode",
       .title = "D",
       .text = "Diode of a netlist.",
       .parameters = {terminals("2"), value("Area factor", "1"), model, model_card, rest},
       .rule = counted(2, 3)},
      {.name = "spice/bjt",
       .title = "Q",
       .text = "Bipolar transistor of a netlist.",
       .parameters = {terminals("3"), value("Area factor", "1"), model, model_card, rest},
       .rule = counted(3, 5)},
      {.name = "spice/mosfet",
       .title = "M",
       .text = "Field-effect transistor with insulated gate of a netlist.",
       .parameters = {terminals("4"), model, model_card, rest},
       .rule = counted(3, 7)},
      {"spice/jfet",
       "J",
       "Junction field-effect transistor of a netlist.",
       nodes(3),
       {value("Area factor", "1"), model, model_card, rest}},
      {"spice/mesfet",
       "Z",
       "Metal-semiconductor field-effect transistor of a netlist.",
       nodes(3),
       {value("Area factor", "1"), model, model_card, rest}},
  };
}

/// Behind each text of a card, the numbers that its marks stand for.
void add_rows(BlockKind& kind) {
  std::vector<Parameter> parameters;
  for (Parameter& parameter : kind.parameters) {
    const std::string name = parameter.name;
    parameters.push_back(std::move(parameter));
    if (name == "model_card") parameters.push_back(row("model_values", "Numbers in the model card"));
    if (name == "text") parameters.push_back(row("text_values", "Numbers in the rest of the card"));
  }
  kind.parameters = std::move(parameters);
}

}  // namespace

std::vector<BlockKind> spice_kinds() {
  std::vector<BlockKind> kinds = passive_kinds();
  for (BlockKind& kind : source_kinds()) kinds.push_back(std::move(kind));
  for (BlockKind& kind : semiconductor_kinds()) kinds.push_back(std::move(kind));
  for (BlockKind& kind : kinds) add_rows(kind);
  return kinds;
}

}  // namespace kinemo::physical
