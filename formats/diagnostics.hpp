// What the readers of model files have to say about a file: errors, warnings and notes, each with its place. A list is
// owned by who starts the reading; readers only add to it. Positions count from 1; 0 means that there is none.
#pragma once

#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace kinemo::formats {

enum class Severity { error, warning, note };

/// A place in a file. Line and column count from 1, columns in bytes.
struct SourcePlace {
  std::string file;
  std::size_t line = 0;
  std::size_t column = 0;
};

/// What explains a diagnostic: the other place, or what would have been valid.
struct DiagnosticNote {
  std::string text;
  SourcePlace place;  ///< without a line where the note has no place of its own
};

/// What a diagnostic is about in a diagram, so that a picture can point at it.
struct DiagnosticObject {
  std::string block;  ///< full path
  std::string port;   ///< of the block; empty where the whole block is meant
  bool net = false;   ///< the net of the port is meant, through all levels
};

struct Diagnostic {
  Severity severity = Severity::error;
  std::string rule;  ///< stable id, `area:name`
  std::string file;
  std::size_t line = 0;
  std::size_t column = 0;
  std::string text;
  std::vector<DiagnosticNote> notes;
  std::vector<DiagnosticObject> objects;
};

class DiagnosticList {
 public:
  /// Adds one and returns it for notes; the reference is good until the next one is added.
  Diagnostic& add(Severity severity, std::string rule, const SourcePlace& place, std::string text);
  Diagnostic& error(std::string rule, const SourcePlace& place, std::string text) {
    return add(Severity::error, std::move(rule), place, std::move(text));
  }
  Diagnostic& warning(std::string rule, const SourcePlace& place, std::string text) {
    return add(Severity::warning, std::move(rule), place, std::move(text));
  }
  Diagnostic& note(std::string rule, const SourcePlace& place, std::string text) {
    return add(Severity::note, std::move(rule), place, std::move(text));
  }

  const std::vector<Diagnostic>& all() const { return m_all; }
  bool has_errors() const { return m_errors != 0; }
  std::size_t error_count() const { return m_errors; }
  bool empty() const { return m_all.empty(); }

  /// Lets `complete` add notes and objects to each.
  void for_each(const std::function<void(Diagnostic&)>& complete);
  /// Orders by file, line and column; those of one place stay as they were added.
  void sort();

 private:
  std::vector<Diagnostic> m_all;
  std::size_t m_errors = 0;
};

/// `file:line:col: error: text [rule]`, the notes indented on lines below; without a line break at the end.
std::string to_string(const Diagnostic& diagnostic);
std::string_view to_string(Severity severity);

/// The candidate nearest to `name` by edit distance, empty where none is near enough to be meant.
std::string_view nearest_name(std::string_view name, const std::vector<std::string_view>& candidates);

}  // namespace kinemo::formats
