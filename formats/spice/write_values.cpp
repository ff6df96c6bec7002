#include "formats/spice/write_values.hpp"

#include <cmath>

#include "embedded/data/expr_node.hpp"
#include "formats/spice/expression.hpp"
#include "platform/units/units.hpp"

namespace kinemo::formats::spice {

namespace ex = embedded::expression;
using units2::core::AbstractExpr;

namespace {

std::optional<WrittenExpression> written_number(double value, std::string& problem) {
  if (!std::isfinite(value)) {
    problem = "it isn't finite";
    return std::nullopt;
  }
  return WrittenExpression{number_text(value), true};
}

/// Told in the unit, or where that is empty in the base unit of its dimension; a bare number is told in it already.
double told_number(double value, const AbstractExpr& own, const AbstractExpr& told) {
  if (own.id() == 0) {
    return value;
  }
  return units2::core::convert(value, own, told.id() != 0 ? told : units2::core::base_unit(own));
}

class WriteValue : public boost::static_visitor<std::optional<WrittenExpression>> {
 public:
  WriteValue(const AbstractExpr& unit, const ParameterNameLookup& names, std::string& problem)
      : m_unit(unit), m_names(names), m_problem(problem) {}

  std::optional<WrittenExpression> operator()(const ustring&) const { return failed("it is a text"); }

  std::optional<WrittenExpression> operator()(const data2::core::Value& value) const {
    if (!value.data().isScalar()) {
      return failed("it is a matrix");
    }
    const AbstractExpr own = value.data().unit().unit();
    auto written = written_number(told_number(value.data().elements().front(), own, m_unit), m_problem);
    if (written) {
      written->unit = own;
    }
    return written;
  }

  std::optional<WrittenExpression> operator()(const data2::core::Expr& expression) const {
    const ex::Node* tree = data2::core::unbound(expression);
    if (tree == nullptr) {
      return failed("it is empty");
    }
    return write_expression(*tree, data2::core::bound_unit(expression).unit(), m_unit, m_names, m_problem);
  }

 private:
  std::optional<WrittenExpression> failed(const char* problem) const {
    m_problem = problem;
    return std::nullopt;
  }

  const AbstractExpr& m_unit;
  const ParameterNameLookup& m_names;
  std::string& m_problem;
};

class WriteRow : public boost::static_visitor<std::optional<std::vector<WrittenExpression>>> {
 public:
  using Row = std::vector<WrittenExpression>;

  WriteRow(const ParameterNameLookup& names, std::string& problem) : m_names(names), m_problem(problem) {}

  std::optional<Row> operator()(const ustring&) const {
    m_problem = "it is a text";
    return std::nullopt;
  }

  std::optional<Row> operator()(const data2::core::Value& value) const {
    Row row;
    for (const double element : value.data().elements()) {
      if (!add(row, written_number(element, m_problem))) {
        return std::nullopt;
      }
    }
    return row;
  }

  std::optional<Row> operator()(const data2::core::Expr& expression) const {
    const ex::Node* tree = data2::core::unbound(expression);
    const bool is_row = tree != nullptr && tree->kind() == ex::Kind::matrix && tree->children().size() == 1;
    Row row;
    for (std::size_t i = 0; is_row && i < tree->child(0).children().size(); ++i) {
      if (!add(row, write_expression(tree->child(0).child(i), {}, {}, m_names, m_problem))) {
        return std::nullopt;
      }
    }
    if (!is_row && (tree == nullptr || !add(row, write_expression(*tree, {}, {}, m_names, m_problem)))) {
      return std::nullopt;
    }
    return row;
  }

 private:
  static bool add(Row& row, std::optional<WrittenExpression> element) {
    if (element) {
      row.push_back(std::move(*element));
    }
    return element.has_value();
  }

  const ParameterNameLookup& m_names;
  std::string& m_problem;
};

}  // namespace

std::optional<WrittenExpression> write_value(const ParameterVariant& value, const AbstractExpr& unit,
                                             const ParameterNameLookup& names, std::string& problem) {
  return boost::apply_visitor(WriteValue(unit, names, problem), value);
}

std::optional<std::vector<WrittenExpression>> write_row(const ParameterVariant& value, const ParameterNameLookup& names,
                                                        std::string& problem) {
  return boost::apply_visitor(WriteRow(names, problem), value);
}

}  // namespace kinemo::formats::spice
