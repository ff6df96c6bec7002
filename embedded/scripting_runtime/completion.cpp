#include "embedded/scripting_runtime/completion.hpp"

#include "embedded/scripting_runtime/assign.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/completion_texts.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <cctype>
#include <set>

namespace embedded::scripting_runtime {

namespace {

bool is_word_character(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
}

bool begins_with(std::string_view text, std::string_view beginning) {
  return text.substr(0, beginning.size()) == beginning;
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

/// The last bracket that opens what the bracket at the end of the text closes; npos where more stands inside than
/// numbers, names and operators.
std::size_t bracket_before(std::string_view text) {
  const char open = text.back() == ')' ? '(' : '{';
  for (std::size_t at = text.size() - 1; at-- > 0;) {
    const char c = text[at];
    if (c == open) return at;
    if (!is_word_character(c) && std::string_view(" ,:+-*.").find(c) == std::string_view::npos) break;
  }
  return std::string_view::npos;
}

/// Where a chain such as a.b(2).c{1} begins that ends the text.
std::size_t begin_of_chain(std::string_view text) {
  std::size_t begin = text.size();
  while (begin > 0) {
    const char c = text[begin - 1];
    const std::size_t bracket = c == ')' || c == '}' ? bracket_before(text.substr(0, begin)) : begin - 1;
    const bool goes_on = is_word_character(c) || c == '.' || (bracket != std::string_view::npos && bracket < begin - 1);
    if (!goes_on) break;
    begin = bracket;
  }
  return begin;
}

/// Subscripts from plain numbers and `end`; others become 1, as one element of a structure array tells the fields of
/// all.
std::vector<Subscript> literal_subscripts(std::string_view text, const cvArray_tag* indexed) {
  std::vector<std::string> parts(1);
  for (const char c : text) {
    if (c == ',') {
      parts.emplace_back();
    } else if (c != ' ') {
      parts.back() += c;
    }
  }
  const std::vector<std::size_t>& shape = cvGetDimensions(indexed);
  std::vector<Subscript> result;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const std::size_t last = parts.size() == 1 ? cvGetNumberOfElements(indexed) : i < shape.size() ? shape[i] : 1;
    const bool number = !parts[i].empty() && std::all_of(parts[i].begin(), parts[i].end(), ::isdigit);
    const double place = parts[i] == "end" ? static_cast<double>(last) : number ? std::stod(parts[i]) : 1;
    result.emplace_back(Value(place));
  }
  return result;
}

/// The next link of a chain, which is taken off its front.
Step next_step(std::string_view& chain, const cvArray_tag* value) {
  Step step;
  if (chain.front() == '.') {
    const std::size_t end = std::min(chain.find_first_of(".({", 1), chain.size());
    step.kind = Step::Kind::field;
    step.field = chain.substr(1, end - 1);
    chain.remove_prefix(end);
    return step;
  }
  step.kind = chain.front() == '{' ? Step::Kind::cell : Step::Kind::index;
  const std::size_t end = std::min(chain.find_first_of(")}"), chain.size() - 1);
  step.subscripts = literal_subscripts(chain.substr(1, end - 1), value);
  chain.remove_prefix(end + 1);
  return step;
}

/// What a chain leads to from a variable; null where something on the way isn't there. Nothing is called.
cvUniquePtr value_at(const Workspace& workspace, std::string_view chain) {
  const std::size_t end = std::min(chain.find_first_of(".({"), chain.size());
  const cvArray_tag* variable = workspace.get(chain.substr(0, end));
  cvUniquePtr at(variable != nullptr ? cvCreateSharedCopy(variable) : nullptr);
  chain.remove_prefix(end);
  try {
    while (at && !chain.empty()) {
      const Step step = next_step(chain, at.get());
      at = part_at(at.get(), step);
    }
  } catch (const kmf::Exception&) {
    return nullptr;  // such as an index beyond the end: there is nothing to offer
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
  if (workspace.has(owner.substr(0, owner.find_first_of(".({")))) {
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
  if (const TypedText text = typed_text(line); text.quote != 0) return {text.begin, text_candidates(text)};
  const std::size_t begin = begin_of_chain(line);
  const std::string_view typed = line.substr(begin);
  std::set<std::string> found;
  if (asks_for_help(line)) {
    add_matching(help_topics(), "", typed, found);
  } else if (typed.find('.') == std::string_view::npos) {
    if (typed.find_first_of("({") == std::string_view::npos) add_names(typed, workspace, found);
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
