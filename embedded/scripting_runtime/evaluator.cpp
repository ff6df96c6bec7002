#include "embedded/scripting_runtime/evaluator.hpp"

#include "embedded/expression/parse.hpp"
#include "embedded/expression/print.hpp"
#include "embedded/expression/walk.hpp"
#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/functions.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

using expression::Kind;

/// What `compute` gives, as an evaluation of its own whose errors tell their place.
template <class Compute>
auto Evaluator::placed(Compute compute) {
  const RunningEvaluation running;
  try {
    return within_memory(compute);
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
  error.addCause(place_cause(place_of(*at_)));
}

kmf::MessageException Evaluator::place_cause(const expression::Place& place) const {
  const std::string line = std::to_string(place.line);
  const std::string column = std::to_string(place.column);
  constexpr const char* group = "kinemo:scripting:runtime";
  if (parameters_ == nullptr || origin_.file == nullptr) {
    return kmf::MessageException(kmf::Message(kmf::MessageId(group, "Where", line, column, place.excerpt)));
  }
  return kmf::MessageException(
      kmf::Message(kmf::MessageId(group, "InFunction", *origin_.file, line, column, place.excerpt)));
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
      at_ = &node;
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

}  // namespace embedded::scripting_runtime
