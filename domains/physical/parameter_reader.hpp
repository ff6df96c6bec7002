#pragma once

#include "common/gl/gti/export/block_data.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/optional.hpp>

#include <functional>
#include <string>
#include <vector>

namespace kinemo::physical {

/// Turns the parameters that were read off one block into parameters of its component. Lives for one call of a factory.
/// All errors belong to "kinemo:physical:parameters" and name the block first.
class ParameterReader {
 public:
  /// `describe` tells the block in messages; it is asked for in the case of an error alone.
  ParameterReader(const gl::gti::BlockData& data, std::function<ustring()> describe);

  bool has(const kmf::VnId& id) const { return find(id) != nullptr; }
  /// Numbers told in the unit that the parameter `unit` names; values that bring a unit of their own are converted.
  /// @throws "MissingParameter" (block, id), "NotNumeric" (block, id, class), "InvalidUnit" (block, id, unit),
  /// "UnitsDiffer" (block, id, the value's unit, unit)
  gl::core::Parameter number(const kmf::VnId& id, const kmf::VnId& unit) const;
  /// @throws "MissingParameter", "NotText" (block, id, class)
  ustring text(const kmf::VnId& id) const;
  /// A text among `choices`, in small or capital letters. @throws as `text`, "InvalidChoice" (block, id, text, choices)
  ustring choice(const kmf::VnId& id, const std::vector<std::string>& choices) const;
  /// A number or a text, whichever the parameter is; none for other classes. @throws as `number`
  boost::optional<gl::core::Parameter> any(const kmf::VnId& id, const kmf::VnId& unit) const;

 private:
  const gl::gti::ParameterValue* find(const kmf::VnId& id) const;
  const cvArray_tag* array(const kmf::VnId& id) const;
  units2::core::ExprString unitOf(const kmf::VnId& id, const kmf::VnId& unit) const;
  template <class... Arguments>
  [[noreturn]] void fail(const char* id, const kmf::VnId& parameter, Arguments&&... arguments) const;

  const gl::gti::BlockData& data_;
  std::function<ustring()> describe_;
};

}  // namespace kinemo::physical
