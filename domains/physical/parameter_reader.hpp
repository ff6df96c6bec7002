#pragma once

#include "common/gl/gti/export/block_data.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/optional.hpp>

#include <functional>
#include <string>
#include <vector>

namespace kinemo::physical {

/// What a kind declares of a number.
struct NumberRule {
  units2::core::ExprString unit;  ///< the number is told in it or in one that converts to it
  bool unlimited = false;         ///< infinities are as good as other numbers
};

/// Turns the parameters that were read off one block into parameters of its component. Lives for one call of a factory.
/// All errors belong to "kinemo:physical:parameters" and name the block first.
class ParameterReader {
 public:
  /// `describe` tells the block in messages; it is asked for in the case of an error alone.
  ParameterReader(const gl::gti::BlockData& data, std::function<ustring()> describe);

  bool has(const kmf::VnId& id) const { return find(id) != nullptr; }
  /// What the user typed for the parameter; empty where that isn't known.
  ustring typed(const kmf::VnId& id) const;
  /// Whether the parameter has no elements. @throws "MissingParameter" (block, id)
  bool isEmpty(const kmf::VnId& id) const { return cvIsEmpty(array(id)); }
  /// The number of a parameter that a kind declares: a single one, told in the unit that the parameter `unit` names, or
  /// in the declared unit where that is empty. A value that brings a unit of its own is converted; one without is taken
  /// to be told in that unit.
  /// @throws "MissingParameter" (block, id), "NotNumeric" (block, id, text, class), "NotScalar" (block, id, text,
  /// size), "NotANumber" (block, id, text), "Infinite" (block, id, text), "InvalidUnit" (block, id, unit),
  /// "UnitNotOfKind" (block, id, unit, declared), "ValueUnitNotOfKind" (block, id, the value's unit, unit, declared)
  gl::core::Parameter number(const kmf::VnId& id, const kmf::VnId& unit, const NumberRule& rule) const;
  /// Numbers of any shape of which no kind says more, told in the unit that the parameter `unit` names, or in their
  /// own.
  /// @throws "MissingParameter", "NotNumeric", "InvalidUnit", "UnitsDiffer" (block, id, the value's unit, unit)
  gl::core::Parameter numbers(const kmf::VnId& id, const kmf::VnId& unit) const;
  /// @throws "MissingParameter", "NotText" (block, id, class)
  ustring text(const kmf::VnId& id) const;
  /// A text among `choices`, in small or capital letters. @throws as `text`, "InvalidChoice" (block, id, text, choices)
  ustring choice(const kmf::VnId& id, const std::vector<std::string>& choices) const;
  /// Numbers or a text, whichever the parameter is; none for other classes. @throws as `numbers`
  boost::optional<gl::core::Parameter> any(const kmf::VnId& id, const kmf::VnId& unit) const;

 private:
  const gl::gti::ParameterValue* find(const kmf::VnId& id) const;
  const cvArray_tag* array(const kmf::VnId& id) const;
  data2::core::ValueData converted(const kmf::VnId& id) const;
  void checkFinite(const kmf::VnId& id, double number, const NumberRule& rule) const;
  units2::core::ExprString unitOf(const kmf::VnId& id, const kmf::VnId& unit) const;
  template <class... Arguments>
  [[noreturn]] void fail(const char* id, const kmf::VnId& parameter, Arguments&&... arguments) const;

  const gl::gti::BlockData& data_;
  std::function<ustring()> describe_;
};

}  // namespace kinemo::physical
