// Names, indexing, fields, methods and calls: the part of an evaluation that reaches out of the tree.

#include "embedded/scripting_runtime/evaluator.hpp"

#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/functions.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

using expression::Kind;

namespace {

std::vector<Value> values_of(Outputs outputs) {
  std::vector<Value> result;
  for (cvUniquePtr& output : outputs) result.emplace_back(std::move(output));
  return result;
}

std::vector<cvArray_tag*> arrays_of(const std::vector<Value>& values) {
  std::vector<cvArray_tag*> result;
  for (const Value& value : values) result.push_back(value.array());
  return result;
}

/// A function handle, also one that a parameter object holds; a number for everything else.
Value function_in(const Value& value) {
  if (value.is_number()) return 0;
  cvUniquePtr contents = parameter_contents(value.array());
  return cvGetClassID(contents.get()) == cvFUNCTION_CLASS ? Value(std::move(contents)) : Value(0);
}

}  // namespace

const cvArray_tag* Evaluator::find(const std::string& name) const {
  if (parameters_ != nullptr) {
    const auto found = parameters_->positions->find(name);
    if (found != parameters_->positions->end()) {
      if (found->second < parameters_->count) return parameters_->values[found->second];
      throw_runtime_error("InputNotGiven", name, std::to_string(parameters_->count));
    }
  }
  return scope_.find(name);
}

std::string Evaluator::function_name(const Node& node) const {
  std::vector<const std::string*> parts;
  const Node* at = &node;
  for (; at->kind() == Kind::field; at = &at->child(0)) parts.push_back(&at->text());
  if (at->kind() != Kind::name || find(at->text()) != nullptr) return {};
  std::string result = at->text();
  for (auto part = parts.rbegin(); part != parts.rend(); ++part) result += "." + **part;
  return result;
}

std::vector<Value> Evaluator::index(const Node& node, int wanted) {
  const Node& base = node.child(0);
  if (base.kind() == Kind::name || base.kind() == Kind::field) {
    const std::string function = function_name(base);
    if (!function.empty() && (base.kind() == Kind::name || find_function(function))) {
      return call(base, function, arguments(node), wanted);
    }
  }
  if (base.kind() != Kind::field) return indexed_value(node, value(base), wanted);
  const Value object = owner(base);
  if (auto outputs = method(node, object, wanted)) return std::move(*outputs);
  at_ = &base;
  return indexed_value(node, single(fields_of(object, base.text())), wanted);
}

std::vector<Value> Evaluator::indexed_value(const Node& node, const Value& base, int wanted) {
  if (const Value function = function_in(base); !function.is_number()) {
    const std::vector<Value> inputs = arguments(node);
    at_ = &node;
    return call_value(function, inputs, wanted);
  }
  const std::vector<Subscript> places = subscripts(node, base.array());
  at_ = &node;
  return one(indexed(base.array(), places));
}

Value Evaluator::owner(const Node& node) {
  if (const std::string function = function_name(node); !function.empty()) {
    at_ = &node;
    refuse_in_package(function);
  }
  return value(node.child(0));
}

std::optional<std::vector<Value>> Evaluator::method(const Node& node, const Value& owner, int wanted) {
  if (owner.is_number() || cvGetClassID(owner.array()) != cvOBJECT_CLASS) return std::nullopt;
  const std::string& name = node.child(0).text();
  const std::string class_name = cvGetClassName(owner.array());
  const auto found = class_dispatch().find_method(class_name, name);
  if (!found || class_dispatch().is_property(class_name, name)) return std::nullopt;
  const std::vector<Value> inputs = arguments(node);
  std::vector<cvArray_tag*> arrays = arrays_of(inputs);
  arrays.insert(arrays.begin(), owner.array());
  at_ = &node;
  return values_of(call_function(*found, name, wanted, static_cast<int>(arrays.size()), arrays.data()));
}

std::vector<Value> Evaluator::cell_index(const Node& node) {
  const Value base = value(node.child(0));
  const cvUniquePtr cell = parameter_contents(base.array());
  const std::vector<Subscript> places = subscripts(node, cell.get());
  at_ = &node;
  return cell_contents(cell.get(), places);
}

std::vector<Value> Evaluator::fields(const Node& node) {
  if (node.kind() == Kind::dynamic_field) {
    const Value base = value(node.child(0));
    const Value field = value(node.child(1));
    at_ = &node;
    return fields_of(base, kmf::cvarray_to_string(field.array()));
  }
  const std::string function = function_name(node);
  if (!function.empty() && find_function(function)) return call(node, function, {}, 1);
  const Value base = owner(node);
  at_ = &node;
  return fields_of(base, node.text());
}

std::vector<Value> Evaluator::fields_of(const Value& base, const std::string& field) {
  const cvArray_tag* array = base.array();
  if (cvGetClassID(array) == cvOBJECT_CLASS) {
    cvUniquePtr property(cvGetProperty(array, 0, field.c_str()));
    if (property) return one(std::move(property));
    const std::string class_name = cvGetClassName(array);
    if (const auto found = class_dispatch().find_method(class_name, field)) {
      cvArray_tag* input = base.array();
      return values_of(call_function(*found, field, 1, 1, &input));
    }
    if (class_dispatch().has_class(class_name)) throw_no_such_method(class_name, field);
    if (!is_parameter_object(array)) throw_runtime_error("NoSuchProperty", field, cvGetClassName(array));
    return fields_of(parameter_contents(array), field);
  }
  if (!cvIsStruct(array)) throw_runtime_error("NoFields", field, cvGetClassName(array));
  if (cvGetFieldNumber(array, field.c_str()) < 0) throw_runtime_error("NoSuchField", field);
  std::vector<Value> result;
  for (std::size_t i = 0; i < cvGetNumberOfElements(array); ++i) {
    result.push_back(Value::of(cvGetField(array, i, field.c_str())));
  }
  return result;
}

std::vector<Subscript> Evaluator::subscripts(const Node& node, const cvArray_tag* indexed) {
  std::vector<Subscript> result;
  const std::size_t count = node.children().size() - 1;
  for (std::size_t i = 0; i < count; ++i) {
    const Node& child = node.child(i + 1);
    if (child.kind() == Kind::colon) {
      result.emplace_back();
      continue;
    }
    ends_.push_back({indexed, i, count});
    std::vector<Value> values;
    append_values(child, values);
    ends_.pop_back();
    for (Value& each : values) {
      const bool colon = !each.is_number() && cvIsChar(each.array()) && kmf::cvarray_to_string(each.array()) == ":";
      result.push_back(colon ? Subscript() : Subscript(std::move(each)));
    }
  }
  return result;
}

std::vector<Value> Evaluator::arguments(const Node& node) {
  std::vector<Value> result;
  for (std::size_t i = 1; i < node.children().size(); ++i) append_values(node.child(i), result);
  return result;
}

std::vector<Value> Evaluator::call(const Node& node, const std::string& function, const std::vector<Value>& inputs,
                                   int wanted) {
  at_ = &node;
  std::vector<cvArray_tag*> arrays = arrays_of(inputs);
  const auto found = find_function(function, static_cast<int>(arrays.size()), arrays.data());
  if (!found) fail_undefined(node, function, inputs);
  return values_of(call_function(*found, function, wanted, static_cast<int>(arrays.size()), arrays.data()));
}

std::vector<Value> Evaluator::call_value(const Value& function, const std::vector<Value>& inputs, int wanted) {
  std::vector<cvArray_tag*> arrays = arrays_of(inputs);
  return values_of(
      scripting_runtime::call_value(function.array(), wanted, static_cast<int>(arrays.size()), arrays.data()));
}

void Evaluator::fail_undefined(const Node& node, const std::string& name, const std::vector<Value>& inputs) const {
  refuse_in_package(name);
  const expression::Place place = source_.empty() ? expression::place_of(expression::print(node), 0) : place_of(node);
  kmf::MessageException error(
      kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "UndefinedName", name, std::to_string(place.line),
                                  std::to_string(place.column), place.excerpt)));
  if (parameters_ != nullptr && origin_.file != nullptr) error.addCause(place_cause(place));
  std::vector<std::string> known = scope_.names();
  for (std::string& function : function_names()) known.push_back(std::move(function));
  if (!inputs.empty() && !inputs[0].is_number()) {
    for (std::string& method : methods_of(cvGetClassName(inputs[0].array()))) known.push_back(std::move(method));
  }
  if (const std::string nearest = nearest_name(name, known); !nearest.empty()) {
    error.addCause(
        kmf::MessageException(kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "NearestName", nearest))));
  }
  placed_ = true;
  throw error;
}

}  // namespace embedded::scripting_runtime
