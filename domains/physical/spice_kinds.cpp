// The elements of netlists. Ports are named n1, n2, ... in the order of the nodes on the element's card; parameters
// keep what the card says: `value` as an expression, the rest as texts. In `text` and `model_card`, `{k}` stands for
// element k of the row `text_values` or `model_values`, counted from 1.

#include "domains/physical/kinds.hpp"

#include <iterator>
#include <utility>

namespace kinemo::physical {

namespace {

/// Longest list of nodes that a polynomial source may have; far beyond what any netlist holds.
constexpr std::size_t most_terminals = 100'000;

Port node(std::size_t position, Side side, int rank = 0) {
  const std::string number = std::to_string(position + 1);
  return {"n" + number, side, "electrical", number, rank};
}

Port on_alternate_sides(std::size_t position) {
  return node(position, position % 2 == 0 ? Side::left : Side::right);
}

std::vector<Port> nodes(std::size_t count) {
  std::vector<Port> ports;
  for (std::size_t i = 0; i < count; ++i) ports.push_back(on_alternate_sides(i));
  return ports;
}

/// The two nodes of one end on the left, those of the other on the right.
std::vector<Port> line_nodes() {
  return {node(0, Side::left), node(1, Side::left), node(2, Side::right), node(3, Side::right)};
}

/// What is controlled on the right, what controls it on the left.
Port controlled_node(std::size_t position) {
  return node(position, position < 2 ? Side::right : Side::left);
}

/// Of a transistor of collector or drain, base or gate, emitter or source, and substrate or bulk: the second on the
/// left, the others on the right with the fourth in the middle. More nodes follow on the left.
Port transistor_node(std::size_t position) {
  constexpr int ranks[] = {0, 0, 2, 1};
  if (position >= std::size(ranks)) return node(position, Side::left);
  return node(position, position == 1 ? Side::left : Side::right, ranks[position]);
}

std::vector<Port> transistor_nodes() {
  return {transistor_node(0), transistor_node(1), transistor_node(2)};
}

/// Images of the two polarities, and one for model cards that don't tell it.
std::vector<Icon> polar(const char* n_type, const char* n_file, const char* p_type, const char* p_file,
                        const char* neutral_file) {
  return {{n_file, false, 0, n_type}, {p_file, false, 0, p_type}, {neutral_file, false}};
}

/// Those that need a count of ports, and a box for other counts.
std::vector<Icon> for_counts(std::vector<std::pair<std::size_t, std::vector<Icon>>> choices) {
  std::vector<Icon> icons;
  for (auto& [count, choice] : choices) {
    for (Icon& icon : choice) {
      icon.ports = count;
      icons.push_back(std::move(icon));
    }
  }
  icons.push_back({"box.svg"});
  return icons;
}

Parameter value(const char* prompt, const char* unit) {
  return number("value", prompt, "0", unit);
}

Parameter terminals(const char* count) {
  return text("terminals", "Number of nodes", count);
}

PortRule counted(std::size_t minimum, std::size_t maximum, Port (*port)(std::size_t), std::size_t step = 1) {
  return {"terminals", minimum, maximum, step, port};
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
       {value("Resistance", "Ohm"), model, model_card, rest},
       false,
       drawn_as("resistor.svg")},
      {"spice/capacitor",
       "C",
       "Capacitor of a netlist.",
       nodes(2),
       {value("Capacitance", "F"), model, model_card, rest},
       false,
       drawn_as("capacitor.svg")},
      {"spice/inductor",
       "L",
       "Inductor of a netlist.",
       nodes(2),
       {value("Inductance", "H"), model, model_card, rest},
       false,
       drawn_as("inductor.svg")},
      {"spice/mutual_inductor",
       "K",
       "Coupling of inductors of a netlist, which it names.",
       {},
       {value("Coupling coefficient", "1"), elements},
       false,
       drawn_as("inductor_coupling.svg")},
      {"spice/switch",
       "S",
       "Voltage-controlled switch of a netlist.",
       nodes(4),
       {model, model_card, rest},
       false,
       drawn_as("switch.svg")},
      {"spice/current_switch",
       "W",
       "Current-controlled switch of a netlist.",
       nodes(2),
       {elements, model, model_card, rest},
       false,
       drawn_as("current_switch.svg")},
      {"spice/transmission_line",
       "T",
       "Lossless transmission line of a netlist.",
       line_nodes(),
       {rest},
       false,
       drawn_as("transmission_line.svg")},
      {"spice/lossy_line",
       "O",
       "Lossy transmission line of a netlist.",
       line_nodes(),
       {model, model_card, rest},
       false,
       drawn_as("lossy_transmission_line.svg")},
      {"spice/txl_line",
       "Y",
       "Single lossy transmission line of a netlist.",
       line_nodes(),
       {model, model_card, rest},
       false,
       drawn_as("lossy_transmission_line.svg")},
      {"spice/rc_line",
       "U",
       "Uniform distributed RC line of a netlist.",
       nodes(3),
       {model, model_card, rest},
       false,
       drawn_as("rc_line.svg")},
  };
}

std::vector<BlockKind> source_kinds() {
  constexpr std::size_t many = most_terminals;
  return {
      {"spice/voltage_source",
       "V",
       "Voltage source of a netlist.",
       nodes(2),
       {value("DC voltage", "V"), rest},
       false,
       drawn_as("voltage_source.svg")},
      {"spice/current_source",
       "I",
       "Current source of a netlist.",
       nodes(2),
       {value("DC current", "A"), rest},
       false,
       drawn_as("current_source.svg")},
      {"spice/behavioral_source",
       "B",
       "Source of a netlist that follows an expression.",
       nodes(2),
       {rest},
       false,
       drawn_as("behavioral_source.svg")},
      {.name = "spice/vcvs",
       .title = "E",
       .text = "Voltage-controlled voltage source of a netlist.",
       .parameters = {terminals("4"), value("Gain", "1"), rest},
       .icons = for_counts(
           {{4, drawn_as("voltage_controlled_voltage_source.svg")}, {2, drawn_as("behavioral_voltage_output.svg")}}),
       .rule = counted(2, many, controlled_node, 2)},
      {.name = "spice/vccs",
       .title = "G",
       .text = "Voltage-controlled current source of a netlist.",
       .parameters = {terminals("4"), value("Transconductance", "S"), rest},
       .icons = for_counts(
           {{4, drawn_as("voltage_controlled_current_source.svg")}, {2, drawn_as("behavioral_current_output.svg")}}),
       .rule = counted(2, many, controlled_node, 2)},
      {"spice/cccs",
       "F",
       "Current-controlled current source of a netlist.",
       nodes(2),
       {value("Gain", "1"), elements, rest},
       false,
       drawn_as("controlled_current_source.svg")},
      {"spice/ccvs",
       "H",
       "Current-controlled voltage source of a netlist.",
       nodes(2),
       {value("Transresistance", "Ohm"), elements, rest},
       false,
       drawn_as("controlled_voltage_source.svg")},
  };
}

std::vector<BlockKind> semiconductor_kinds() {
  return {
      {.name = "spice/diode",
       .title = "D",
       .text = "Diode of a netlist.",
       .parameters = {terminals("2"), value("Area factor", "1"), model, model_card, rest},
       .icons = for_counts({{2, drawn_as("diode.svg")}}),
       .rule = counted(2, 3, on_alternate_sides)},
      {.name = "spice/bjt",
       .title = "Q",
       .text = "Bipolar transistor of a netlist.",
       .parameters = {terminals("3"), value("Area factor", "1"), model, model_card, rest},
       .icons =
           for_counts({{3, polar("npn", "npn_transistor.svg", "pnp", "pnp_transistor.svg", "bipolar_transistor.svg")},
                       {4, polar("npn", "npn_transistor_substrate.svg", "pnp", "pnp_transistor_substrate.svg",
                                 "bipolar_transistor_substrate.svg")}}),
       .rule = counted(3, 5, transistor_node)},
      {.name = "spice/mosfet",
       .title = "M",
       .text = "Field-effect transistor with insulated gate of a netlist.",
       .parameters = {terminals("4"), model, model_card, rest},
       .icons = for_counts({{3, polar("nmos", "nmos.svg", "pmos", "pmos.svg", "mosfet.svg")},
                            {4, polar("nmos", "nmos_bulk.svg", "pmos", "pmos_bulk.svg", "mosfet_bulk.svg")}}),
       .rule = counted(3, 7, transistor_node)},
      {"spice/jfet",
       "J",
       "Junction field-effect transistor of a netlist.",
       transistor_nodes(),
       {value("Area factor", "1"), model, model_card, rest},
       false,
       polar("njf", "njfet.svg", "pjf", "pjfet.svg", "jfet.svg")},
      {"spice/mesfet",
       "Z",
       "Metal-semiconductor field-effect transistor of a netlist.",
       transistor_nodes(),
       {value("Area factor", "1"), model, model_card, rest},
       false,
       polar("nmf", "njfet.svg", "pmf", "pjfet.svg", "jfet.svg")},
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
