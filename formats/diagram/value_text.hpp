// Values of variables as texts of the expression language, for files that keep them.
#pragma once

#include "platform/scripting_array/scripting_array.hpp"

#include <optional>
#include <set>
#include <string>

namespace kinemo::formats::diagram {

/// An expression, UTF-8, and the functions that it calls: a variable of such a name would stand in front of them.
struct ValueText {
  std::string text;
  std::set<std::string> functions;
};

/// Told in an expression whose value equals the array. Nothing where the language can't say it; then `reason` tells
/// what it can't say.
std::optional<ValueText> value_text(const cvArray_tag* array, std::string& reason);

}  // namespace kinemo::formats::diagram
