// Reads the expressions of one definition's cards: what they call among the netlist's functions is put in place, and
// mistakes get their place in the file.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

class ExpressionReader {
 public:
  ExpressionReader(const Netlist& netlist, const Definition& definition, Reporter& reporter)
      : m_netlist(netlist), m_definition(definition), m_reporter(reporter) {}

  /// The value that stands at `offset` of the card: a number, an expression with or without its marks. Null after a
  /// mistake, which is reported.
  SharedExpression read(const Card& card, std::size_t offset, std::string_view text);

  /// The same without a report.
  SharedExpression try_read(std::string_view text, ExpressionError& error) const;

  /// Takes a text apart: expressions in braces or quotes, and names behind an equals sign, which may be parameters.
  /// With `all_names`, other names are looked up as well. What can't be read as an expression stays as it stands.
  TextPieces pieces(std::string_view text, bool all_names) const;

 private:
  const Function* find_function(const std::string& name) const;

  const Netlist& m_netlist;
  const Definition& m_definition;
  Reporter& m_reporter;
};

/// Whether the word may be the name of a parameter.
bool is_identifier(std::string_view word);

}  // namespace kinemo::formats::spice
