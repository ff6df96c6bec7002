#include "formats/spice/model_lookup.hpp"

#include <algorithm>
#include <cctype>

namespace kinemo::formats::spice {

namespace {

const Definition* scope_around(const Netlist& netlist, const Definition& scope) {
  return scope.parent < 0 ? nullptr : &netlist.definitions[static_cast<std::size_t>(scope.parent)];
}

const Model* find_bin(const std::map<std::string, Model>& models, const std::string& name) {
  const std::string prefix = name + ".";
  for (auto at = models.lower_bound(prefix); at != models.end() && at->first.compare(0, prefix.size(), prefix) == 0;
       ++at) {
    const std::string bin = at->first.substr(prefix.size());
    if (!bin.empty() && std::all_of(bin.begin(), bin.end(), [](unsigned char c) { return std::isdigit(c) != 0; })) {
      return &at->second;
    }
  }
  return nullptr;
}

}  // namespace

const Model* find_model(const Netlist& netlist, const Definition& scope, const std::string& name) {
  for (const Definition* at = &scope; at != nullptr; at = scope_around(netlist, *at)) {
    if (const auto found = at->models.find(name); found != at->models.end()) {
      return &found->second;
    }
    if (const Model* bin = find_bin(at->models, name)) {
      return bin;
    }
  }
  return nullptr;
}

std::int32_t find_definition(const Netlist& netlist, const Definition& scope, const std::string& name) {
  for (const Definition* at = &scope; at != nullptr; at = scope_around(netlist, *at)) {
    if (const auto found = at->definitions.find(name); found != at->definitions.end()) {
      return found->second;
    }
  }
  return -1;
}

std::vector<std::string_view> visible_models(const Netlist& netlist, const Definition& scope) {
  std::vector<std::string_view> names;
  for (const Definition* at = &scope; at != nullptr; at = scope_around(netlist, *at)) {
    for (const auto& [name, model] : at->models) {
      names.push_back(name);
    }
  }
  return names;
}

std::vector<std::string_view> visible_definitions(const Netlist& netlist, const Definition& scope) {
  std::vector<std::string_view> names;
  for (const Definition* at = &scope; at != nullptr; at = scope_around(netlist, *at)) {
    for (const auto& [name, index] : at->definitions) {
      names.push_back(name);
    }
  }
  return names;
}

}  // namespace kinemo::formats::spice
