#include "embedded/scripting_runtime/help.hpp"

#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
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

std::string indented(const std::string& text) {
  std::string result = "  ";
  for (const char c : text) {
    result += c;
    if (c == '\n') result += "  ";
  }
  return result + "\n";
}

/// Words in lines as wide as the display.
std::string filled(const std::vector<std::string>& words) {
  std::string result;
  std::string line = " ";
  for (const std::string& word : words) {
    if (line.size() > 1 && line.size() + word.size() + 1 > display_limits().width) {
      result += line + "\n";
      line = " ";
    }
    line += " " + word;
  }
  return result + line + "\n";
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

std::string help_text(const std::string& name) {
  const std::string described = class_dispatch().description(name);
  if (const Help* help = find_help(name)) {
    std::string text = name + ": " + help->summary + "\n" + indented(help->usage);
    if (!described.empty()) text += described + "\n";
    if (!help->details.empty()) return text + help->details;
    text.pop_back();
    return text;
  }
  if (!described.empty()) return name + ": " + described;
  kmf::MessageException error(kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "NoHelp", name)));
  if (const std::string nearest = nearest_name(name, help_topics()); !nearest.empty()) {
    error.addCause(
        kmf::MessageException(kmf::Message(kmf::MessageId("kinemo:scripting:runtime", "NearestName", nearest))));
  }
  throw error;
}

std::string help_overview() {
  std::string text;
  for (const HelpGroup& group : help_groups()) text += group.title + "\n" + filled(group.topics);
  return text + "help NAME tells more about one of them.";
}

}  // namespace embedded::scripting_runtime
