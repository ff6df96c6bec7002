// A card of a netlist: one statement, its continuation lines joined. It knows where each of its characters stood.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "formats/diagnostics.hpp"

namespace kinemo::formats::spice {

struct TextFile;

/// A place in one of the files of a netlist; small, since every element has one. Line 0: none.
struct Place {
  const TextFile* file = nullptr;  ///< owned by the reading or the netlist
  std::uint32_t line = 0;
  std::uint32_t column = 0;
};

SourcePlace source_place(const Place& place);

/// One statement of a netlist, comments removed and lines joined by a blank.
class Card {
 public:
  Card() = default;
  Card(std::string_view text, const Place& place) : m_text(text), m_first(place) {}

  /// Appends a continuation line.
  void append(std::string_view text, const Place& place);
  /// ASCII letters outside double quotes become lower case and micro signs a `u`, as the simulator has it.
  void normalize();

  const std::string& text() const { return m_text; }
  /// Whether a `$` behind a blank cut one of its lines, which other simulators take for the start of a name.
  bool cut_at_dollar() const { return m_cut_at_dollar; }
  void set_cut_at_dollar() { m_cut_at_dollar = true; }
  /// Place of the character at `offset`.
  Place place(std::size_t offset = 0) const;

 private:
  struct Piece {
    std::size_t offset;
    Place place;
  };

  void replace_micro_signs();

  std::string m_text;
  Place m_first;
  std::vector<Piece> m_continuations;
  bool m_cut_at_dollar = false;
};

/// Reads a card from left to right. Blanks, commas and parentheses separate words; an expression in braces or single
/// quotes and a text in double quotes are one word each.
class CardCursor {
 public:
  explicit CardCursor(const Card& card, std::size_t offset = 0) : m_card(&card), m_at(offset) {}

  /// The next word, empty at the end. An equals sign is a word of its own.
  std::string_view next();
  std::string_view peek() const;
  /// Offset at which the next word begins; the card's length at the end.
  std::size_t offset() const;
  bool at_end() const { return offset() == m_card->text().size(); }
  /// Whether the word after the next one is an equals sign, so that the next one names a parameter.
  bool at_assignment() const;
  /// Consumes an equals sign, if there is one.
  bool skip_equals();
  /// The value of a parameter: an expression in braces or quotes, or all up to the next blank outside parentheses.
  /// With `joined`, blanks around operators belong to the value.
  std::string_view next_value(bool joined);
  /// All that is left, without blanks at either end.
  std::string_view rest() const;
  Place place() const { return m_card->place(offset()); }
  const Card& card() const { return *m_card; }

 private:
  std::size_t skip_separators(std::size_t at) const;
  std::size_t skip_closing(std::size_t at) const;
  std::size_t word_end(std::size_t begin) const;
  std::size_t value_end(std::size_t begin) const;
  bool continues_at(std::size_t end, std::size_t& next) const;

  const Card* m_card;
  std::size_t m_at;
};

bool is_blank(char c);
/// Whether the word stands in braces or quotes.
bool is_enclosed(std::string_view word);
/// What stands inside of the braces or quotes that enclose all of the word; the word itself otherwise.
std::string_view enclosed_text(std::string_view word);
std::string_view trimmed(std::string_view text);
/// The first character of a text in UTF-8, all of its bytes.
std::string_view first_character(std::string_view text);
std::string lower_case(std::string_view text);

}  // namespace kinemo::formats::spice
