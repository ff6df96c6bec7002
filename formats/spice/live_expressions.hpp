// Expressions of one scope of the expanded circuit told for another one, so that values keep following the parameters
// that they depend on. A name stays where it means the same in both scopes; elsewhere what stands for it is put in.
//
// Parameters of the top level that are computed from others give way to what they are computed from: the model's
// workspace holds numbers, which don't follow each other.
#pragma once

#include "formats/spice/parameter_scopes.hpp"

namespace kinemo::formats::spice {

class LiveExpressions {
 public:
  /// Expressions come from the scope at depth `from` and are told for the scope at depth `at`, which is the same or
  /// one inside of it.
  LiveExpressions(const ParameterScopes& scopes, std::size_t from, std::size_t at)
      : m_scopes(scopes), m_from(from), m_at(at) {}

  /// For an expression with a value. What can't be told there, or only at too great length, is put in as a number.
  Expression tell(const Expression& expression);
  /// For an expression that may wait for the running circuit: parameters that wait give way to what they stand for.
  /// Names of other parameters stay, as far as they mean the same there.
  Expression tell_circuit(const Expression& expression);
  /// What a name means at the place that is told for.
  Expression tell_name(const std::string& name);

  /// What the name is worth where expressions come from.
  std::optional<double> value(const std::string& name) const { return value(name, m_from); }
  /// What it is worth at the place that is told for.
  std::optional<double> value_there(const std::string& name) const { return value(name, m_at); }
  /// Whether something that was told so far is fixed to the number that it has now.
  bool has_fixed() const { return m_has_fixed; }

 private:
  struct Visit;

  std::optional<double> value(const std::string& name, std::size_t depth) const;
  std::optional<Expression> tell(const Expression& expression, std::size_t from, bool with_derived);
  void put_name(const ExpressionStep& step, std::size_t from, bool with_derived, std::vector<Visit>& path,
                std::vector<ExpressionStep>& result);
  void put_derived(const ExpressionStep& step, const ScopedParameter& parameter, std::vector<Visit>& path,
                   std::vector<ExpressionStep>& result);
  void put_fixed(const ExpressionStep& step, const ScopedParameter& parameter, std::vector<ExpressionStep>& result);
  bool is_visible(const std::string& name, const ScopedParameter& parameter) const;

  const ParameterScopes& m_scopes;
  std::size_t m_from;
  std::size_t m_at;
  bool m_has_fixed = false;
};

/// Steps by which an expression may grow when others are put in for its names.
inline constexpr std::size_t longest_growth = 300;

}  // namespace kinemo::formats::spice
