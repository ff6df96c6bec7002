// What the inputs of the diagram functions mean: diagrams, systems and blocks by path or handle, and pairs of parameter
// and text. Everything is borrowed from the host.
#pragma once

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/block_diagram/edit.hpp"
#include "embedded/block_diagram/parameter_values.hpp"
#include "embedded/scripting_runtime/builtin.hpp"

#include <string>
#include <vector>

namespace kinemo::scripting {

namespace host = embedded::block_diagram;
using embedded::scripting_runtime::Call;

constexpr const char* diagram_messages = "kinemo:scripting:diagram";

/// By name or handle. @throws "UnknownDiagram" (name, nearest or ""), "NotADiagram" (path)
host::Diagram& diagram_from(const Call& call, std::size_t input);
/// By full path or handle. @throws as above, "UnknownBlock" (path, system, name, nearest or ""), "NotABlock" (path)
GTBlock& block_from(const Call& call, std::size_t input);
/// The inside of a subsystem, or the top of a diagram. @throws as above, "NoInside" (path, block type)
host::System& system_from(const Call& call, std::size_t input);
host::System& system_at(const ustring& path);

/// Pairs of name and value from the input `first` on.
/// @throws "NameWithoutValue" (function, name), "kinemo:host:parameters" "NotAName" (function, input, what was given)
host::ParameterValues pairs_from(const Call& call, std::size_t first);

/// Where a value stands in a call, for errors.
struct InputPlace {
  std::string function;
  std::size_t input;       ///< from 1
  std::string field = {};  ///< of a structure; empty for the input itself
};

/// @throws "NotAText" (function, input, what was given, field or "")
ustring text_of(const cvArray_tag* array, const InputPlace& place);
ustring ustring_from(const Call& call, std::size_t input);
std::string text_from(const Call& call, std::size_t input);
/// The texts of a cell array; none of any empty array. @throws "NotTexts" (function, input, what was given, field or
/// "")
std::vector<ustring> texts_of(const cvArray_tag* array, const InputPlace& place);

/// true, false, 'on', 'off', 1 or 0. @throws "NotASwitch" (function, input)
bool switch_from(const Call& call, std::size_t input);

/// The names of the blocks of a system, UTF-8.
std::vector<std::string> block_names(const host::System& system);

/// A column of texts.
cvUniquePtr text_column(const std::vector<std::string>& texts);

}  // namespace kinemo::scripting
