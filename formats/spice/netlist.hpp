// A netlist after reading: definitions with their elements and calls, names resolved and expressions read, but not
// expanded. It owns all texts and keeps the place of everything that a message may be about.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "formats/spice/card.hpp"
#include "formats/spice/element_kinds.hpp"
#include "formats/spice/expression.hpp"

namespace kinemo::formats::spice {

struct TextFile;

/// Index of a name in the netlist's table of names.
using NameId = std::uint32_t;

/// Each name once, in lower case.
class NameTable {
 public:
  NameTable() { add("0"); }
  NameId add(std::string_view name);
  const std::string& text(NameId id) const { return m_texts[id]; }
  std::size_t size() const { return m_texts.size(); }

 private:
  std::deque<std::string> m_texts;
  std::unordered_map<std::string_view, NameId> m_ids;
};

/// The name of the node "0", also for "gnd".
inline constexpr NameId ground = 0;

using SharedExpression = std::shared_ptr<const Expression>;

/// A piece of a card's text: as it stands, or an expression.
struct TextPiece {
  std::string literal;          ///< of an expression, what stays where it has no value
  SharedExpression expression;  ///< null for a literal
};
using TextPieces = std::vector<TextPiece>;

struct Definition;

struct Model {
  std::string name;
  TextPieces card;  ///< what stands behind the name: type and parameters
  Place place;
  const Definition* definition = nullptr;  ///< that it stands in
};

struct Parameter {
  std::string name;
  SharedExpression value;
  Place place;
  bool formal = false;  ///< stands on the `.subckt` card, not on a `.param` card
};

/// One branch of an `.if` section.
struct Branch {
  std::int32_t parent = -1;    ///< the branch around the section, -1 for none
  std::int32_t previous = -1;  ///< the branch before it in the same section
  SharedExpression condition;  ///< null for `.else`
  Place place;
};

struct Element {
  NameId name = 0;
  std::int32_t branch = -1;
  const ElementKind* kind = nullptr;
  const Model* model = nullptr;  ///< owned by its definition
  std::vector<NameId> nodes;
  SharedExpression value;  ///< null where the card has none
  std::string elements;
  TextPieces text;
  Place place;
};

struct Call {
  NameId name = 0;
  std::int32_t branch = -1;
  std::int32_t definition = -1;  ///< index in the netlist, -1 for one that isn't known or can't be called like this
  std::vector<NameId> nodes;
  std::vector<Parameter> parameters;
  std::string target;  ///< name of the definition as it was called
  Place place;
};

/// An element whose card has mistakes. Only who shows what could be read of a netlist looks at it.
struct FaultyElement {
  NameId name = 0;
  std::int32_t branch = -1;
  const ElementKind* kind = nullptr;  ///< null for one that isn't supported
  std::vector<NameId> nodes;          ///< as far as they are known
  Place place;
};

/// The lines of a card with mistakes, from the place on.
struct FaultyCard {
  Place place;
  std::uint32_t last_line = 0;
};

/// A `.subckt`, or the netlist's top level.
struct Definition {
  std::string name;
  std::int32_t parent = -1;  ///< the definition around it, -1 for the top level
  bool used = false;         ///< called from the top, through any number of levels
  Place place;
  std::vector<NameId> formals;
  std::vector<Parameter> parameters;  ///< each name once, so ordered that what a value needs comes before it
  std::map<std::string, Function> functions;
  std::map<std::string, Model> models;
  std::map<std::string, std::int32_t> definitions;
  std::vector<Branch> branches;
  std::vector<Element> elements;
  std::vector<Call> calls;
  std::vector<FaultyElement> faulty;
  std::vector<NameId> reached_globals;  ///< ground and global nodes used here or below, in ascending order
};

struct Netlist {
  std::string title;
  NameTable names;
  std::deque<Definition> definitions;  ///< the top level first
  std::set<NameId> globals;            ///< without ground
  std::vector<std::shared_ptr<const TextFile>> files;
  std::vector<FaultyCard> faulty_cards;  ///< of elements and calls
  bool too_large = false;                ///< to be expanded

  const Definition& top() const { return definitions.front(); }
  bool is_global(NameId node) const { return node == ground || globals.count(node) != 0; }
};

}  // namespace kinemo::formats::spice
