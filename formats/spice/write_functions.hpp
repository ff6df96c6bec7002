// The functions of the model's expressions in the parameter language of netlists.
#pragma once

#include <string_view>

#include "formats/spice/write_terms.hpp"

namespace kinemo::formats::spice {

/// What a function does with units.
enum class UnitRule {
  plain,      ///< takes plain numbers, and angles in rad; gives plain numbers
  kept,       ///< gives the unit of its argument
  rounded,    ///< the same, but the number in that unit is what matters
  common,     ///< takes all arguments in one unit, which it gives
  ratio,      ///< takes all arguments in one unit, and gives a plain number
  condition,  ///< asks for zeros and signs alone; gives a plain number
  root,       ///< gives the square root of the unit
};

/// How a function of the host is said: $1, $2, ... stand for the arguments between commas or brackets, #1, #2, ... for
/// those that are operands.
struct WrittenFunction {
  std::string_view name;
  std::size_t arguments;
  UnitRule rule;
  std::string_view form;
  TermLevel level = TermLevel::atom;  ///< how the form binds
};

/// Null where there is no way to say it.
const WrittenFunction* find_written_function(std::string_view name, std::size_t arguments);
/// Whether the host's function can be said for some count of arguments.
bool is_written_function(std::string_view name);

}  // namespace kinemo::formats::spice
