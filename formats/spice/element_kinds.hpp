// The elements of a netlist and the block kinds of the physical domain that stand for them: one row for each letter,
// constant for the life of the program. Both the reader and the domain's library of blocks follow this table.
//
// A kind has one electrical port for each node, named n1, n2, ... in the order of the card. Where the count of nodes
// varies, the block parameter `terminals` tells it. Other block parameters, each only where the row lists it:
//   value       expression: the value of a passive part, the DC value of a source, the gain of a linear controlled
//               source, the area of a junction; "0" where the card gives none
//   model       text: name of the .model card as the netlist has it
//   model_card  text: what that card says behind its name, its type first
//   elements    text: names, separated by blanks, of the controlling sources or of the coupled inductors
//   text        text: the rest of the card as it stands (waveform, expression, further parameters)
// Beside `text` and `model_card` stand the rows `text_values` and `model_values`, which the table leaves out: {k} in the
// text is element k of its row, counted from 1. No other braces in it hold digits alone.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace kinemo::formats::spice {

/// Where the rest of an element's card after its nodes begins, and what it holds.
enum class CardShape {
  passive,     ///< [value] [model] [name=value ...]
  coupling,    ///< inductor inductor ... value
  source,      ///< [DC] [value] [waveform ...]
  behavioral,  ///< v=expression or i=expression
  modelled,    ///< model [value] [name=value ...]; nodes run up to the model's name
  controlled,  ///< E, G: nodes of the control and gain, POLY or an expression
  by_source,   ///< F, H: controlling source(s) and gain
  by_switch,   ///< W: controlling source and model
  parameters,  ///< T: name=value ...
};

struct ElementKind {
  char letter;             ///< lower case
  std::string_view block;  ///< prototype of the block, `physical/spice/...`
  CardShape shape;
  std::size_t min_nodes;
  std::size_t max_nodes;        ///< `unlimited_nodes` for POLY forms
  std::string_view parameters;  ///< names of the block parameters, separated by blanks
};

inline constexpr std::size_t unlimited_nodes = static_cast<std::size_t>(-1);

inline constexpr std::array<ElementKind, 22> element_kinds{{
    {'b', "physical/spice/behavioral_source", CardShape::behavioral, 2, 2, "text"},
    {'c', "physical/spice/capacitor", CardShape::passive, 2, 2, "value model model_card text"},
    {'d', "physical/spice/diode", CardShape::modelled, 2, 3, "terminals value model model_card text"},
    {'e', "physical/spice/vcvs", CardShape::controlled, 2, unlimited_nodes, "terminals value text"},
    {'f', "physical/spice/cccs", CardShape::by_source, 2, 2, "value elements text"},
    {'g', "physical/spice/vccs", CardShape::controlled, 2, unlimited_nodes, "terminals value text"},
    {'h', "physical/spice/ccvs", CardShape::by_source, 2, 2, "value elements text"},
    {'i', "physical/spice/current_source", CardShape::source, 2, 2, "value text"},
    {'j', "physical/spice/jfet", CardShape::modelled, 3, 3, "value model model_card text"},
    {'k', "physical/spice/mutual_inductor", CardShape::coupling, 0, 0, "value elements"},
    {'l', "physical/spice/inductor", CardShape::passive, 2, 2, "value model model_card text"},
    {'m', "physical/spice/mosfet", CardShape::modelled, 3, 7, "terminals model model_card text"},
    {'o', "physical/spice/lossy_line", CardShape::modelled, 4, 4, "model model_card text"},
    {'q', "physical/spice/bjt", CardShape::modelled, 3, 5, "terminals value model model_card text"},
    {'r', "physical/spice/resistor", CardShape::passive, 2, 2, "value model model_card text"},
    {'s', "physical/spice/switch", CardShape::modelled, 4, 4, "model model_card text"},
    {'t', "physical/spice/transmission_line", CardShape::parameters, 4, 4, "text"},
    {'u', "physical/spice/rc_line", CardShape::modelled, 3, 3, "model model_card text"},
    {'v', "physical/spice/voltage_source", CardShape::source, 2, 2, "value text"},
    {'w', "physical/spice/current_switch", CardShape::by_switch, 2, 2, "elements model model_card text"},
    {'y', "physical/spice/txl_line", CardShape::modelled, 4, 4, "model model_card text"},
    {'z', "physical/spice/mesfet", CardShape::modelled, 3, 3, "value model model_card text"},
}};

/// The row of a lower-case letter, null where the dialect has no such element.
const ElementKind* find_element_kind(char letter);

}  // namespace kinemo::formats::spice
