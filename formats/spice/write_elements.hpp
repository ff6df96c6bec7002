// How components are written as elements of a netlist: which types have a counterpart there, and what it is.
#pragma once

#include <initializer_list>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "formats/diagnostics.hpp"
#include "formats/spice/write_level.hpp"
#include "formats/spice/write_parameters.hpp"

namespace kinemo::formats::spice {

/// The lines of one definition, and what is needed to write them. Lives while its level is written.
struct LevelText {
  LevelText(LevelNodes level_nodes, LevelElements level_elements)
      : nodes(std::move(level_nodes)), elements(std::move(level_elements)) {}

  /// Adds a card, in lines of bearable length.
  void card(const std::string& text);

  LevelNodes nodes;
  LevelElements elements;
  std::string lines;
  std::set<std::string> models;  ///< names of those that the definition has a card of
};

/// The models of a netlist. Equal cards of one name are one model, different ones get different names. Cards stand at
/// the top, but in each definition that uses them where they depend on parameters.
class ModelCards {
 public:
  /// The name of the model; the card is added where it isn't there yet.
  const std::string& add(const std::string& name, const std::string& card, LevelText& level);
  /// The cards of the top.
  const std::string& lines() const { return m_lines; }

 private:
  UniqueNames m_taken;
  std::map<std::pair<std::string, std::string>, std::string> m_names;  ///< by lower-case name and card
  std::string m_lines;
};

/// What is the same for all levels.
struct WriteContext {
  const WrittenParameters& parameters;
  const SourceNames& source;
  DiagnosticList& diagnostics;
  const LevelNodes* top = nullptr;     ///< null while the top is named
  std::set<std::string> global_nodes;  ///< nodes of the top that texts of inner levels name
  ModelCards models;
  bool has_told_kinds = false;  ///< which kinds of blocks can be written
};

/// One component on its way into a netlist. What can't be said is reported and leaves the card incomplete.
class ElementWriter {
 public:
  ElementWriter(WriteContext& context, LevelText& level, const kmf::VnId& id, const gl::core::Component& component);

  std::string type() const { return std::string(m_component.type()); }
  const std::string& name() const { return m_level.elements.of(m_id); }
  std::string node(const char* connector) const { return m_level.nodes.at(m_id, connector); }
  /// All nodes in the order of the component's connectors.
  std::vector<std::string> nodes() const;
  std::string new_node(const std::string& suffix) const;
  /// A further element of a group, of the letter.
  std::string new_element(char letter, const std::string& suffix) const;

  bool has(const char* parameter) const;
  /// Whether the parameter is the number 0 and stays it.
  bool is_zero(const char* parameter) const { return constant(parameter) == 0.0; }
  /// Whether the parameter is infinite, so that what it limits has no limit.
  bool is_infinite(const char* parameter) const;
  /// The value in the unit as a card has it.
  std::string value(const char* parameter, const char* unit) const;
  /// The value in the unit as an operand of an expression.
  std::string operand(const char* parameter, const char* unit) const;
  /// A text with values in place of the marks for them, which the parameter `values` holds where there is one.
  std::string text(const char* parameter, const char* values) const;
  /// The same in the terms of this level: nodes and elements have the names that they are written with.
  std::string circuit_text(const char* parameter, const char* values) const;
  /// Names of elements, separated by blanks.
  std::string elements() const;
  /// The name of the component's model, whose card is written.
  std::string model() const;
  std::string model(const std::string& wanted, const std::string& card) const {
    return m_context.models.add(wanted, card, m_level);
  }

  /// Adds a card of these words; empty ones are left out.
  void card(std::initializer_list<std::string> words) const;
  Diagnostic& problem(const std::string& text) const;

 private:
  const ParameterVariant* find(const char* parameter) const;
  std::optional<double> constant(const char* parameter) const;
  std::string plain_text(const char* parameter) const;
  void check_model(const std::string& name, const std::string& card) const;
  Diagnostic& report(const char* rule, const std::string& text) const;
  std::optional<WrittenExpression> written(const char* parameter, const char* unit) const;
  std::optional<std::string> node_in_text(const std::string& name) const;

  WriteContext& m_context;
  LevelText& m_level;
  const kmf::VnId& m_id;
  const gl::core::Component& m_component;
};

/// The letter of the elements for components like this: that of calls for subgraphs; '\0' for those without an element
/// that has their name.
char element_letter(const gl::core::Component& component);

/// Writes the component, which is no subgraph, or reports that it has no counterpart.
void write_element(WriteContext& context, LevelText& level, const kmf::VnId& id, const gl::core::Component& component);

/// A type with its way to be written.
struct WrittenKind {
  std::string_view type;
  char letter;
  void (*write)(const ElementWriter& element);
};
/// The row of an electrical type of the ordinary library; null for other types.
const WrittenKind* find_electrical_kind(std::string_view type);
/// Their names in the library, for messages.
std::string electrical_kind_names();

}  // namespace kinemo::formats::spice
