#include "formats/spice/write_parameters.hpp"

#include <algorithm>
#include <array>

#include "formats/spice/expression.hpp"
#include "formats/spice/write_functions.hpp"
#include "formats/spice/write_values.hpp"
#include "formats/spice/write_walk.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::spice {

namespace {

/// Words that mean something else to the simulator's expressions, or may do so in some of its versions.
constexpr std::array<std::string_view, 12> taken_words{"and", "defined", "div",    "hertz", "m",   "mod",
                                                       "not", "or",      "temper", "time",  "vec", "var"};

bool is_taken(const std::string& name) {
  return find_built_in_function(name) != nullptr || is_written_function(name) ||
         std::find(taken_words.begin(), taken_words.end(), name) != taken_words.end();
}

}  // namespace

WrittenParameters::WrittenParameters(const gl::core::Model& model, UniqueNames& names) : m_unique(names) {
  for (const kmf::VnId& id : model.runtimeParameters().runtimeParameters()) {
    add(id, names);
  }
  std::set<kmf::VnId> inner;
  walk_levels(
      model.graph(),
      [&inner](const gl::core::Component* owner, const gl::core::Graph&) {
        if (owner != nullptr) {
          for (const auto& entry : owner->parameters()) {
            inner.insert(entry.first);
          }
        }
      },
      [](const gl::core::Component*, const gl::core::Graph&) {});
  for (const kmf::VnId& id : inner) {
    add(id, names);
  }
}

void WrittenParameters::add(const kmf::VnId& id, UniqueNames& names) {
  const std::string name(id);
  std::vector<std::string>& own = m_names[name];
  if (!own.empty()) {
    return;
  }
  own.push_back(names.make(is_taken(kmf::lower(name)) ? "p_" + name : name));
  if (own.front() != name) {
    m_renamed.emplace_back(name, own.front());
  }
}

WrittenParameters::Given WrittenParameters::given(const kmf::VnId& id, const ParameterVariant& value) const {
  Given result;
  const ParameterNameLookup names = [&](const std::string& name, std::string& problem) {
    auto found = find(name, problem);
    if (found) {
      result.uses.insert(found->name);
    }
    return found;
  };
  std::string problem;
  const auto written = write_value(value, {}, names, problem);
  result.binding.parameter.name = m_names.at(std::string(id)).front();
  if (written) {
    result.value = *written;
    result.binding.parameter.unit = written->unit;
  } else {
    result.binding.problem = "the parameter '" + std::string(id) + "' has no value in a netlist: " + problem;
  }
  return result;
}

void WrittenParameters::keep_apart(const kmf::VnId& id, Given& one, const std::map<std::string, std::size_t>& users) {
  const auto others_use = [&](const std::string& name) {
    const auto found = users.find(name);
    return found != users.end() && found->second > one.uses.count(name);
  };
  std::vector<std::string>& names = m_names.at(std::string(id));
  for (std::size_t i = 0; others_use(one.binding.parameter.name); ++i) {
    if (i == names.size()) {
      names.push_back(m_unique.make(names.front()));
    }
    one.binding.parameter.name = names[i];
  }
}

std::vector<WrittenParameter> WrittenParameters::enter(const gl::core::Component& subgraph) {
  std::map<kmf::VnId, Given> all;
  std::map<std::string, std::size_t> users;
  for (const auto& [id, parameter] : subgraph.parameters()) {
    const auto entry = all.emplace(id, given(id, parameter.get(kmf::VnIdPathIterator()))).first;
    for (const std::string& name : entry->second.uses) {
      ++users[name];
    }
  }
  std::vector<WrittenParameter> written;
  for (auto& [id, one] : all) {
    keep_apart(id, one, users);
    if (one.binding.problem.empty()) {
      written.push_back({one.binding.parameter.name, one.value});
    }
    m_bindings[std::string(id)].push_back(one.binding);
  }
  return written;
}

void WrittenParameters::leave(const gl::core::Component& subgraph) {
  for (const auto& entry : subgraph.parameters()) {
    m_bindings.at(std::string(entry.first)).pop_back();
  }
}

std::vector<WrittenParameter> WrittenParameters::enter_model(const gl::core::RuntimeParameterInfo& parameters) {
  std::vector<WrittenParameter> written;
  for (const kmf::VnId& id : parameters.runtimeParameters()) {
    Given one;
    if (parameters.nonValueParameters().count(id) == 0) {
      one = given(id, ParameterVariant(data2::core::Value(parameters.value(id))));
    } else {
      one.binding = {{}, "the parameter '" + std::string(id) + "' is no number"};
    }
    if (one.binding.problem.empty()) {
      written.push_back({one.binding.parameter.name, one.value});
    }
    m_bindings[std::string(id)].push_back(one.binding);
  }
  return written;
}

std::optional<ParameterName> WrittenParameters::find(const std::string& name, std::string& problem) const {
  const auto found = m_bindings.find(name);
  if (found == m_bindings.end() || found->second.empty()) {
    return std::nullopt;
  }
  const Binding& binding = found->second.back();
  problem = binding.problem;
  return binding.problem.empty() ? std::optional(binding.parameter) : std::nullopt;
}

}  // namespace kinemo::formats::spice
