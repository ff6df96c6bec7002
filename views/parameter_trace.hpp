// Where the value of a block's parameter comes from: the text of its dialog, the masks that its names pass, the
// variables at the end. Made from the diagram after its parameters were evaluated; it keeps nothing of it.
#pragma once

#include "formats/diagnostics.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/optional.hpp>

#include <cstddef>
#include <string>
#include <vector>

class GTBlock;

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::views {

enum class OriginKind { dialog, mask, model_workspace, dictionary, base_workspace, unknown };

/// A parameter or a variable that takes part in a value.
struct Origin {
  OriginKind kind = OriginKind::unknown;
  std::string block;  ///< whose dialog or mask it is, without the model's name; empty for variables
  std::string name;
  std::string text;                         ///< as it was written; empty for variables
  bool is_expression = true;                ///< whether the text is evaluated
  boost::optional<ParameterVariant> value;  ///< of the last evaluation: numbers with their unit, or a text
  std::string unit;                ///< of a leaf's parameter: the text of its partner for the unit, where it has one
  std::string conf;                ///< the same for the partner that says whether it may change at run time
  std::string from;                ///< the same for the partner that says whose the value is: "model" or "own"
  bool evaluated = true;           ///< not so inside of what the last compile left out
  bool runtime = false;            ///< a variable that is marked as run-time parameter
  formats::SourcePlace place;      ///< of the block; none for variables
  std::vector<std::size_t> names;  ///< the origins of the names in the text, in the order of the alphabet

  /// Whether the value is an array of real numbers, which a graph can hold.
  bool has_numbers() const { return value && boost::get<data2::core::Value>(&*value) != nullptr; }
  /// Whether a setting of the model stands in the place of the text.
  bool follows_setting() const;
};

struct ParameterTrace {
  /// The parameter itself first; each before those that its names lead to for the first time. Every origin stands once.
  std::vector<Origin> origins;
};

/// `block` has a mask with the parameter. `compiled` is what became of it: where a setting of the model takes its
/// place, that alone tells the names which it follows.
ParameterTrace trace_parameter(embedded::block_diagram::Diagram& diagram, const GTBlock& block,
                               const std::string& parameter, const boost::optional<ParameterVariant>& compiled,
                               const std::string& file);

/// "the mask of 'Filter'", "the model workspace", ...
std::string place_text(const Origin& origin);

}  // namespace kinemo::views
