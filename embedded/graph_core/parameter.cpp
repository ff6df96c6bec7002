#include "embedded/graph_core/parameter.hpp"

namespace gl::core {

struct Parameter::Data {
  ParameterVariant value;
  ParameterType type;
};

ParameterType ParameterType::any() {
  return {};
}

ParameterType ParameterType::text() {
  ParameterType type;
  type.kind_ = Kind::Text;
  return type;
}

ParameterType ParameterType::number(const units2::core::ExprString& unit) {
  ParameterType type;
  type.kind_ = Kind::Number;
  type.unit_ = unit;
  return type;
}

Parameter::Parameter(const ParameterVariant& value) : Parameter(value, ParameterType::any()) {}

Parameter::Parameter(const ParameterVariant& value, const ParameterType& type)
    : data_(std::make_shared<Data>(Data{value, type})) {}

const ParameterVariant& Parameter::get(const kmf::VnIdPathIterator& at) const {
  if (!at.atEnd()) detail::throw_entry_name_not_found(at);
  return data_->value;
}

const ParameterType& Parameter::type() const {
  return data_->type;
}

bool operator==(const Parameter& a, const Parameter& b) {
  return a.data_ == b.data_ || (a.data_->type == b.data_->type && a.data_->value == b.data_->value);
}

namespace detail {

namespace {

/// The unit that a value is told in; the empty one for text.
struct UnitOf : boost::static_visitor<units2::core::ExprString> {
  result_type operator()(const ustring&) const { return {}; }
  result_type operator()(const data2::core::Value& value) const { return value.data().unit(); }
  result_type operator()(const data2::core::Expr& expression) const { return data2::core::bound_unit(expression); }
};

struct ValueEntry : boost::static_visitor<GraphEntryRef> {
  template <class T>
  GraphEntryRef operator()(const T& value) const {
    return &value;
  }
};

bool fits(const units2::core::ExprString& unit, const units2::core::ExprString& wanted) {
  return unit.unit().id() == 0 || wanted.unit().id() == 0 || commensurable(unit.unit(), wanted.unit());
}

}  // namespace

bool takes(const ParameterType& type, const ParameterVariant& value) {
  const bool text = boost::get<ustring>(&value) != nullptr;
  switch (type.kind()) {
    case ParameterType::Kind::Any:
      return true;
    case ParameterType::Kind::Text:
      return text;
    case ParameterType::Kind::Number:
      return !text && fits(boost::apply_visitor(UnitOf(), value), type.unit());
  }
  return false;
}

GraphEntryRef value_entry(const ParameterVariant& value) {
  return boost::apply_visitor(ValueEntry(), value);
}

}  // namespace detail

}  // namespace gl::core
