#include "embedded/scripting_runtime/help.hpp"

#include "embedded/scripting_runtime/help_texts.hpp"

#include <algorithm>
#include <map>

namespace embedded::scripting_runtime {

namespace {

using Texts = std::map<std::string, Help>;

Texts built_in_texts() {
  Texts all;
  for (const HelpArea& area : built_in_help()) {
    for (const HelpRow& row : area.rows) all[row.name] = {row.usage, row.summary, row.details, area.title};
  }
  return all;
}

Texts& texts() {
  static Texts all = built_in_texts();
  return all;
}

/// The package of a dotted name.
std::string area_of(const std::string& name, const Help& help) {
  if (!help.area.empty()) return help.area;
  const std::size_t dot = name.rfind('.');
  return dot == std::string::npos ? "Other functions" : name.substr(0, dot);
}

}  // namespace

void set_help(const std::string& name, Help help) {
  texts()[name] = std::move(help);
}

void forget_help(const std::string& name) {
  texts().erase(name);
}

const Help* find_help(const std::string& name) {
  const auto found = texts().find(name);
  return found == texts().end() ? nullptr : &found->second;
}

std::vector<std::string> help_topics() {
  std::vector<std::string> names;
  for (const auto& [name, help] : texts()) names.push_back(name);
  return names;
}

std::vector<HelpGroup> help_groups() {
  std::vector<HelpGroup> groups;
  for (const HelpArea& area : built_in_help()) groups.push_back({area.title, {}});
  std::map<std::string, std::vector<std::string>> further;
  for (const auto& [name, help] : texts()) {
    const std::string area = area_of(name, help);
    const auto known = std::find_if(groups.begin(), groups.end(), [&](const HelpGroup& g) { return g.title == area; });
    (known != groups.end() ? known->topics : further[area]).push_back(name);
  }
  for (auto& [title, topics] : further) groups.push_back({title, std::move(topics)});
  return groups;
}

}  // namespace embedded::scripting_runtime
