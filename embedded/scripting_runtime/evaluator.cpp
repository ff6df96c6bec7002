#include "embedded/scripting_runtime/evaluator.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/expression/print.hpp"
#include "embedded/expression/walk.hpp"
#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/functions.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

using expression::Kind;

namespace {

Value single(std::vector<Value> values) {
  if (values.empty()) throw_runtime_error("NoValue");
  return std::move(values.front());
}

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

std::vector<Value> one(Value value) {
  std::vector<Value> result;
  result.push_back(std::move(value));
  return result;
}

/// A function handle, also one that a parameter object holds; a number for everything else.
Value function_in(const Value& value) {
  if (value.is_number()) return 0;
  cvUniquePtr contents = parameter_contents(value.array());
  return cvGetClassID(contents.get()) == cvFUNCTION_CLASS ? Value(std::move(contents)) : Value(0);
}

}  // namespace

/// What `compute` gives, as an evaluation of its own whose errors tell their place.
template <class Compute>
auto Evaluator::placed(Compute compute) {
  const RunningEvaluation running;
  try {
    return compute();
  } catch (kmf::AttributedException& error) {
    add_place(error);
    throw;
  }
}

std::vector<Value> Evaluator::run(const Node& tree, int wanted) {
  return placed([&] { return outputs(tree, wanted); });
}

std::vector<Subscript> Evaluator::run_subscripts(const Node& tree, const cvArray_tag* indexed) {
  return placed([&] {
    at_ = &tree;
    return subscripts(tree, indexed);
  });
}

void Evaluator::add_place(kmf::AttributedException& error) const {
  if (placed_ || at_ == nullptr || source_.empty()) return;
  const expression::Place place = place_of(*at_);
  error.addCause(kmf::MessageException(kmf::Message(kmf::MessageId(
      "kinemo:scripting:runtime", "Where", std::to_string(place.line), std::to_string(place.column), place.excerpt))));
}

expression::Place Evaluator::place_of(const Node& node) const {
  expression::Place place = expression::place_of(source_.substr(head_), std::max(node.offset(), head_) - head_);
  if (place.line == 1) place.column += origin_.columns;
  place.line += origin_.lines;
  return place;
}

std::vector<Value> Evaluator::outputs(const Node& node, int wanted) {
  switch (node.kind()) {
    case Kind::name:
      if (const cvArray_tag* found = find(node.text())) return one(Value::of(found));
      return call(node, node.text(), {}, wanted);
    case Kind::index:
      return index(node, wanted);
    case Kind::cell_index:
      return cell_index(node);
    case Kind::field:
    case Kind::dynamic_field:
      return fields(node);
    default:
      return one(value(node));
  }
}

Value Evaluator::value(const Node& node) {
  const DepthGuard depth;
  count_step();
  at_ = &node;
  switch (node.kind()) {
    case Kind::chain:
      return chain(node);
    case Kind::unary: {
      const Value operand = value(node.child(0));
      at_ = &node;
      return unary(node.op(), operand);
    }
    case Kind::transpose: {
      const Value operand = value(node.child(0));
      at_ = &node;
      return transpose(node.op(), operand);
    }
    case Kind::range:
      return range(node);
    case Kind::matrix:
      return matrix(node);
    case Kind::cell:
      return cell(node);
    case Kind::anonymous:
      return anonymous(node);
    case Kind::name:
    case Kind::index:
    case Kind::cell_index:
    case Kind::field:
    case Kind::dynamic_field:
      return single(outputs(node, 1));
    default:
      return leaf(node);
  }
}

Value Evaluator::leaf(const Node& node) {
  switch (node.kind()) {
    case Kind::number:
      return node.number();
    case Kind::imaginary:
      return array_of({{1, 1}, cvDOUBLE_CLASS, {0}, {node.number()}});
    case Kind::text:
      return cvUniquePtr(cvCreateString(node.text()));
    case Kind::handle:
      return make_named_handle(node.text());
    case Kind::end:
      return end();
    default:  // colon
      return cvUniquePtr(cvCreateString(":"));
  }
}

void Evaluator::append_values(const Node& node, std::vector<Value>& to) {
  const bool may_be_many =
      node.kind() == Kind::cell_index || node.kind() == Kind::field || node.kind() == Kind::dynamic_field;
  if (!may_be_many) {
    to.push_back(value(node));
    return;
  }
  const DepthGuard depth;
  count_step();
  at_ = &node;
  for (Value& each : outputs(node, 1)) to.push_back(std::move(each));
}

Value Evaluator::chain(const Node& node) {
  if (node.op() == Operator::and_also || node.op() == Operator::or_else) return short_circuit(node);
  Value result = value(node.child(0));
  for (std::size_t i = 1; i < node.children().size(); ++i) {
    const Value right = value(node.child(i));
    at_ = &node;
    result = binary(node.operators()[i - 1], result, right);
  }
  return result;
}

Value Evaluator::short_circuit(const Node& node) {
  const bool decisive = node.op() == Operator::or_else;
  for (const expression::Tree& child : node.children()) {
    if (is_true(value(*child)) == decisive) return cvUniquePtr(cvCreateLogicalScalar(decisive));
  }
  return cvUniquePtr(cvCreateLogicalScalar(!decisive));
}

Value Evaluator::range(const Node& node) {
  const Value first = value(node.child(0));
  const Value second = value(node.child(1));
  if (node.children().size() == 2) {
    at_ = &node;
    return scripting_runtime::range(first, 1.0, second);
  }
  const Value last = value(node.child(2));
  at_ = &node;
  return scripting_runtime::range(first, second, last);
}

Value Evaluator::matrix(const Node& node) {
  std::vector<Value> rows;
  for (const expression::Tree& row : node.children()) {
    std::vector<Value> elements;
    for (const expression::Tree& element : row->children()) append_values(*element, elements);
    at_ = row.get();
    rows.push_back(joined_in_row(std::move(elements)));
  }
  at_ = &node;
  return rows.empty() ? Value(cvUniquePtr(cvCreateDoubleMatrix(0, 0))) : joined_in_column(std::move(rows));
}

Value Evaluator::cell(const Node& node) {
  std::vector<Value> rows;
  for (const expression::Tree& row : node.children()) {
    std::vector<Value> elements;
    for (const expression::Tree& element : row->children()) append_values(*element, elements);
    rows.push_back(cell_row(std::move(elements)));
  }
  at_ = &node;
  return rows.empty() ? Value(cvUniquePtr(cvCreateCellMatrix(0, 0))) : joined_in_column(std::move(rows));
}

Value Evaluator::end() {
  if (ends_.empty()) throw_runtime_error("EndOfNothing");
  const EndPlace& place = ends_.back();
  return static_cast<double>(end_of(place.array, place.position, place.count));
}

Value Evaluator::anonymous(const Node& node) {
  Workspace captured;
  expression::visit_free_names(node, [&](const Node& place, expression::NameUse use) {
    if (use == expression::NameUse::handle) return;
    const cvArray_tag* found = find(place.text());
    if (found != nullptr && !captured.has(place.text())) {
      captured.set(place.text(), cvUniquePtr(cvCreateSharedCopy(found)));
    }
  });
  // The tree is needed beyond this evaluation: a node doesn't know its owner, so its children are shared.
  return make_anonymous(expression::make_node(Kind::anonymous, node.children(), node.offset()), std::move(captured),
                        std::string(source_), origin_);
}

const cvArray_tag* Evaluator::find(const std::string& name) const {
  if (parameters_ != nullptr) {
    const auto found = parameters_->positions->find(name);
    if (found != parameters_->positions->end() && found->second < parameters_->count) {
      return parameters_->values[found->second];
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
