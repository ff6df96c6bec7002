// The first look at the cards: which definitions there are and what belongs to each. Everything but the elements is
// read here; the cards of elements wait, since where their nodes end depends on models that may come later.
#pragma once

#include <cstdint>
#include <vector>

#include "formats/spice/card_reader.hpp"
#include "formats/spice/netlist.hpp"

namespace kinemo::formats::spice {

/// The card of an element or a call, not looked at yet.
struct ElementCard {
  const Card* card = nullptr;  ///< owned by the card list
  std::int32_t branch = -1;
};

/// The value of a parameter, function or condition, not looked at yet: the functions that it may call come in any
/// order.
struct PendingExpression {
  const Card* card = nullptr;
  std::size_t offset = 0;  ///< of the value in the card
  std::string text;        ///< of the value
};

struct PendingParameter {
  std::string name;
  PendingExpression value;
  bool formal = false;
};

struct PendingFunction {
  std::string name;
  std::vector<std::string> parameters;
  PendingExpression body;
};

struct PendingModel {
  std::string name;
  const Card* card = nullptr;
  std::size_t offset = 0;  ///< of what stands behind the name
};

/// What waits for the second look, for one definition.
struct DefinitionCards {
  std::vector<ElementCard> elements;
  std::vector<PendingParameter> parameters;
  std::vector<PendingFunction> functions;
  std::vector<PendingModel> models;
  std::vector<PendingExpression> conditions;  ///< one for each branch; without a card for `.else`
};

/// Fills the netlist's definitions, as far as that goes at the first look; the result has an entry for each.
std::vector<DefinitionCards> read_structure(const CardList& cards, Netlist& netlist, DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
