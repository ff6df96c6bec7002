// From files to cards: comments go, continuation lines are joined, includes and library sections are put in place, and
// control sections are kept aside. What is left to say about a netlist's meaning begins with the cards.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "formats/diagnostics.hpp"
#include "formats/spice/card.hpp"
#include "formats/spice/text_file.hpp"

namespace kinemo::formats::spice {

struct CardList {
  std::string title;
  std::vector<Card> cards;                             ///< lower case but for texts in double quotes
  std::vector<Card> control_sections;                  ///< the `.control` cards of the sections kept aside
  std::vector<std::shared_ptr<const TextFile>> files;  ///< owns what the places of the cards point to
};

/// The cards of a netlist. Mistakes of all files are reported; the cards are of use also then.
CardList read_cards(const std::shared_ptr<const TextFile>& top, DiagnosticList& diagnostics);

}  // namespace kinemo::formats::spice
