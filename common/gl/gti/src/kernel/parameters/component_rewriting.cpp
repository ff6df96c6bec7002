#include "common/gl/gti/src/kernel/parameters/component_rewriting.hpp"

#include "platform/data/data.hpp"
#include "platform/foundation/checked.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/warning.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "platform/units/units.hpp"

#include <string_view>
#include <utility>

namespace gl::gti {

namespace {

using data2::core::Expr;
using gl::core::Component;

constexpr std::string_view nominalValue = "_nominal_value";

bool isText(const ParameterValue& value) {
  return cvIsChar(value.value());
}

bool refersTo(const Expr& expression, const IdSet& runtimeIds, const IdSet& nonValueIds) {
  for (const kmf::VnId& name : data2::core::UsedIds()(expression)) {
    if (runtimeIds.count(name) != 0 || nonValueIds.count(name) != 0) return true;
  }
  return false;
}

Expr bound(const Expr& expression, const boost::optional<std::string>& unit) {
  if (!unit) return expression;
  const units2::core::AbstractExpr parsed = units2::core::parse(*unit);
  if (parsed.id() == 0) return expression;
  return Expr(data2::core::UnitBindExpr(expression, units2::core::ExprString(parsed)));
}

kmf::VnId unitPartner(const kmf::VnId& id) {
  const std::string_view name = id.view();
  if (name.size() > nominalValue.size() && name.substr(name.size() - nominalValue.size()) == nominalValue) {
    return std::string(name.substr(0, name.size() - nominalValue.size())) + "_nominal_unit";
  }
  return std::string(name) + "_unit";
}

ParameterRewrites rewritesOf(const BlockEntryData& entry, const IdSet& runtimeIds, const IdSet& nonValueIds,
                             const UnitLookup& unitLookup) {
  const std::map<kmf::VnId, ParameterValue>& parameters = entry.data().parameters();
  const data2::cvi::CorvaneParser parse;
  ParameterRewrites rewrites;
  for (const auto& [id, value] : parameters) {
    if (value.expression().empty() || isText(value)) continue;
    const boost::optional<Expr> expression = parse(kmf::ustring_to_local_encoded_string(value.expression()));
    if (!expression || !refersTo(*expression, runtimeIds, nonValueIds)) continue;
    rewrites.emplace(id, bound(*expression, unitLookup(id, parameters)));
  }
  return rewrites;
}

/// Works on `component`, and is used up by the time the component is returned.
ParameterSetter setterOf(Component& component, const IdSet& nonValueIds, bool warn) {
  return [&component, &nonValueIds, warn](const kmf::VnIdPath1& path, const ParameterVariant& value) {
    boost::optional<kmf::VnId> offender;
    if (const Expr* expression = boost::get<Expr>(&value)) offender = non_value_reference(*expression, nonValueIds);
    if (!offender) {
      const kmf::VnId id{std::string(path)};
      component.set(id, value);
    } else if (warn) {
      warn_of_non_value_reference("InvalidNonValueReference", component, std::string(path), *offender);
    }
  };
}

}  // namespace

BlockEntryData& find_block_entry(const Component& component, const BlockEntryMap& entries) {
  return *kmf::map_at(entries, gl::core::object(component));
}

ParameterRewrites parameter_rewrites(const Component& component, const BlockEntryMap& entries, const IdSet& runtimeIds,
                                     const IdSet& nonValueIds, const UnitLookup& unitLookup) {
  return rewritesOf(find_block_entry(component, entries), runtimeIds, nonValueIds, unitLookup);
}

boost::optional<std::string> unit_of_parameter(const kmf::VnId& id,
                                               const std::map<kmf::VnId, ParameterValue>& parameters) {
  const auto partner = parameters.find(unitPartner(id));
  if (partner == parameters.end() || !isText(partner->second)) return boost::none;
  return kmf::cvarray_to_string(partner->second.value());
}

boost::optional<kmf::VnId> non_value_reference(const Expr& expression, const IdSet& nonValueIds) {
  boost::optional<kmf::VnId> offender;
  if (nonValueIds.empty()) return offender;
  for (const kmf::VnId& name : data2::core::UsedIds()(expression)) {
    if (nonValueIds.count(name) != 0) offender = name;
  }
  return offender;
}

IdSet used_runtime_ids(const Component& component, const IdSet& runtimeIds) {
  IdSet used;
  for (const auto& entry : component.parameters()) {
    const Expr* expression = boost::get<Expr>(&entry.second.get(kmf::VnIdPathIterator()));
    if (expression == nullptr) continue;
    for (const kmf::VnId& name : data2::core::UsedIds()(*expression)) {
      if (runtimeIds.count(name) != 0) used.insert(name);
    }
  }
  return used;
}

ComponentRewrite propagate_component(Component component, const BlockEntryMap& entries, const IdSet& runtimeIds,
                                     const IdSet& nonValueIds, bool warn) {
  BlockEntryData& entry = find_block_entry(component, entries);
  const ParameterRewrites rewrites = rewritesOf(entry, runtimeIds, nonValueIds, unit_of_parameter);
  if (!rewrites.empty()) entry.applyRuntimeParameters(setterOf(component, nonValueIds, warn), rewrites);
  IdSet used = used_runtime_ids(component, runtimeIds);
  return {std::move(component), std::move(used)};
}

void warn_of_non_value_reference(const char* messageId, const Component& component, const std::string& parameter,
                                 const kmf::VnId& offender) {
  const ustring path = kmf::get_sanitized_ustring(gl::core::object(component), u'\n', u' ');
  kmf::Warning::get().issueWarning(
      kmf::Message(kmf::MessageId("kinemo:common:gl:gti:rtp", messageId, path, parameter, std::string(offender))));
}

}  // namespace gl::gti
