// Functions that call functions, evaluate texts and raise errors.

#include "embedded/expression/parse.hpp"
#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

#include <algorithm>
#include <set>

namespace embedded::scripting_runtime {

namespace {

std::set<std::string>& scope_classes() {
  static std::set<std::string> names;
  return names;
}

void take(Call& call, Outputs outputs) {
  for (cvUniquePtr& output : outputs) call.give(std::move(output));
}

void call_function_value(Call& call) {
  take(call, call_value(call[0], call.wanted, static_cast<int>(call.size()) - 1, call.inputs() + 1));
}

/// The workspace behind an object of a registered class.
std::shared_ptr<Workspace> workspace_behind(const cvArray_tag* object) {
  const bool known = cvGetClassID(object) == cvOBJECT_CLASS && scope_classes().count(cvGetClassName(object)) > 0;
  std::shared_ptr<void> native = known ? cvGetNative(object) : nullptr;
  if (!native) throw_runtime_error("UnknownScope", cvGetClassName(object));
  return std::static_pointer_cast<Workspace>(native);
}

/// Where the text is a function, faults of its body are told at their places in the body, since programs put heads
/// before what users type.
void check_body(const std::string& text) {
  if (text.compare(0, 2, "@(") != 0 || expression::parse_cached(text)) return;
  const std::size_t end = text.find(')');
  if (end != std::string::npos) expression::parse_or_throw(text.substr(end + 1));
}

void evaluate_in(Call& call) {
  const std::string text = call.text(1);
  check_body(text);
  std::shared_ptr<Workspace> held;  // lives on when the evaluation closes the object
  const Workspace* workspace = &base_workspace();
  if (cvIsChar(call[0])) {
    if (call.text(0) != "base") throw_runtime_error("UnknownScope", call.text(0));
  } else {
    held = workspace_behind(call[0]);
    workspace = held.get();
  }
  const Scope scope(*workspace);
  if (call.wanted == 1) return call.give(evaluate(text, scope));
  take(call, evaluate_outputs(text, scope, call.wanted));
}

void function_to_text(Call& call) {
  const std::string text = cvGetFunctionText(call[0]);
  const bool named = text.size() > 1 && text[0] == '@' && text[1] != '(';
  call.give(named ? text.substr(1) : text);
}

void text_to_function(Call& call) {
  const std::string text = call.text(0);
  if (!text.empty() && text.front() == '@') return call.give(evaluate(text, Scope(base_workspace())));
  call.give(make_named_handle(text));
}

// --- functions over elements

struct Mapping {
  std::vector<const cvArray_tag*> arrays;
  bool uniform = true;
  Shape shape;
};

/// The arrays behind the function, and the option "UniformOutput".
Mapping mapping_of(const Call& call) {
  Mapping result;
  std::size_t end = call.size();
  if (end >= 4 && cvIsChar(call[end - 2]) && kmf::cvarray_to_string(call[end - 2]) == "UniformOutput") {
    result.uniform = is_true(Value::of(call[end - 1]));
    end -= 2;
  }
  for (std::size_t i = 1; i < end; ++i) {
    result.arrays.push_back(call[i]);
    if (shape_of(call[i]) != shape_of(call[1])) {
      throw_runtime_error("SizeMismatch", std::string(call.name), shape_text(shape_of(call[1])),
                          shape_text(shape_of(call[i])));
    }
  }
  result.shape = shape_of(call[1]);
  return result;
}

using Element = Value (*)(const cvArray_tag* array, std::size_t i);

Value element_of(const cvArray_tag* array, std::size_t i) {
  std::vector<Subscript> place;
  place.emplace_back(Value(static_cast<double>(i + 1)));
  return indexed(array, place);
}

Value content_of(const cvArray_tag* array, std::size_t i) {
  if (!cvIsCell(array)) throw_runtime_error("NotCell", cvGetClassName(array));
  return Value::of(cvGetCell(array, i));
}

/// One output of all calls as an array of numbers of one class, in the unit of the first.
cvUniquePtr gathered_numbers(std::vector<Value>& values, const Shape& shape, const char* function) {
  const bool with_units = std::any_of(values.begin(), values.end(), [](const Value& v) { return is_value_object(v); });
  const Unit unit = with_units ? to_common_unit(values, function) : Unit();
  Numbers result = Numbers::zeros(shape, cvDOUBLE_CLASS, true);
  for (std::size_t i = 0; i < values.size(); ++i) {
    const Numbers one = numbers_of(values[i]);
    if (one.size() != 1) throw_runtime_error("NotUniform", std::string(function), std::to_string(i + 1));
    if (i == 0) result.class_id = one.class_id;
    if (one.class_id != result.class_id) {
      throw_runtime_error("MixedClasses", std::string(function), std::string(class_name_of(one.class_id)),
                          std::to_string(i + 1), std::string(class_name_of(result.class_id)));
    }
    result.set(i, one.at(0));
  }
  return std::move(value_of({array_of(std::move(result)), unit})).release();
}

cvUniquePtr gathered_cells(std::vector<Value>& values, const Shape& shape) {
  cvUniquePtr result(cvCreateCellMatrix(1, values.size()));
  for (std::size_t i = 0; i < values.size(); ++i) {
    cvSetCell(result.get(), i, std::move(values[i]).release().release());
  }
  cvSetDimensions(result.get(), shape);
  return result;
}

/// The function called with element `i` of each array. Its errors tell which call it was.
template <Element ElementOf>
Outputs call_for_element(const Call& call, const Mapping& mapping, std::size_t i, std::size_t count) {
  std::vector<Value> inputs;
  for (const cvArray_tag* array : mapping.arrays) inputs.push_back(ElementOf(array, i));
  std::vector<cvArray_tag*> arrays;
  for (const Value& input : inputs) arrays.push_back(input.array());
  try {
    return call_value(call[0], call.wanted, static_cast<int>(arrays.size()), arrays.data());
  } catch (kmf::AttributedException& error) {
    const std::string id = error.data().id;
    if (count > 1 && id != "Interrupted" && id != "TooManySteps") {  // those are no fault of the call
      error.addCause(kmf::MessageException(
          kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "InCallForElement", std::to_string(i + 1),
                                      std::to_string(count), std::string(call.name)))));
    }
    throw;
  }
}

bool is_single_number(const Value& value) {
  if (value.is_number()) return true;
  if (is_value_object(value)) return is_single_number(quantity_of(value).numbers);
  const cvArray_tag* array = value.array();
  return (cvIsNumeric(array) || cvIsLogical(array) || cvIsChar(array)) && cvGetNumberOfElements(array) == 1;
}

/// As a statement: the function may give nothing. What all calls give is shown, in cells where it isn't one
/// number each.
void give_of_statement(Call& call, const Mapping& mapping, std::vector<Value> values, std::size_t count) {
  if (values.size() < count || count == 0) return;
  const bool uniform = mapping.uniform && std::all_of(values.begin(), values.end(), is_single_number);
  call.give(uniform ? gathered_numbers(values, mapping.shape, call.name) : gathered_cells(values, mapping.shape));
}

template <Element ElementOf>
void map_function(Call& call) {
  const Mapping mapping = mapping_of(call);
  const bool statement = call.wanted < 1;
  std::vector<std::vector<Value>> results(statement ? 1 : static_cast<std::size_t>(call.wanted));
  const std::size_t count = checked_count(mapping.shape);
  for (std::size_t i = 0; i < count; ++i) {
    count_step();
    Outputs outputs = call_for_element<ElementOf>(call, mapping, i, count);
    for (std::size_t k = 0; k < std::min(results.size(), outputs.size()); ++k) {
      results[k].emplace_back(std::move(outputs[k]));
    }
  }
  if (statement) return give_of_statement(call, mapping, std::move(results[0]), count);
  for (std::vector<Value>& values : results) {
    call.give(mapping.uniform ? gathered_numbers(values, mapping.shape, call.name)
                              : gathered_cells(values, mapping.shape));
  }
}

/// iff(condition, f), iff(condition, f, g): only the function that is chosen is called.
void call_chosen(Call& call) {
  const std::size_t chosen = is_true(Value::of(call[0])) ? 1 : 2;
  if (chosen < call.size()) return take(call, call_value(call[chosen], call.wanted, 0, nullptr));
  if (call.wanted > 0) throw_runtime_error("NoValue");
}

/// error(text), error(template, …), error(identifier, template, …): the text is the user's own.
void raise_error(Call& call) {
  std::vector<const cvArray_tag*> rest;
  const std::string first = call.text(0);
  const bool identifier =
      call.size() > 1 && first.find(':') != std::string::npos && first.find_first_of(" %") == std::string::npos;
  for (std::size_t i = identifier ? 2 : 1; i < call.size(); ++i) rest.push_back(call[i]);
  const std::string format = identifier ? call.text(1) : first;
  throw_runtime_error("UserError", rest.empty() ? format : format_text(format, rest), identifier ? first : "");
}

}  // namespace

void register_scope_class(const std::string& class_name) {
  scope_classes().insert(class_name);
}

std::vector<Builtin> call_builtins() {
  return {{"feval", 1, any_number, call_function_value},
          {"evalin", 2, 2, evaluate_in},
          {"func2str", 1, 1, function_to_text},
          {"str2func", 1, 1, text_to_function},
          {"arrayfun", 2, any_number, map_function<element_of>},
          {"cellfun", 2, any_number, map_function<content_of>},
          {"iff", 2, 3, call_chosen},
          {"error", 1, any_number, raise_error}};
}

}  // namespace embedded::scripting_runtime
