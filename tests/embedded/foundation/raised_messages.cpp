#include "tests/embedded/foundation/raised_messages.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace kinemo::test {
namespace {

namespace fs = std::filesystem;
using Constants = std::map<std::string, std::string>;
using Files = std::map<std::string, std::string>;

// The text with comments blanked out; line breaks and literals stay.
std::string without_comments(std::string text) {
  enum { code, line, block, literal, character } state = code;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    if (state == code) {
      const bool separates_digits = c == '\'' && i > 0 && std::isalnum(static_cast<unsigned char>(text[i - 1]));
      if (c == '/' && next == '/') state = line;
      if (c == '/' && next == '*') state = block;
      if (c == '"') state = literal;
      if (c == '\'' && !separates_digits) state = character;
    } else if (state == literal || state == character) {
      if (c == '\\') ++i;
      if (c == (state == literal ? '"' : '\'')) state = code;
      continue;
    } else if (state == line && c == '\n') {
      state = code;
    } else if (state == block && c == '*' && next == '/') {
      text[i] = text[i + 1] = ' ';
      state = code;
    }
    if ((state == line || state == block) && c != '\n') text[i] = ' ';
  }
  return text;
}

// The arguments of a call whose opening bracket stands at `open`, trimmed.
std::vector<std::string> arguments_at(const std::string& text, std::size_t open) {
  std::vector<std::string> arguments(1);
  int depth = 0;
  bool quoted = false;
  for (std::size_t i = open; i < text.size(); ++i) {
    const char c = text[i];
    if (c == '"' && text[i - 1] != '\\') quoted = !quoted;
    if (!quoted && (c == '(' || c == '[' || c == '{') && ++depth == 1) continue;
    if (!quoted && (c == ')' || c == ']' || c == '}') && --depth == 0) break;
    if (!quoted && depth == 1 && c == ',') {
      arguments.emplace_back();
    } else {
      arguments.back() += c;
    }
  }
  for (std::string& argument : arguments) {
    argument.erase(0, argument.find_first_not_of(" \n\t"));
    argument.erase(argument.find_last_not_of(" \n\t") + 1);
  }
  if (arguments.size() == 1 && arguments[0].empty()) arguments.clear();
  return arguments;
}

bool is_literal(const std::string& argument) {
  return argument.size() >= 2 && argument.front() == '"' && argument.find('"', 1) == argument.size() - 1;
}

std::string unquoted(const std::string& literal) {
  return literal.substr(1, literal.size() - 2);
}

std::string place_of(const std::string& name, const std::string& text, std::size_t at) {
  return name + ':' +
         std::to_string(1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
}

bool is_word(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

bool is_id(const std::string& text) {
  return !text.empty() && std::isupper(static_cast<unsigned char>(text[0])) &&
         std::all_of(text.begin(), text.end(), is_word);
}

// Calls `visit(start, text)` for everything in double quotes.
template <class Visit>
void for_each_literal(const std::string& text, const Visit& visit) {
  for (std::size_t at = text.find('"'); at != std::string::npos; at = text.find('"', at)) {
    std::size_t end = at + 1;
    while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
    if (end >= text.size()) return;
    visit(at, text.substr(at + 1, end - at - 1));
    at = end + 1;
  }
}

// Calls `visit(open)` with the place of the opening bracket of everything that looks like a call of `name`.
template <class Visit>
void for_each_call(const std::string& text, const std::string& name, const Visit& visit) {
  for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
    if (at > 0 && is_word(text[at - 1])) continue;
    std::size_t open = at + name.size();
    if (open < text.size() && is_word(text[open])) continue;
    // A variable's name may stand between a type and its bracket.
    while (open < text.size() && (is_word(text[open]) || std::isspace(static_cast<unsigned char>(text[open])))) ++open;
    if (open < text.size() && (text[open] == '(' || text[open] == '{')) visit(open);
  }
}

// The name of what a text that begins at `literal` is given to: before "=" or "{", perhaps with "[]" between.
std::string constant_before(const std::string& text, std::size_t literal) {
  std::size_t end = literal;
  const auto skip = [&](const char* characters) {
    while (end > 0 && std::string(characters).find(text[end - 1]) != std::string::npos) --end;
  };
  skip(" \n\t");
  if (end == 0 || (text[end - 1] != '=' && text[end - 1] != '{')) return {};
  --end;
  skip(" \n\t[]");
  std::size_t start = end;
  while (start > 0 && is_word(text[start - 1])) --start;
  return text.substr(start, end - start);
}

Constants constants_of(const std::string& text) {
  Constants constants;
  for_each_literal(text, [&](std::size_t at, const std::string& value) {
    if (value.find(':') == std::string::npos) return;
    const std::string name = constant_before(text, at);
    if (!name.empty()) constants[name] = value;
  });
  return constants;
}

// "" where the group isn't known from the text.
std::string group_of(const std::string& argument, const Constants& near, const Constants& folder) {
  if (is_literal(argument)) return unquoted(argument);
  const std::string name = argument.substr(argument.rfind(':') + 1);
  if (near.count(name)) return near.at(name);
  return folder.count(name) ? folder.at(name) : std::string();
}

bool expands_a_pack(const std::string& argument) {
  return argument.size() > 3 && argument.compare(argument.size() - 3, 3, "...") == 0;
}

std::size_t count_from(const std::vector<std::string>& arguments, std::size_t first) {
  if (std::any_of(arguments.begin(), arguments.end(), expands_a_pack)) return RaisedMessage::unknown;
  return arguments.size() - first;
}

// The functions that take the id as a parameter, by name, with the group that they raise it in.
using Helpers = std::map<std::string, std::string>;

// The function around a call: the last one before it that declares a parameter `id`.
void note_helper(const std::string& text, std::size_t call, const std::string& group, Helpers& helpers) {
  constexpr std::size_t reach = 1500;
  static const std::regex head(
      R"re((\w+)\s*\((?:[^(){};]*,)?\s*(?:const char\s*\*|const std::string\s*&|std::string_view)\s*(?:const\s+)?id\b)re");
  const std::size_t start = call > reach ? call - reach : 0;
  const std::string before = text.substr(start, call - start);
  std::string name;
  for (std::sregex_iterator it(before.begin(), before.end(), head), end; it != end; ++it) name = (*it)[1];
  if (!name.empty()) helpers[name] = group;
}

void read_calls(const std::string& name, const std::string& text, const Constants& folder, SourceMessages& found,
                Helpers& helpers) {
  const Constants near = constants_of(text);
  for (const char* function : {"throw_message", "MessageId"}) {
    for_each_call(text, function, [&](std::size_t at) {
      const std::vector<std::string> arguments = arguments_at(text, at);
      if (arguments.size() < 2) return;
      const std::string group = group_of(arguments[0], near, folder);
      if (group.empty()) return;
      if (!is_literal(arguments[1])) return note_helper(text, at, group, helpers);
      found.raised.push_back(
          {place_of(name, text, at), group + ':' + unquoted(arguments[1]), count_from(arguments, 2)});
    });
  }
}

void read_helper_calls(const std::string& name, const std::string& text, const Helpers& helpers,
                       SourceMessages& found) {
  for (const auto& helper : helpers) {
    for_each_call(text, helper.first, [&](std::size_t at) {
      for (const std::string& argument : arguments_at(text, at)) {
        if (!is_literal(argument) || !is_id(unquoted(argument))) continue;
        found.raised.push_back(
            {place_of(name, text, at), helper.second + ':' + unquoted(argument), RaisedMessage::unknown});
        return;
      }
    });
  }
}

void read_literals(const std::string& text, std::set<std::string>& literals) {
  for_each_literal(text, [&](std::size_t, const std::string& literal) {
    const std::string id = literal.substr(literal.rfind(':') + 1);  // a key may stand as a whole
    if (is_id(id)) literals.insert(id);
  });
}

// Helpers are known in their own folder and those below, so that equal names elsewhere don't meet.
void read_folder(const Files& files, Helpers helpers, const Files& below, SourceMessages& found) {
  Constants constants;
  for (const auto& [name, text] : files) constants.merge(constants_of(text));
  for (const auto& [name, text] : files) {
    read_calls(name, text, constants, found, helpers);
    read_literals(text, found.literals);
  }
  for (const auto& [name, text] : files) read_helper_calls(name, text, helpers, found);
  for (const auto& [name, text] : below) read_helper_calls(name, text, helpers, found);
}

bool is_source(const fs::path& path) {
  return path.extension() == ".cpp" || path.extension() == ".hpp";
}

}  // namespace

SourceMessages read_sources(const Files& files) {
  Files plain;
  for (const auto& [name, text] : files) plain[name] = without_comments(text);
  SourceMessages found;
  read_folder(plain, {}, {}, found);
  return found;
}

SourceMessages read_sources(const std::string& root) {
  static const std::set<std::string> rooms{"apps",     "checks",  "common",   "domains",
                                           "embedded", "formats", "platform", "views"};
  std::map<fs::path, Files> folders;
  for (const std::string& room : rooms) {
    if (!fs::exists(fs::path(root) / room)) continue;
    for (const auto& entry : fs::recursive_directory_iterator(fs::path(root) / room)) {
      if (!entry.is_regular_file() || !is_source(entry.path())) continue;
      std::ifstream in(entry.path(), std::ios::binary);
      const fs::path name = fs::relative(entry.path(), root);
      folders[name.parent_path()][name.string()] = without_comments({std::istreambuf_iterator<char>(in), {}});
    }
  }
  SourceMessages found;
  for (const auto& [folder, files] : folders) {
    Files below;
    for (const auto& [other, inner] : folders) {
      if (other != folder && other.string().rfind(folder.string() + '/', 0) == 0)
        below.insert(inner.begin(), inner.end());
    }
    read_folder(files, {}, below, found);
  }
  return found;
}

}  // namespace kinemo::test
