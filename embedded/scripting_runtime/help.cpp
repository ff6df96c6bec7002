#include "embedded/scripting_runtime/help.hpp"

#include <map>

namespace embedded::scripting_runtime {

namespace {

std::map<std::string, Help>& texts() {
  static std::map<std::string, Help> all;
  return all;
}

}  // namespace

void set_help(const std::string& name, Help help) {
  texts()[name] = std::move(help);
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

}  // namespace embedded::scripting_runtime
