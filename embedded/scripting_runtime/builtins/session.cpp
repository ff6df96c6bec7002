// Functions of a session: variables of the running workspace, scripts, time, the end.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/quantity.hpp"
#include "embedded/scripting_runtime/script.hpp"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <functional>

namespace embedded::scripting_runtime {

namespace {

/// clear, clear NAME…; "all" is all.
void clear(Call& call) {
  Workspace& workspace = running_workspace();
  bool all = call.size() == 0;
  for (std::size_t i = 0; i < call.size(); ++i) all = all || call.text(i) == "all" || call.text(i) == "-all";
  if (all) return workspace.clear();
  for (std::size_t i = 0; i < call.size(); ++i) workspace.clear(call.text(i));
}

/// Whether a name is as the pattern says, in which "*" stands for any characters. Takes no more than their lengths
/// multiplied.
bool matches(std::string_view name, std::string_view pattern) {
  std::size_t n = 0, p = 0, star = std::string_view::npos, kept = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == '*') {
      star = p++;
      kept = n;
    } else if (p < pattern.size() && pattern[p] == name[n]) {
      ++p, ++n;
    } else if (star != std::string_view::npos) {
      p = star + 1;
      n = ++kept;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of('*', p) == std::string_view::npos;
}

/// Those that the call names, or all. A "*" stands for any characters.
std::vector<std::string> sorted_names(const Call& call) {
  std::vector<std::string> names = running_workspace().names();
  std::vector<std::string> patterns;
  for (std::size_t i = 0; i < call.size(); ++i) patterns.push_back(call.text(i));
  const auto is_named = [&](const std::string& name) {
    return std::any_of(patterns.begin(), patterns.end(), [&](const std::string& p) { return matches(name, p); });
  };
  if (!patterns.empty()) names.erase(std::remove_if(names.begin(), names.end(), std::not_fn(is_named)), names.end());
  std::sort(names.begin(), names.end());
  return names;
}

/// Names in columns, as wide as the display.
void who(Call& call) {
  const std::vector<std::string> names = sorted_names(call);
  if (call.wanted > 0) {
    return call.give(text_column(names));
  }
  constexpr std::size_t gap = 2;
  std::size_t longest = 0;
  for (const std::string& name : names) longest = std::max(longest, name.size() + gap);
  std::string line;
  for (const std::string& name : names) {
    if (!line.empty() && line.size() + longest > display_limits().width) {
      display(line.substr(0, line.find_last_not_of(' ') + 1));
      line.clear();
    }
    line += name + std::string(longest - name.size(), ' ');
  }
  if (!line.empty()) display(line.substr(0, line.find_last_not_of(' ') + 1));
}

/// A line for each variable: name, size, class.
void whos(Call& call) {
  const std::vector<std::string> names = sorted_names(call);
  if (names.empty()) return;
  std::vector<std::string> sizes{"Size"};
  std::size_t name_width = 4;
  std::size_t size_width = sizes.front().size();
  for (const std::string& name : names) {
    sizes.push_back(shape_text(shape_of(running_workspace().get(name))));
    name_width = std::max(name_width, name.size());
    size_width = std::max(size_width, sizes.back().size());
  }
  const auto line = [&](const std::string& name, const std::string& size, const std::string& type) {
    display("  " + name + std::string(name_width - name.size() + 2, ' ') + std::string(size_width - size.size(), ' ') +
            size + "  " + type);
  };
  line("Name", sizes[0], "Class");
  for (std::size_t i = 0; i < names.size(); ++i) {
    line(names[i], sizes[i + 1], cvGetClassName(running_workspace().get(names[i])));
  }
}

/// 1 for a variable, 2 for a file, 5 for a function, 7 for a folder, 0 for nothing.
void exists(Call& call) {
  constexpr double variable = 1;
  constexpr double file = 2;
  constexpr double function = 5;
  constexpr double folder = 7;
  const std::string name = call.text(0);
  if (running_workspace().has(name)) return call.give(variable);
  if (find_function(name)) return call.give(function);
  std::error_code error;
  if (std::filesystem::is_directory(name, error)) return call.give(folder);
  call.give(std::filesystem::exists(name, error) ? file : 0.0);
}

void run_file(Call& call) {
  run_script_file(call.text(0), running_workspace());
}

/// -1 where the text is anything but a whole number.
int whole_number(const std::string& text) {
  int value = -1;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
  return read.ec == std::errc() && read.ptr == text.data() + text.size() ? value : -1;
}

/// The whole number from 0 to 255 that an exit status can be; as a text where `exit 3` is a command.
int exit_code_from(const Call& call) {
  constexpr double most = 255;
  const double code = cvIsChar(call[0]) ? whole_number(call.text(0)) : call.number(0);
  if (cvIsComplex(call[0]) || !(code >= 0 && code <= most) || code != std::floor(code)) {
    constexpr std::size_t width = 40;
    throw_runtime_error("InvalidExitCode", inline_text(call[0], width));
  }
  return static_cast<int>(code);
}

void leave(Call& call) {
  throw ExitRequest(call.size() == 1 ? exit_code_from(call) : 0);
}

/// format long, format short, format
void set_format(Call& call) {
  const std::string name = call.size() > 0 ? call.text(0) : "short";
  if (name != "short" && name != "long") throw_runtime_error("UnknownFormat", name);
  display_limits().digits = name == "long" ? long_digits : short_digits;
}

void clear_screen(Call&) {
  write_output("\x1b[H\x1b[2J");
}

using Clock = std::chrono::steady_clock;

Clock::time_point& started() {
  static Clock::time_point time = Clock::now();
  return time;
}

/// t = tic gives a moment for toc(t).
void start_clock(Call& call) {
  const Clock::time_point now = Clock::now();
  if (call.wanted > 0) {
    call.give(std::chrono::duration<double>(now.time_since_epoch()).count());
  } else {
    started() = now;
  }
}

void read_clock(Call& call) {
  const double now = std::chrono::duration<double>(Clock::now().time_since_epoch()).count();
  const double begin =
      call.size() == 1 ? call.number(0) : std::chrono::duration<double>(started().time_since_epoch()).count();
  if (call.wanted > 0) return call.give(now - begin);
  display("Elapsed time is " + number_text(now - begin, 6) + " seconds.");
}

/// assert(condition), assert(condition, template, …)
void assert_true(Call& call) {
  if (is_true(Value::of(call[0]))) return;
  if (call.size() == 1) throw_runtime_error("AssertionFailed");
  std::vector<cvArray_tag*> rest(call.inputs() + 1, call.inputs() + call.size());
  call_named("error", 0, static_cast<int>(rest.size()), rest.data());
}

}  // namespace

std::vector<Builtin> session_builtins() {
  return {{"clear", 0, any_number, clear}, {"who", 0, any_number, who}, {"whos", 0, any_number, whos},
          {"exist", 1, 1, exists},         {"run", 1, 1, run_file},     {"exit", 0, 1, leave},
          {"quit", 0, 1, leave},           {"clc", 0, 0, clear_screen}, {"format", 0, 1, set_format},
          {"tic", 0, 0, start_clock},      {"toc", 0, 1, read_clock},   {"assert", 1, any_number, assert_true}};
}

}  // namespace embedded::scripting_runtime
