#include "embedded/graph_core_scripting/value_scope.hpp"

#include "embedded/data/expr_node.hpp"
#include "embedded/data/expression_text.hpp"
#include "embedded/graph_core/connector_type.hpp"
#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <utility>

namespace embedded::graph_core_scripting {

namespace {

using data2::core::Expr;
using data2::core::Value;
using data2::core::ValueData;

constexpr char group[] = "kinemo:graph:values";

Value value_of_array(const cvArray_tag* array) {
  return data2::cvi::CvArrayValueConverter(unit_manager::get_cv_context())(array);
}

/// An expression without the units bound at its root, and these units, the innermost one last.
struct Unbound {
  expression::Tree tree;
  std::vector<units2::core::ExprString> units;
};

Unbound without_units(const Expr& expression) {
  Unbound result{expression.node()->tree, {}};
  for (auto binding = data2::core::binding_of(*result.tree); binding.expression != nullptr;
       binding = data2::core::binding_of(*result.tree)) {
    result.units.push_back(units2::core::parse(*binding.unit));
    result.tree = expression::Tree(expression.node()->tree, binding.expression);
  }
  return result;
}

[[noreturn]] void fail(const gl::core::Component& component, const kmf::VnId& parameter, const kmf::Exception& cause) {
  const auto& expression = boost::get<Expr>(component.parameters().at(parameter).get({}));
  kmf::MessageException error(
      kmf::Message(kmf::MessageId("kinemo:graph:values", "ParameterNotEvaluated", gl::core::object(component),
                                  std::string(parameter), data2::core::expression_text(expression))));
  error.addObject(gl::core::object(component));
  error.addCause(cause);
  throw error;
}

}  // namespace

ValueData told_in(const ValueData& value, const units2::core::ExprString& unit) {
  const units2::core::AbstractExpr& own = value.unit().unit();
  if (unit.unit().id() == 0 || own == unit.unit()) return value;
  std::vector<double> elements = value.elements();
  if (own.id() != 0) {
    for (double& element : elements) element = units2::core::convert(element, own, unit.unit());
  }
  return ValueData(value.dimensions(), std::move(elements), unit);
}

ValueScope::ValueScope(const gl::core::RuntimeParameterInfo& top) {
  for (const kmf::VnId& id : top.runtimeParameters()) workspace_.set(id, array_of(top.value(id)));
}

void ValueScope::enter(const gl::core::Component& subgraph) {
  std::vector<Meaning> meanings;
  for (const auto& entry : subgraph.parameters()) meanings.push_back(meaning_of(subgraph, entry.first));
  Level level{&subgraph, {}};
  for (Meaning& meaning : meanings) level.hidden.push_back(exchange(std::move(meaning)));
  levels_.push_back(std::move(level));
}

void ValueScope::leave() {
  for (Meaning& meaning : levels_.back().hidden) exchange(std::move(meaning));
  levels_.pop_back();
}

ParameterVariant ValueScope::value_of(const gl::core::Component& component, const kmf::VnId& parameter) const {
  const ParameterVariant& held = component.parameters().at(parameter).get({});
  const Expr* expression = boost::get<Expr>(&held);
  if (expression == nullptr) return held;
  try {
    return value_of_array(evaluated(*expression).get());
  } catch (const kmf::Exception& cause) {
    fail(component, parameter, cause);
  }
}

ParameterVariant ValueScope::own_value(const kmf::VnId& parameter) const {
  const gl::core::Component& subgraph = *levels_.back().subgraph;
  const ParameterVariant& held = subgraph.parameters().at(parameter).get({});
  if (boost::get<Expr>(&held) == nullptr) return held;
  try {
    return value_of_array(workspace_.get(parameter.view()));
  } catch (const kmf::Exception& cause) {
    fail(subgraph, parameter, cause);
  }
}

ValueScope::Meaning ValueScope::meaning_of(const gl::core::Component& component, const kmf::VnId& parameter) const {
  const ParameterVariant& held = component.parameters().at(parameter).get({});
  if (boost::get<ustring>(&held) != nullptr) return {parameter, nullptr, true};
  if (const Value* value = boost::get<Value>(&held)) return {parameter, array_of(value->data())};
  try {
    return {parameter, evaluated(boost::get<Expr>(held))};
  } catch (const kmf::Exception& cause) {
    fail(component, parameter, cause);
  }
}

/// Gives a name another meaning; returns what it meant before.
ValueScope::Meaning ValueScope::exchange(Meaning meaning) {
  const cvArray_tag* before = workspace_.get(meaning.name);
  Meaning hidden{meaning.name, cvUniquePtr(before != nullptr ? cvCreateSharedCopy(before) : nullptr),
                 texts_.erase(meaning.name) != 0};
  if (hidden.value) cvSetArrayScope(hidden.value.get(), 0);
  if (meaning.isText) texts_.insert(meaning.name);
  if (meaning.value) {
    workspace_.set(meaning.name, std::move(meaning.value));
  } else {
    workspace_.clear(meaning.name);
  }
  return hidden;
}

/// Units at the root are bound here and not by the runtime, so that the result of an expression with a unit of its own
/// is converted with the same rule everywhere.
cvUniquePtr ValueScope::evaluated(const Expr& expression) const {
  if (!expression.node()) return cvUniquePtr(cvCreateDoubleMatrix(0, 0));
  refuse_texts(expression);
  const Unbound plain = without_units(expression);
  cvUniquePtr result = scripting_runtime::evaluate(plain.tree, scope_);
  if (plain.units.empty()) return result;
  ValueData value = value_of_array(result.get()).data();
  for (auto unit = plain.units.rbegin(); unit != plain.units.rend(); ++unit) value = told_in(value, *unit);
  return array_of(value);
}

void ValueScope::refuse_texts(const Expr& expression) const {
  if (texts_.empty()) return;
  for (const kmf::VnId& name : data2::core::UsedIds()(expression)) {
    if (texts_.count(name) != 0) kmf::throw_message(group, "TextInExpression", std::string(name));
  }
}

}  // namespace embedded::graph_core_scripting
