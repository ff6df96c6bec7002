// Reads the cards of elements of one definition, and hands on those of calls. The models of the whole netlist are known
// by then.
#pragma once

#include "formats/spice/expression_reader.hpp"
#include "formats/spice/netlist.hpp"
#include "formats/spice/reporter.hpp"

namespace kinemo::formats::spice {

class ElementReader {
 public:
  /// Adds to the `definition`, which is one of the netlist's.
  ElementReader(Netlist& netlist, Definition& definition, Reporter& reporter);

  void read(const Card& card, std::int32_t branch);

 private:
  void read_card(const Card& card, std::int32_t branch);
  void report_unsupported(const Element& element, char letter);
  /// Keeps the element: with the others, or with the faulty ones where there are more errors than before.
  void keep(Element element, std::size_t errors_before);
  void read_element(CardCursor& cursor, Element& element);

  /// Reads as many more.
  bool read_nodes(CardCursor& cursor, Element& element, std::size_t count);
  bool read_nodes_to_model(CardCursor& cursor, Element& element);
  bool read_model(CardCursor& cursor, Element& element);
  void report_node_count(const CardCursor& cursor, const Element& element, std::size_t found,
                         const std::string& needed);
  void report_unknown_model(const Element& element, std::string_view name, const Place& place);

  void read_passive(CardCursor& cursor, Element& element);
  void read_passive_word(CardCursor& cursor, Element& element, std::string& text);
  void read_source(CardCursor& cursor, Element& element);
  void read_behavioral(CardCursor& cursor, Element& element);
  void read_modelled(CardCursor& cursor, Element& element);
  void read_controlled(CardCursor& cursor, Element& element);
  void read_controlled_expression(CardCursor& cursor, Element& element);
  void read_by_source(CardCursor& cursor, Element& element);
  void read_by_switch(CardCursor& cursor, Element& element);
  void read_coupling(CardCursor& cursor, Element& element);
  void read_gain(CardCursor& cursor, Element& element);
  /// The number of dimensions of a POLY form, 0 after a mistake.
  std::size_t read_dimensions(CardCursor& cursor, const Element& element);
  void read_value(CardCursor& cursor, Element& element);
  void add_circuit_expression(Element& element, std::string_view text, const Place& place);
  void add_text(Element& element, std::string_view text, bool all_names = false);
  void add_waveform(Element& element, std::string_view before, std::string_view behind);

  const std::string& name(const Element& element) const { return m_netlist.names.text(element.name); }

  Netlist& m_netlist;
  Definition& m_definition;
  Reporter& m_reporter;
  ExpressionReader m_expressions;
};

}  // namespace kinemo::formats::spice
