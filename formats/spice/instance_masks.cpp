#include "formats/spice/instance_masks.hpp"

#include <boost/make_shared.hpp>
#include <map>

#include "formats/spice/host_names.hpp"
#include "platform/block_diagram/mask.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::spice {

namespace {

/// Steps of an expression in the caller's terms; a longer one gives way to its value.
constexpr std::size_t longest_mask_expression = 300;

/// The parameters of one instance, told in the caller's terms as far as that goes.
class CallTexts {
 public:
  CallTexts(const Definition& definition, const Call* call, const ParameterScopes* inside) : m_inside(inside) {
    std::map<std::string, SharedExpression> given;
    for (const Parameter& parameter : call == nullptr ? std::vector<Parameter>() : call->parameters) {
      given[parameter.name] = parameter.value;
    }
    for (const Parameter& parameter : definition.parameters) {
      const auto own = given.find(parameter.name);
      add(parameter, own == given.end() ? nullptr : own->second.get());
    }
  }

  const std::map<std::string, Expression>& expressions() const { return m_expressions; }

 private:
  /// What depends on the running circuit has no place in a mask; it is a text in the elements that use it.
  void add(const Parameter& parameter, const Expression* given) {
    const auto sibling = [this](const std::string& name) -> const Expression* {
      const auto found = m_expressions.find(name);
      return found == m_expressions.end() ? nullptr : &found->second;
    };
    auto text = given != nullptr             ? std::optional<Expression>(*given)
                : parameter.value == nullptr ? std::nullopt
                                             : with_names(*parameter.value, sibling, longest_mask_expression);
    if (!text || text->has_probes()) {
      const auto value = m_inside == nullptr ? std::nullopt : m_inside->value(parameter.name);
      text = Expression::of_number(value.value_or(0));
    }
    m_expressions.emplace(parameter.name, std::move(*text));
  }

  const ParameterScopes* m_inside;
  std::map<std::string, Expression> m_expressions;
};

}  // namespace

boost::shared_ptr<const GTMaskDefinition> InstanceMasks::mask(const Definition& definition) {
  if (definition.parameters.empty()) {
    return nullptr;
  }
  auto [entry, is_new] = m_masks.try_emplace(&definition);
  if (is_new) {
    auto mask = boost::make_shared<GTMaskDefinition>();
    mask->type = definition.name;
    mask->description = "Subcircuit '" + definition.name + "' of a netlist.";
    const CallTexts defaults(definition, nullptr, nullptr);
    for (const Parameter& parameter : definition.parameters) {
      GTMaskParameter row;
      row.name = host_name(parameter.name);
      row.prompt = parameter.name;
      row.value = kmf::utf8_string_to_ustring(host_expression(defaults.expressions().at(parameter.name)));
      mask->parameters.push_back(std::move(row));
    }
    entry->second = mask;
  }
  return entry->second;
}

std::vector<std::pair<std::string, std::string>> InstanceMasks::values(const Definition& definition, const Call& call,
                                                                       const ParameterScopes& inside) {
  std::vector<std::pair<std::string, std::string>> result;
  const boost::shared_ptr<const GTMaskDefinition> defaults = mask(definition);
  if (defaults == nullptr) {
    return result;
  }
  const CallTexts texts(definition, &call, &inside);
  for (std::size_t i = 0; i < definition.parameters.size(); ++i) {
    std::string text = host_expression(texts.expressions().at(definition.parameters[i].name));
    if (kmf::utf8_string_to_ustring(text) != defaults->parameters[i].value) {
      result.emplace_back(defaults->parameters[i].name, std::move(text));
    }
  }
  return result;
}

}  // namespace kinemo::formats::spice
