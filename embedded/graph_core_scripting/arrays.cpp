#include "embedded/graph_core_scripting/arrays.hpp"

#include "embedded/data/expression_text.hpp"

#include <algorithm>

namespace embedded::graph_core_scripting {

namespace {

using data2::core::Expr;
using data2::core::Value;

struct VariantArray : boost::static_visitor<cvUniquePtr> {
  cvUniquePtr operator()(const ustring& text) const { return cvUniquePtr(cvCreateUString(text)); }
  cvUniquePtr operator()(const Value& value) const { return array_of(value.data()); }
  cvUniquePtr operator()(const Expr& expression) const {
    return cvUniquePtr(cvCreateString(data2::core::expression_text(expression)));
  }
};

struct ParameterStructure : boost::static_visitor<cvUniquePtr> {
  static cvUniquePtr made(cvUniquePtr value, const std::string& unit, const std::string& expression) {
    FieldValues fields;
    fields.emplace_back("value", std::move(value));
    fields.emplace_back("unit", cvCreateString(unit));
    fields.emplace_back("expression", cvCreateString(expression));
    return structure(std::move(fields));
  }
  cvUniquePtr operator()(const ustring& text) const { return made(cvUniquePtr(cvCreateUString(text)), "", ""); }
  cvUniquePtr operator()(const Value& value) const {
    return made(numbers_of(value.data()), value.data().unit().text(), "");
  }
  cvUniquePtr operator()(const Expr& expression) const {
    return made(cvUniquePtr(cvCreateDoubleMatrix(0, 0)), data2::core::bound_unit(expression).text(),
                data2::core::plain_text(expression));
  }
};

}  // namespace

cvUniquePtr numbers_of(const data2::core::ValueData& value) {
  if (value.isScalar()) return cvUniquePtr(cvCreateDoubleScalar(value.elements().front()));
  cvUniquePtr array(cvCreateNumericArray(value.dimensions(), cvDOUBLE_CLASS));
  std::copy(value.elements().begin(), value.elements().end(), cvGetWritableDoubles(array.get()));
  return array;
}

cvUniquePtr array_of(const data2::core::ValueData& value) {
  if (value.unit().unit().id() == 0) return numbers_of(value);
  cvUniquePtr object(cvCreateObject("kinemo.Value"));
  cvSetProperty(object.get(), 0, "value", numbers_of(value).release());
  cvSetProperty(object.get(), 0, "unit", cvCreateString(value.unit().text()));
  return object;
}

cvUniquePtr structure(FieldValues fields) {
  cvUniquePtr result(cvCreateStructMatrix(1, 1, {}));
  for (auto& [name, value] : fields) cvSetField(result.get(), 0, name.c_str(), value.release());
  return result;
}

cvUniquePtr variant_array(const ParameterVariant& value) {
  return boost::apply_visitor(VariantArray(), value);
}

cvUniquePtr parameter_structure(const ParameterVariant& value) {
  return boost::apply_visitor(ParameterStructure(), value);
}

cvUniquePtr parameters_structure(const gl::core::Component& component) {
  FieldValues fields;
  for (const auto& [id, parameter] : component.parameters()) {
    fields.emplace_back(id, parameter_structure(parameter.get({})));
  }
  return structure(std::move(fields));
}

std::string address_text(const kmf::VnIdPath& address) {
  std::string text;
  for (const kmf::VnId& id : address) text += (text.empty() ? "" : "/") + std::string(id);
  return text;
}

}  // namespace embedded::graph_core_scripting
