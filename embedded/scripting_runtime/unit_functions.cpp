#include "embedded/scripting_runtime/unit_functions.hpp"

#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/unit_arithmetic.hpp"

#include <string_view>
#include <unordered_map>

namespace embedded::scripting_runtime {

namespace core = units2::core;

namespace {

using Rule = void (*)(const Builtin&, Call&);

/// Runs the function on other inputs than those of the call, which gets the outputs.
void run_on(const Builtin& builtin, Call& call, const std::vector<Value>& inputs) {
  std::vector<cvArray_tag*> arrays;
  for (const Value& input : inputs) arrays.push_back(input.array());
  Call inner(builtin.name, call.wanted, static_cast<int>(arrays.size()), arrays.data());
  builtin.run(inner);
  call.outputs = std::move(inner.outputs);
}

/// The inputs from `begin` on, which say how and not what: dimensions, counts, options.
void append_options(const Call& call, std::size_t begin, std::vector<Value>& inputs) {
  for (std::size_t i = begin; i < call.size(); ++i) {
    inputs.push_back(dimensionless_numbers(quantity_of(call[i]), call.name));
  }
}

/// Runs on the numbers of the first input; returns its unit.
Unit run_on_numbers(const Builtin& builtin, Call& call) {
  Quantity first = quantity_of(call[0]);
  std::vector<Value> inputs;
  inputs.push_back(std::move(first.numbers));
  append_options(call, 1, inputs);
  run_on(builtin, call, inputs);
  return first.unit;
}

void give_unit(Call& call, const Unit& unit) {
  if (call.outputs.empty()) return;
  Quantity result{Value(std::move(call.outputs[0])), unit};
  call.outputs[0] = std::move(value_of(std::move(result))).release();
}

void refuse_offset_of(const Call& call, std::size_t i) {
  refuse_offset(quantity_of(call[i]).unit, call.name);
}

// --- the rules

/// The function knows such objects, or asks for the class.
void as_it_is(const Builtin& builtin, Call& call) {
  builtin.run(call);
}

/// The function itself says in which unit of angles numbers are, so one with a unit would be converted twice.
void plain_numbers_alone(const Builtin& builtin, Call& call) {
  for (std::size_t i = 0; i < call.size(); ++i) {
    const Quantity quantity = quantity_of(call[i]);
    if (quantity.has_unit()) throw_runtime_error("UnitNotTaken", std::string(call.name), unit_text(quantity.unit));
  }
  run_on_numbers(builtin, call);
}

/// An angle: plain numbers are told in degrees, others are converted to that.
void in_degrees(const Builtin& builtin, Call& call) {
  static const Unit degrees = core::parse("deg");
  Quantity angle = quantity_of(call[0]);
  if (angle.has_unit() && !core::commensurable(angle.unit, degrees))
    throw_runtime_error("UnitNotTaken", std::string(call.name), unit_text(angle.unit));
  std::vector<Value> inputs;
  inputs.push_back(told_in(std::move(angle), degrees, call.name));
  run_on(builtin, call, inputs);
}

/// Plain or dimensionless numbers.
void numbers_alone(const Builtin& builtin, Call& call) {
  std::vector<Value> inputs;
  append_options(call, 0, inputs);
  run_on(builtin, call, inputs);
}

/// Shape and such: the result has no unit.
void unit_plays_no_part(const Builtin& builtin, Call& call) {
  run_on_numbers(builtin, call);
}

/// Zeros and signs, which mean the same in all units without offset.
void like_a_condition(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  run_on_numbers(builtin, call);
}

/// The elements of the first input, in any order or rounded.
void keeps_unit(const Builtin& builtin, Call& call) {
  give_unit(call, run_on_numbers(builtin, call));
}

/// Sums and multiples of the elements of the first input.
void keeps_factor_unit(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  keeps_unit(builtin, call);
}

/// Runs on the first two inputs in the unit of the first that has one, which is returned.
Unit run_on_common_unit(const Builtin& builtin, Call& call) {
  std::vector<Value> inputs;
  for (std::size_t i = 0; i < 2; ++i) inputs.push_back(Value::of(call[i]));
  const Unit unit = to_common_unit(inputs, call.name);
  append_options(call, 2, inputs);
  run_on(builtin, call, inputs);
  return unit;
}

void common_unit(const Builtin& builtin, Call& call) {
  give_unit(call, run_on_common_unit(builtin, call));
}

void common_factor_unit(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  refuse_offset_of(call, 1);
  common_unit(builtin, call);
}

/// A function of the ratio of two values: atan2.
void ratio(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  refuse_offset_of(call, 1);
  run_on_common_unit(builtin, call);
}

/// max(a, b), max(a), max(a, [], dimension)
void extreme(const Builtin& builtin, Call& call) {
  if (call.size() == 2) return common_unit(builtin, call);
  keeps_unit(builtin, call);
}

void difference(const Builtin& builtin, Call& call) {
  const Unit unit = run_on_numbers(builtin, call);
  give_unit(call, unit.id() == 0 ? unit : core::difference_unit(unit));
}

void square_root(const Builtin&, Call& call) {
  constexpr double half = 0.5;
  call.give(std::move(binary_with_units(Operator::element_power, Value::of(call[0]), half)).release());
}

/// The unit to the power of how many elements go into one of the result.
void product(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  Quantity first = quantity_of(call[0]);
  const std::size_t count = cvGetNumberOfElements(first.numbers.array());
  run_on_numbers(builtin, call);
  const std::size_t results = cvGetNumberOfElements(call.outputs[0].get());
  if (!first.has_unit()) return;
  Quantity result{Value(std::move(call.outputs[0])), {}};
  result.unit = power_of_unit(first, results == 0 ? 0 : static_cast<double>(count / results));
  call.outputs[0] = std::move(value_of(simplified(std::move(result)))).release();
}

/// interp1(x, v, xq, method, outside): x and xq in one unit, the result and what lies outside in that of v.
void interpolation(const Builtin& builtin, Call& call) {
  std::vector<Value> places;
  places.push_back(Value::of(call[0]));
  places.push_back(Value::of(call[2]));
  to_common_unit(places, call.name);
  Quantity values = quantity_of(call[1]);
  std::vector<Value> inputs;
  inputs.push_back(std::move(places[0]));
  inputs.push_back(std::move(values.numbers));
  inputs.push_back(std::move(places[1]));
  for (std::size_t i = 3; i < call.size(); ++i) {
    inputs.push_back(cvIsChar(call[i]) ? Value::of(call[i]) : told_in(quantity_of(call[i]), values.unit, call.name));
  }
  run_on(builtin, call, inputs);
  give_unit(call, values.unit);
}

/// The unit to the power of the number of rows.
void determinant_of(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  Quantity matrix = quantity_of(call[0]);
  const auto rows = static_cast<double>(cvGetDimensions(matrix.numbers.array()).front());
  run_on_numbers(builtin, call);
  if (!matrix.has_unit()) return;
  Quantity result{Value(std::move(call.outputs[0])), power_of_unit(matrix, rows)};
  call.outputs[0] = std::move(value_of(simplified(std::move(result)))).release();
}

void inverse(const Builtin&, Call& call) {
  call.give(std::move(binary_with_units(Operator::power, Value::of(call[0]), -1.0)).release());
}

void product_of_two(const Builtin& builtin, Call& call) {
  refuse_offset_of(call, 0);
  refuse_offset_of(call, 1);
  Quantity a = quantity_of(call[0]);
  Quantity b = quantity_of(call[1]);
  std::vector<Value> inputs;
  inputs.push_back(std::move(a.numbers));
  inputs.push_back(std::move(b.numbers));
  append_options(call, 2, inputs);
  run_on(builtin, call, inputs);
  Quantity result{Value(std::move(call.outputs[0])), core::product(a.unit, b.unit)};
  call.outputs[0] = std::move(value_of(simplified(std::move(result)))).release();
}

/// Values of different quantities aren't equal; a number without a unit is told in that of the others.
void equality(const Builtin& builtin, Call& call) {
  std::vector<Value> inputs;
  Unit unit;
  for (std::size_t i = 0; i < call.size(); ++i) {
    Quantity each = quantity_of(call[i]);
    if (unit.id() == 0) unit = each.unit;
    if (each.has_unit() && !core::commensurable(each.unit, unit)) return call.give(false);
    inputs.push_back(told_in(std::move(each), unit, call.name));
  }
  run_on(builtin, call, inputs);
}

/// For functions that aren't here: `numbers_alone`.
const std::unordered_map<std::string_view, Rule>& rules() {
  static const auto& table = *new std::unordered_map<std::string_view, Rule>{
      {"kinemo.Value", as_it_is},
      {"power", as_it_is},
      {"plus", as_it_is},
      {"minus", as_it_is},
      {"times", as_it_is},
      {"mtimes", as_it_is},
      {"rdivide", as_it_is},
      {"and", as_it_is},
      {"or", as_it_is},
      {"xor", as_it_is},
      {"not", as_it_is},
      {"uminus", as_it_is},
      {"transpose", as_it_is},
      {"ternary_fcn", as_it_is},
      {"iff", as_it_is},
      {"class", as_it_is},
      {"isa", as_it_is},
      {"isobject", as_it_is},
      {"iscell", as_it_is},
      {"ischar", as_it_is},
      {"isstruct", as_it_is},
      {"isnumeric", as_it_is},
      {"islogical", as_it_is},
      {"isfloat", as_it_is},
      {"is_function_handle", as_it_is},
      {"fieldnames", as_it_is},
      {"isfield", as_it_is},
      {"struct", as_it_is},
      {"disp", as_it_is},
      {"display", as_it_is},
      {"methods", as_it_is},
      {"assert", as_it_is},
      {"setfield", as_it_is},
      {"rmfield", as_it_is},
      {"deal", as_it_is},
      {"iscellstr", as_it_is},
      {"num2cell", as_it_is},
      {"horzcat", as_it_is},
      {"vertcat", as_it_is},
      {"feval", as_it_is},
      {"evalin", as_it_is},
      {"arrayfun", as_it_is},
      {"cellfun", as_it_is},
      {"error", as_it_is},
      {"strcmp", as_it_is},
      {"strcmpi", as_it_is},
      {"isequal", equality},
      {"size", unit_plays_no_part},
      {"numel", unit_plays_no_part},
      {"length", unit_plays_no_part},
      {"ndims", unit_plays_no_part},
      {"isempty", unit_plays_no_part},
      {"isscalar", unit_plays_no_part},
      {"isvector", unit_plays_no_part},
      {"isrow", unit_plays_no_part},
      {"iscolumn", unit_plays_no_part},
      {"isreal", unit_plays_no_part},
      {"isnan", unit_plays_no_part},
      {"isinf", unit_plays_no_part},
      {"isfinite", unit_plays_no_part},
      {"any", like_a_condition},
      {"all", like_a_condition},
      {"find", like_a_condition},
      {"logical", like_a_condition},
      {"sign", like_a_condition},
      {"angle", like_a_condition},
      {"reshape", keeps_unit},
      {"repmat", keeps_unit},
      {"diag", keeps_unit},
      {"fliplr", keeps_unit},
      {"flipud", keeps_unit},
      {"median", keeps_unit},
      {"sort", keeps_unit},
      {"unique", keeps_unit},
      {"mean", keeps_unit},
      {"real", keeps_unit},
      {"floor", keeps_unit},
      {"ceil", keeps_unit},
      {"round", keeps_unit},
      {"fix", keeps_unit},
      {"double", keeps_unit},
      {"single", keeps_unit},
      {"imag", keeps_factor_unit},
      {"conj", keeps_factor_unit},
      {"abs", keeps_factor_unit},
      {"sum", keeps_factor_unit},
      {"cumsum", keeps_factor_unit},
      {"norm", keeps_factor_unit},
      {"eps", keeps_factor_unit},
      {"max", extreme},
      {"min", extreme},
      {"linspace", common_unit},
      {"hypot", common_factor_unit},
      {"mod", common_factor_unit},
      {"rem", common_factor_unit},
      {"atan2", ratio},
      {"diff", difference},
      {"sqrt", square_root},
      {"prod", product},
      {"dot", product_of_two},
      {"cross", product_of_two},
      {"det", determinant_of},
      {"inv", inverse},
      {"interp1", interpolation},
      {"sind", in_degrees},
      {"cosd", in_degrees},
      {"tand", in_degrees},
      {"deg2rad", plain_numbers_alone},
      {"rad2deg", plain_numbers_alone},
  };
  return table;
}

}  // namespace

void run_with_units(const Builtin& builtin, Call& call) {
  const auto rule = rules().find(builtin.name);
  (rule == rules().end() ? numbers_alone : rule->second)(builtin, call);
}

}  // namespace embedded::scripting_runtime
