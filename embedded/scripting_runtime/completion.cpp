#include "embedded/scripting_runtime/completion.hpp"

#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/help.hpp"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <set>

namespace embedded::scripting_runtime {

namespace {

namespace fs = std::filesystem;

bool is_word_character(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool begins_with(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
}

/// Where the text begins that the end of the line is in; npos outside of quotes. A quote behind an operand transposes.
std::size_t open_text(std::string_view line) {
  std::size_t begin = std::string_view::npos;
  char quote = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (quote != 0) {
      if (line[i] == quote) quote = 0;
      continue;
    }
    if (line[i] == '%' || line[i] == '#') break;
    const char before = i > 0 ? line[i - 1] : ' ';
    const bool operand =
        is_word_character(before) || before == ')' || before == ']' || before == '}' || before == '.' || before == '\'';
    if (line[i] != '"' && (line[i] != '\'' || operand)) continue;
    quote = line[i];
    begin = i + 1;
  }
  return quote != 0 ? begin : std::string_view::npos;
}

Completion files(std::string_view line, std::size_t begin) {
  const std::string typed(line.substr(begin));
  const std::size_t slash = typed.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : typed.substr(0, slash + 1);
  const std::string name = typed.substr(folder.size());
  std::set<std::string> found;
  std::error_code error;
  fs::directory_iterator entries(folder.empty() ? "." : folder, error);
  for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
    const std::string each = entries->path().filename().string();
    const bool hidden = name.empty() && each.front() == '.';
    std::error_code ignored;
    if (!hidden && begins_with(each, name)) found.insert(folder + each + (entries->is_directory(ignored) ? "/" : ""));
  }
  return {begin, {found.begin(), found.end()}};
}

/// The names up to the next dot of paths that begin with `typed`; a dot at the end tells that more follows.
void add_next_parts(const std::vector<std::string>& paths, std::string_view typed, std::set<std::string>& to) {
  for (const std::string& path : paths) {
    if (!begins_with(path, typed)) continue;
    const std::size_t dot = path.find('.', typed.size());
    to.insert(dot == std::string::npos ? path : path.substr(0, dot + 1));
  }
}

void add_matching(const std::vector<std::string>& names, const std::string& head, std::string_view typed,
                  std::set<std::string>& to) {
  for (const std::string& name : names) {
    if (begins_with(head + name, typed)) to.insert(head + name);
  }
}

/// What "a.b" leads to from a variable; null where that is no field or property.
cvUniquePtr value_at(const Workspace& workspace, std::string_view path) {
  std::size_t dot = std::min(path.find('.'), path.size());
  const cvArray_tag* variable = workspace.get(path.substr(0, dot));
  cvUniquePtr at(variable != nullptr ? cvCreateSharedCopy(variable) : nullptr);
  while (at && dot < path.size()) {
    const std::size_t next = std::min(path.find('.', dot + 1), path.size());
    const std::string name(path.substr(dot + 1, next - dot - 1));
    if (cvGetClassID(at.get()) == cvOBJECT_CLASS) {
      at.reset(cvGetProperty(at.get(), 0, name.c_str()));
    } else {
      const bool one = cvIsStruct(at.get()) && cvGetNumberOfElements(at.get()) == 1;
      const cvArray_tag* field = one ? cvGetField(at.get(), 0, name.c_str()) : nullptr;
      at.reset(field != nullptr ? cvCreateSharedCopy(field) : nullptr);
    }
    dot = next;
  }
  return at;
}

std::vector<std::string> members_of(const cvArray_tag* value) {
  if (cvIsStruct(value)) return cvGetFieldNames(value);
  if (cvGetClassID(value) != cvOBJECT_CLASS) return {};
  std::vector<std::string> names = cvGetPropertyNames(value);
  for (std::string& method : methods_of(cvGetClassName(value))) names.push_back(std::move(method));
  return names;
}

void add_names(std::string_view typed, const Workspace& workspace, std::set<std::string>& to) {
  add_matching(workspace.names(), "", typed, to);
  add_next_parts(function_names(), typed, to);
  for (const std::string& package : package_contents("")) add_next_parts({package + "."}, typed, to);
}

void add_members(std::string_view typed, const Workspace& workspace, std::set<std::string>& to) {
  const std::size_t dot = typed.rfind('.');
  const std::string head(typed.substr(0, dot + 1));
  const std::string owner(typed.substr(0, dot));
  if (workspace.has(owner.substr(0, owner.find('.')))) {
    if (const cvUniquePtr value = value_at(workspace, owner)) add_matching(members_of(value.get()), head, typed, to);
    return;
  }
  add_next_parts(function_names(), typed, to);
  add_matching(package_contents(owner), head, typed, to);
}

bool asks_for_help(std::string_view line) {
  const std::size_t begin = std::min(line.find_first_not_of(' '), line.size());
  return begins_with(line.substr(begin), "help ");
}

}  // namespace

Completion complete(std::string_view line, const Workspace& workspace) {
  if (const std::size_t text = open_text(line); text != std::string_view::npos) return files(line, text);
  std::size_t begin = line.size();
  while (begin > 0 && (is_word_character(line[begin - 1]) || line[begin - 1] == '.')) --begin;
  const std::string_view typed = line.substr(begin);
  std::set<std::string> found;
  if (asks_for_help(line)) {
    add_matching(help_topics(), "", typed, found);
  } else if (typed.find('.') == std::string_view::npos) {
    add_names(typed, workspace, found);
  } else if (typed.front() != '.' && std::isdigit(static_cast<unsigned char>(typed.front())) == 0) {
    add_members(typed, workspace, found);
  }
  return {begin, {found.begin(), found.end()}};
}

std::string common_beginning(const std::vector<std::string>& texts) {
  if (texts.empty()) return {};
  std::string result = texts.front();
  for (const std::string& text : texts) {
    const auto end = std::mismatch(result.begin(), result.end(), text.begin(), text.end()).first;
    result.erase(end, result.end());
  }
  return result;
}

}  // namespace embedded::scripting_runtime
