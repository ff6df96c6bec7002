// The making of values with units.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

namespace embedded::scripting_runtime {

namespace {

/// kinemo.Value(x, 'unit'): x told in the unit. A number takes the unit, a value with another one is converted.
void make_value(Call& call) {
  const Unit unit = units2::core::parse(call.text(1));
  Quantity quantity = quantity_of(call[0]);
  if (unit.id() != 0) quantity = {told_in(std::move(quantity), unit, call.name), unit};
  call.give(std::move(value_of(std::move(quantity))).release());
}

}  // namespace

std::vector<Builtin> value_builtins() {
  return {{"kinemo.Value", 2, 2, make_value}};
}

}  // namespace embedded::scripting_runtime
