#include "apps/kinemo/line_editor.hpp"

#include <histedit.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace kinemo::app {

namespace {

namespace fs = std::filesystem;
using embedded::scripting_runtime::Completion;

constexpr int history_size = 2000;
constexpr std::size_t most_shown = 100;

/// Empty where the user has no such folder.
fs::path history_file() {
  const char* state = std::getenv("XDG_STATE_HOME");
  const char* home = std::getenv("HOME");
  if (state != nullptr && *state != '\0') return fs::path(state) / "kinemo" / "history";
  if (home != nullptr && *home != '\0') return fs::path(home) / ".local" / "state" / "kinemo" / "history";
  return {};
}

/// Below the line, in the order in which they come.
void show_candidates(const std::vector<std::string>& candidates) {
  std::fputc('\n', stdout);
  for (std::size_t i = 0; i < candidates.size() && i < most_shown; ++i) {
    std::fprintf(stdout, "%s  ", candidates[i].c_str());
  }
  if (candidates.size() > most_shown) std::fprintf(stdout, "... %zu more", candidates.size() - most_shown);
  std::fputc('\n', stdout);
}

}  // namespace

struct LineEditor::State {
  explicit State(Complete its_complete) : complete(std::move(its_complete)), history(::history_init()) {
    std::setlocale(LC_CTYPE, "");
    editor = ::el_init("kinemo", stdin, stdout, stderr);
    HistEvent event;
    ::history(history, &event, H_SETSIZE, history_size);
    ::history(history, &event, H_SETUNIQUE, 1);
    file = history_file();
    if (!file.empty()) ::history(history, &event, H_LOAD, file.c_str());
    ::el_set(editor, EL_CLIENTDATA, this);
    ::el_set(editor, EL_PROMPT, show_prompt);
    ::el_set(editor, EL_EDITOR, "emacs");
    ::el_set(editor, EL_HIST, ::history, history);
    // The narrow call would copy the texts and never free them.
    ::el_wset(editor, EL_ADDFN, L"kinemo-complete", L"Complete a name", complete_name);
    ::el_wset(editor, EL_ADDFN, L"kinemo-abandon", L"Clear the line", abandon_line);
    ::el_set(editor, EL_BIND, "^I", "kinemo-complete", nullptr);
    ::el_set(editor, EL_BIND, "^C", "kinemo-abandon", nullptr);
    ::el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    // While a line is edited Ctrl-C is a character; while something runs it is a signal.
    ::el_set(editor, EL_SETTY, "-d", "-isig", nullptr);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  ~State() {
    save_history();
    ::el_end(editor);
    ::history_end(history);
  }

  static State& of(EditLine* editor) {
    void* state = nullptr;
    ::el_get(editor, EL_CLIENTDATA, &state);
    return *static_cast<State*>(state);
  }

  static char* show_prompt(EditLine* editor) { return of(editor).prompt.data(); }

  static unsigned char abandon_line(EditLine* editor, int) {
    of(editor).abandoned = true;
    std::fputs("^C", stdout);
    return CC_NEWLINE;
  }

  static unsigned char insert(EditLine* editor, const char* text) {
    ::el_insertstr(editor, text);
    return CC_REFRESH;
  }

  /// Whether more has come behind a tab than people type at once.
  static bool is_pasted() {
    constexpr int most_typed = 2;
    int waiting = 0;
    return ::ioctl(STDIN_FILENO, FIONREAD, &waiting) == 0 && waiting > most_typed;
  }

  /// A tab in front of a line, or in a text that is pasted, stands for blanks.
  static unsigned char complete_name(EditLine* editor, int) {
    const LineInfo* info = ::el_line(editor);
    const std::string before(info->buffer, info->cursor);
    if (before.find_first_not_of(' ') == std::string::npos) return insert(editor, "    ");
    if (is_pasted()) return insert(editor, " ");
    const Completion found = of(editor).complete(before);
    if (found.candidates.empty()) return CC_REFRESH_BEEP;
    const std::size_t typed = before.size() - found.begin;
    const std::string insertion = embedded::scripting_runtime::common_beginning(found.candidates).substr(typed);
    if (!insertion.empty()) ::el_insertstr(editor, insertion.c_str());
    if (found.candidates.size() == 1) return CC_REFRESH;
    if (!insertion.empty()) return CC_REFRESH_BEEP;
    show_candidates(found.candidates);
    return CC_REDISPLAY;
  }

  /// A history that can't be kept is nothing that users must hear of.
  void save_history() {
    if (file.empty()) return;
    std::error_code ignored;
    fs::create_directories(file.parent_path(), ignored);
    HistEvent event;
    ::history(history, &event, H_SAVE, file.c_str());
  }

  Complete complete;
  History* history;
  EditLine* editor;
  fs::path file;
  std::string prompt;
  bool abandoned = false;
};

LineEditor::LineEditor(Complete complete) : state_(std::make_unique<State>(std::move(complete))) {}

LineEditor::~LineEditor() = default;

LineEditor::Result LineEditor::read(const std::string& prompt, std::string& line) {
  state_->prompt = prompt;
  state_->abandoned = false;
  int count = 0;
  ::el_set(state_->editor, EL_PREP_TERM, 1);  // before the prompt stands there, so that Ctrl-C behind it is a key
  const char* text = ::el_gets(state_->editor, &count);
  if (state_->abandoned) {
    std::fputc('\n', stdout);
    std::fflush(stdout);
    return Result::abandoned;
  }
  if (text == nullptr || count <= 0) {
    std::fputc('\n', stdout);
    std::fflush(stdout);
    return Result::end;
  }
  line.assign(text, static_cast<std::size_t>(count));
  while (!line.empty() && (line.back() == '\n' || line.back() == '\r')) line.pop_back();
  HistEvent event;
  if (line.find_first_not_of(" \t") != std::string::npos) ::history(state_->history, &event, H_ENTER, line.c_str());
  return Result::line;
}

}  // namespace kinemo::app
