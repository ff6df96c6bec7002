#include "formats/spice/instance_masks.hpp"

#include <boost/make_shared.hpp>
#include <map>

#include "formats/spice/live_expressions.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::spice {

namespace {

/// The defaults of a definition's parameters, without others of the same definition in them. What gets too long, and
/// what depends on the running circuit, is told by each instance.
std::map<std::string, Expression> default_expressions(const Definition& definition) {
  std::map<std::string, Expression> expressions;
  const NameLookup sibling = [&expressions](const std::string& name) -> const Expression* {
    const auto found = expressions.find(name);
    return found == expressions.end() ? nullptr : &found->second;
  };
  for (const Parameter& parameter : definition.parameters) {
    auto told = parameter.value == nullptr ? std::nullopt : with_names(*parameter.value, sibling, longest_growth);
    expressions.emplace(parameter.name, told && !told->has_probes() ? std::move(*told) : Expression::of_number(0));
  }
  return expressions;
}

/// What depends on the running circuit has no place in a mask; it is put into the elements that use it.
Expression expression_of(const ScopedParameter& parameter, LiveExpressions& around) {
  return parameter.value && parameter.told != nullptr ? around.tell(*parameter.told) : Expression::of_number(0);
}

}  // namespace

boost::shared_ptr<const GTMaskDefinition> InstanceMasks::mask(const Definition& definition) {
  auto [entry, is_new] = m_masks.try_emplace(&definition);
  if (is_new) {
    auto mask = boost::make_shared<GTMaskDefinition>();
    mask->type = definition.name;
    mask->description = "Subcircuit '" + definition.name + "' of a netlist.";
    const std::map<std::string, Expression> defaults = default_expressions(definition);
    for (const Parameter& parameter : definition.parameters) {
      GTMaskParameter row;
      row.name = m_names.name(parameter.name);
      row.prompt = parameter.name;
      row.value = kmf::utf8_string_to_ustring(m_names.expression(defaults.at(parameter.name)));
      mask->parameters.push_back(std::move(row));
    }
    entry->second = mask;
  }
  return entry->second;
}

InstanceMasks::Values InstanceMasks::values(const Definition& definition, const ParameterScopes& scopes) {
  Values result;
  const boost::shared_ptr<const GTMaskDefinition> defaults = mask(definition);
  const std::size_t inside = scopes.depth() - 1;
  LiveExpressions around(scopes, inside - 1, inside - 1);
  for (std::size_t i = 0; i < definition.parameters.size(); ++i) {
    const ScopedParameter& parameter = *scopes.find(definition.parameters[i].name, inside);
    std::string text = m_names.expression(expression_of(parameter, around));
    if (kmf::utf8_string_to_ustring(text) != defaults->parameters[i].value) {
      result.changed.push_back({defaults->parameters[i].name, std::move(text)});
    }
  }
  result.has_fixed = around.has_fixed();
  return result;
}

}  // namespace kinemo::formats::spice
