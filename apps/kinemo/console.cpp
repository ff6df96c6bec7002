#include "apps/kinemo/console.hpp"

#include "views/diagnostics_view.hpp"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <sstream>

namespace kinemo::app {

namespace {

/// Unbuffered, and a reader that is gone is no concern of ours.
void write_error_stream(const std::string& text) {
  std::fwrite(text.data(), 1, text.size(), stderr);
}

constexpr std::chrono::milliseconds progress_period{100};
constexpr std::chrono::milliseconds progress_delay{500};

}  // namespace

Console::Console(const Options& options)
    : options_(options),
      show_progress_(options.progress == When::always ||
                     (options.progress == When::automatic && !options.quiet && ::isatty(STDERR_FILENO) != 0)),
      started_(Clock::now()),
      stage_started_(started_),
      progress_time_(started_) {}

Console::~Console() {
  clear_progress();
  if (!options_.timing) return;
  char line[160];
  for (const auto& [name, seconds] : times_) {
    std::snprintf(line, sizeof line, "time: %-10s %9.3f s\n", name.c_str(), seconds);
    write_error_stream(line);
  }
  const double all = std::chrono::duration<double>(Clock::now() - started_).count();
  std::snprintf(line, sizeof line, "time: %-10s %9.3f s\n", "all", all);
  write_error_stream(line);
}

bool Console::color(int descriptor) const {
  if (options_.color != When::automatic) return options_.color == When::always;
  const char* refused = std::getenv("NO_COLOR");
  return (refused == nullptr || *refused == '\0') && ::isatty(descriptor) != 0;
}

void Console::error(const std::string& text) {
  clear_progress();
  write_error_stream(color(STDERR_FILENO) ? "kinemo: \x1b[1;31merror: \x1b[0m" + text + "\n"
                                          : "kinemo: error: " + text + "\n");
}

void Console::info(const std::string& text) {
  if (options_.quiet) return;
  clear_progress();
  write_error_stream(text + "\n");
}

void Console::verbose(const std::string& text) {
  if (options_.verbose) info("kinemo: " + text);
}

void Console::diagnostics(const formats::DiagnosticList& list) {
  clear_progress();
  formats::DiagnosticList shown;
  for (const formats::Diagnostic& diagnostic : list.all()) {
    if (options_.quiet && diagnostic.severity != formats::Severity::error) continue;
    if (!options_.verbose && diagnostic.severity == formats::Severity::note) continue;
    shown
        .add(diagnostic.severity, diagnostic.rule, {diagnostic.file, diagnostic.line, diagnostic.column},
             diagnostic.text)
        .notes = diagnostic.notes;
  }
  std::ostringstream text;
  views::write_diagnostics_text(text, shown, color(STDERR_FILENO));
  write_error_stream(text.str());
}

void Console::progress(const char* stage, std::size_t done, std::size_t total) {
  if (!show_progress_) return;
  const Clock::time_point now = Clock::now();
  if (now - progress_time_ < progress_period || now - started_ < progress_delay) return;
  progress_time_ = now;
  std::string line = std::string("\r\x1b[K") + stage;
  if (total != 0) {
    constexpr std::size_t width = 30;
    const std::size_t filled = std::min(width, done * width / total);
    line += " [" + std::string(filled, '#') + std::string(width - filled, ' ') + "] " + std::to_string(done) + "/" +
            std::to_string(total);
  } else if (done != 0) {
    line += " " + std::to_string(done);
  }
  write_error_stream(line);
  progress_drawn_ = true;
}

void Console::clear_progress() {
  if (!progress_drawn_) return;
  progress_drawn_ = false;
  write_error_stream("\r\x1b[K");
}

void Console::end_stage(const std::string& name) {
  const Clock::time_point now = Clock::now();
  times_.emplace_back(name, std::chrono::duration<double>(now - stage_started_).count());
  stage_started_ = now;
}

}  // namespace kinemo::app
