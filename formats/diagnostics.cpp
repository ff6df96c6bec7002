#include "formats/diagnostics.hpp"

#include <algorithm>
#include <cctype>
#include <tuple>

namespace kinemo::formats {

Diagnostic& DiagnosticList::add(Severity severity, std::string rule, const SourcePlace& place, std::string text) {
  if (severity == Severity::error) {
    ++m_errors;
  }
  return m_all.emplace_back(
      Diagnostic{severity, std::move(rule), place.file, place.line, place.column, std::move(text), {}, {}});
}

void DiagnosticList::for_each(const std::function<void(Diagnostic&)>& complete) {
  for (Diagnostic& diagnostic : m_all) {
    complete(diagnostic);
  }
}

void DiagnosticList::sort() {
  std::stable_sort(m_all.begin(), m_all.end(), [](const Diagnostic& left, const Diagnostic& right) {
    return std::tie(left.file, left.line, left.column) < std::tie(right.file, right.line, right.column);
  });
}

std::string_view to_string(Severity severity) {
  switch (severity) {
    case Severity::error:
      return "error";
    case Severity::warning:
      return "warning";
    case Severity::note:
      return "note";
  }
  return "error";
}

namespace {

std::string place_prefix(const std::string& file, std::size_t line, std::size_t column) {
  std::string prefix = file;
  if (line != 0) {
    prefix += (prefix.empty() ? "" : ":") + std::to_string(line);
    if (column != 0) {
      prefix += ":" + std::to_string(column);
    }
  }
  return prefix.empty() ? prefix : prefix + ": ";
}

/// Further lines of a note stand below its first one, so that a caret stays under what it points at.
std::string indented(const std::string& text) {
  std::string result;
  for (const char c : text) {
    result += c;
    if (c == '\n') result += "    ";
  }
  return result;
}

/// Edit distance without regard to case, in two rows of the table; names are cut so that it stays cheap.
std::size_t edit_distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  for (std::size_t column = 0; column <= right.size(); ++column) {
    row[column] = column;
  }
  const auto lower = [](char c) { return std::tolower(static_cast<unsigned char>(c)); };
  for (std::size_t line = 1; line <= left.size(); ++line) {
    std::size_t diagonal = row[0];
    row[0] = line;
    for (std::size_t column = 1; column <= right.size(); ++column) {
      const std::size_t change = diagonal + (lower(left[line - 1]) == lower(right[column - 1]) ? 0 : 1);
      diagonal = row[column];
      row[column] = std::min({change, row[column] + 1, row[column - 1] + 1});
    }
  }
  return row[right.size()];
}

constexpr std::size_t longest_compared_name = 64;

}  // namespace

std::string to_string(const Diagnostic& diagnostic) {
  std::string text = place_prefix(diagnostic.file, diagnostic.line, diagnostic.column);
  text += std::string(to_string(diagnostic.severity)) + ": " + diagnostic.text + " [" + diagnostic.rule + "]";
  for (const DiagnosticNote& note : diagnostic.notes) {
    text += "\n  " + place_prefix(note.place.file, note.place.line, note.place.column) + "note: " + indented(note.text);
  }
  return text;
}

std::string_view nearest_name(std::string_view name, const std::vector<std::string_view>& candidates) {
  std::string_view best;
  if (name.empty() || name.size() > longest_compared_name) {
    return best;
  }
  std::size_t best_distance = std::min(std::max<std::size_t>(1, name.size() / 3), name.size() - 1) + 1;
  for (const std::string_view candidate : candidates) {
    const std::size_t difference =
        candidate.size() > name.size() ? candidate.size() - name.size() : name.size() - candidate.size();
    if (difference >= best_distance || candidate.size() > longest_compared_name) {
      continue;
    }
    const std::size_t distance = edit_distance(name, candidate);
    if (distance < best_distance) {
      best = candidate;
      best_distance = distance;
    }
  }
  return best;
}

}  // namespace kinemo::formats
