#pragma once

// Values with units, expressions over identifiers, and their way in from scripting arrays.
//
// Glossary
//   value        a real numeric array with a unit; `Value`, whose contents are a `ValueData`
//   expression   a parsed text of the expression subset; `Expr`; never evaluated here unless asked to
//   unit binding an expression with a unit for its result; `UnitBindExpr`
// An implementation provides all operations below. All types are values with shared, immutable contents.

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/scripting_array/scripting_array.hpp"
#include "platform/units/units.hpp"

#include <boost/optional.hpp>
#include <boost/unordered_map.hpp>
#include <boost/unordered_set.hpp>

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace data2::core {

/// A real array by columns and its unit. The empty unit means that none was given.
class KINEMO_PLATFORM_API ValueData {
 public:
  ValueData();  ///< an empty array
  ValueData(double value, const units2::core::ExprString& unit = {});
  /// @throws "kinemo:data:core" "ShapeMismatch" when the product of the dimensions isn't the count of the elements
  ValueData(std::vector<std::size_t> dimensions, std::vector<double> elements,
            const units2::core::ExprString& unit = {});

  const std::vector<std::size_t>& dimensions() const;
  const std::vector<double>& elements() const;
  bool isScalar() const { return elements().size() == 1; }
  const units2::core::ExprString& unit() const { return unit_; }

  /// Same shape, unit and numbers; not-a-number equals itself.
  friend KINEMO_PLATFORM_API bool operator==(const ValueData& a, const ValueData& b);

 private:
  struct Contents;
  std::shared_ptr<const Contents> contents_;
  units2::core::ExprString unit_;
};

class KINEMO_PLATFORM_API Value {
 public:
  Value() = default;
  explicit Value(ValueData data) : data_(std::move(data)) {}
  const ValueData& data() const { return data_; }
  friend bool operator==(const Value& a, const Value& b) { return a.data_ == b.data_; }

 private:
  ValueData data_;
};

/// Node of the tree behind an expression; only the implementation looks inside.
class ExprNode;
class UnitBindExpr;

class KINEMO_PLATFORM_API Expr {
 public:
  Expr();
  Expr(const UnitBindExpr& bound);
  explicit Expr(std::shared_ptr<const ExprNode> node) : node_(std::move(node)) {}

  const std::shared_ptr<const ExprNode>& node() const { return node_; }
  /// Equal trees.
  friend KINEMO_PLATFORM_API bool operator==(const Expr& a, const Expr& b);

 private:
  std::shared_ptr<const ExprNode> node_;
};

/// An expression whose result is told in a unit.
class KINEMO_PLATFORM_API UnitBindExpr {
 public:
  UnitBindExpr(const Expr& expression, const units2::core::ExprString& unit);
  const Expr& expression() const { return expression_; }
  const units2::core::ExprString& unit() const { return unit_; }

 private:
  Expr expression_;
  units2::core::ExprString unit_;
};

/// The names in an expression, also those of functions and constants, as a variable may hide either.
class KINEMO_PLATFORM_API UsedIds {
 public:
  boost::unordered_set<kmf::VnId> operator()(const Expr& expression) const;
};

/// Whether the expression uses `a.b` references.
KINEMO_PLATFORM_API bool contains_dot_referencing(const Expr& expression);
/// Writes the expression as text that parses back to the same tree. `indent` blanks lead; `width` is a hint for the
/// length of a line and 0 means one line.
KINEMO_PLATFORM_API void out(std::ostream& stream, std::size_t indent, std::size_t width, const Expr& expression);
/// The unit bound to the expression at its root; the empty unit when there is none.
KINEMO_PLATFORM_API units2::core::ExprString bound_unit(const Expr& expression);
/// The expression below all unit bindings at its root; itself when nothing is bound. For writers of other languages.
KINEMO_PLATFORM_API Expr without_unit(const Expr& expression);

}  // namespace data2::core

namespace data2::cvi {

/// Turns arrays of the scripting runtime into values. Accepts real numeric and logical arrays, and objects of class
/// "kinemo.Value" (properties "value" and "unit"), which carry a unit.
class KINEMO_PLATFORM_API CvArrayValueConverter {
 public:
  explicit CvArrayValueConverter(const unit_manager::Context& context) : context_(&context) {}
  bool canConvert(const cvArray_tag* array) const;
  /// @throws "kinemo:data:cvi" "CannotConvert" (class name)
  core::Value operator()(const cvArray_tag* array) const;

 private:
  const unit_manager::Context* context_;
};

/// Parses the expression subset: numbers, names, matrices, the usual operators, calls of functions of numbers, `a.b`.
/// Texts, cells, function handles and ranges aren't in it. Equal texts share one tree. Around the whole, the form
/// `kinemo.Value(expression, 'unit')` binds a unit; it is what `out` writes for a bound expression.
class KINEMO_PLATFORM_API CorvaneParser {
 public:
  boost::optional<core::Expr> operator()(const std::string& text) const;
};

}  // namespace data2::cvi
