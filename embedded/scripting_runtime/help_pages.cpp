#include "embedded/scripting_runtime/help_pages.hpp"

#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "embedded/scripting_runtime/text_layout.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <cctype>
#include <set>

namespace embedded::scripting_runtime {

namespace {

/// A name and one sentence on it.
struct Row {
  std::string name;
  std::string summary;
};

std::string in_small_letters(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

std::string laid_out(const std::string& text, std::size_t indent = 0) {
  return wrapped(text, display_limits().width, indent);
}

/// Lines of code, which stay as they are.
std::string indented(const std::string& text) {
  std::string result = "  ";
  for (const char c : text) {
    result += c;
    if (c == '\n') result += "  ";
  }
  return result;
}

std::string summary_of(const std::string& name) {
  if (const Help* help = find_help(name)) return help->summary;
  const std::string described = class_dispatch().description(name);
  return described.substr(0, described.find('\n'));
}

/// Names in a column, summaries beside it, or below where it leaves them no room.
std::string table(const std::vector<Row>& rows) {
  constexpr std::size_t least_room = 40;
  std::size_t column = 0;
  for (const Row& row : rows) column = std::max(column, row.name.size() + 4);
  const bool beside = column + least_room <= display_limits().width;
  std::string text;
  for (const Row& row : rows) {
    text += "\n  " + row.name;
    if (row.summary.empty()) continue;
    const std::string summary = laid_out(row.summary, beside ? column : 6);
    text += beside ? std::string(column - row.name.size() - 2, ' ') + summary.substr(column) : "\n" + summary;
  }
  return text;
}

std::vector<Row> rows_of(const std::vector<std::string>& names, const std::string& owner = "") {
  std::vector<Row> rows;
  for (const std::string& name : names) {
    const std::string full = owner.empty() ? name : owner + '.' + name;
    const std::string summary = summary_of(full);
    rows.push_back({name, summary.empty() && class_dispatch().has_package(full) ? "A package." : summary});
  }
  return rows;
}

/// All that has help: topics, and what packages of the class system hold.
std::set<std::string> all_names() {
  std::set<std::string> names;
  for (std::string& topic : help_topics()) names.insert(std::move(topic));
  std::vector<std::string> packages = package_contents("");
  while (!packages.empty()) {
    const std::string package = std::move(packages.back());
    packages.pop_back();
    for (const std::string& name : package_contents(package)) {
      const std::string full = package + '.' + name;
      if (class_dispatch().has_package(full)) packages.push_back(full);
      if (!summary_of(full).empty()) names.insert(full);
    }
  }
  return names;
}

/// The names whose last part is `name`, whatever the case of its letters.
std::vector<std::string> names_ending_with(const std::string& name) {
  const std::string wanted = in_small_letters(name);
  std::vector<std::string> found;
  for (const std::string& each : all_names()) {
    if (in_small_letters(each.substr(each.rfind('.') + 1)) == wanted) found.push_back(each);
  }
  return found;
}

std::string page(const std::string& name, const Help* help) {
  const std::string described = class_dispatch().description(name);
  std::string text = laid_out(name + ": " + (help != nullptr ? help->summary : described));
  if (help != nullptr) {
    text += "\n" + indented(help->usage);
    for (const std::string& part : {described, help->details}) text += part.empty() ? "" : "\n" + laid_out(part);
  }
  if (const std::vector<std::string> methods = methods_of(name); !methods.empty()) {
    text += "\nMethods:" + table(rows_of(methods, name));
  }
  return text;
}

std::string package_page(const std::string& name) {
  const std::string described = class_dispatch().description(name);
  return laid_out(name + ": " + (described.empty() ? "A package." : described)) +
         "\nIn it:" + table(rows_of(package_contents(name), name));
}

/// The list of an area; empty where none has the title.
std::string area_page(const std::string& title) {
  for (const HelpGroup& group : help_groups()) {
    if (in_small_letters(group.title) == in_small_letters(title))
      return group.title + ":" + table(rows_of(group.topics));
  }
  return {};
}

[[noreturn]] void fail_with_nearest(const char* id, const std::string& name, const std::vector<std::string>& known) {
  constexpr char group[] = "kinemo:scripting:runtime";
  kmf::MessageException error(kmf::Message(kmf::MessageId(group, id, name)));
  if (const std::string nearest = nearest_name(name, known); !nearest.empty()) {
    error.addCause(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NearestName", nearest))));
  }
  throw error;
}

[[noreturn]] void fail_without_help(const std::string& name) {
  std::set<std::string> known = all_names();
  for (const std::string& each : std::set<std::string>(known)) known.insert(each.substr(each.rfind('.') + 1));
  for (const HelpGroup& group : help_groups()) known.insert(group.title);
  fail_with_nearest("NoHelp", name, {known.begin(), known.end()});
}

/// Words in lines as wide as the display.
std::string filled(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) text += (text.empty() ? "" : " ") + word;
  return laid_out(text, 2) + "\n";
}

}  // namespace

std::string help_text(const std::string& name) {
  if (const Help* help = find_help(name)) return page(name, help);
  if (!name.empty() && !package_contents(name).empty()) return package_page(name);
  if (!summary_of(name).empty()) return page(name, nullptr);
  if (const std::string area = area_page(name); !area.empty()) return area;
  const std::vector<std::string> found = names_ending_with(name);
  if (found.empty()) fail_without_help(name);
  if (found.size() == 1) return help_text(found.front());
  return "Several have the name '" + name + "':" + table(rows_of(found));
}

std::string help_overview() {
  std::string text;
  for (const HelpGroup& group : help_groups()) text += group.title + "\n" + filled(group.topics);
  return text + "help NAME tells more about one of them.";
}

std::vector<std::string> methods_in(const std::string& name) {
  std::vector<std::string> names = methods_of(name);
  if (names.empty() && !name.empty()) names = package_contents(name);
  if (!names.empty()) return names;
  std::vector<std::string> known = class_names();
  for (const HelpGroup& group : help_groups()) {
    if (!package_contents(group.title).empty()) known.push_back(group.title);
  }
  fail_with_nearest("NoMethods", name, known);
}

}  // namespace embedded::scripting_runtime
