#include "formats/spice/card_reader.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>

namespace kinemo::formats::spice {

namespace {

constexpr std::size_t deepest_include = 100;
constexpr std::size_t most_lines = 50'000'000;

std::string first_word(std::string_view line) {
  const std::string_view text = trimmed(line);
  return lower_case(text.substr(0, text.find_first_of(" \t,()='\"{")));
}

bool is_include(std::string_view word) {
  return word.substr(0, 4) == ".inc";
}

/// The line without its comment; empty for a comment line. Two slashes in the name of a file begin none.
std::string_view without_comment(std::string_view line) {
  const std::string_view text = trimmed(line);
  if (text.empty() || text.front() == '*') {
    return {};
  }
  const std::string word = text.front() == '.' ? first_word(text) : std::string();
  const bool names_file = is_include(word) || word == ".lib";
  const std::size_t begin = static_cast<std::size_t>(text.data() - line.data());
  for (std::size_t at = begin; at < line.size(); ++at) {
    const char c = line[at];
    const bool after_gap = at == begin || is_blank(line[at - 1]) || line[at - 1] == ',';
    const bool slashes =
        c == '/' && at + 1 < line.size() && line[at + 1] == '/' && (!names_file || is_blank(line[at - 1]));
    if (c == ';' || (c == '$' && after_gap) || slashes) {
      return line.substr(0, at);
    }
  }
  return line;
}

/// Takes a text apart into lines; "\n", "\r\n" and "\r" end one.
class LineReader {
 public:
  explicit LineReader(std::string_view text) : m_text(text) {}

  bool next(std::string_view& line) {
    if (m_at >= m_text.size()) {
      return false;
    }
    const std::size_t end = std::min(m_text.find_first_of("\r\n", m_at), m_text.size());
    line = m_text.substr(m_at, end - m_at);
    m_at = end + (end + 1 < m_text.size() && m_text[end] == '\r' && m_text[end + 1] == '\n' ? 2 : 1);
    ++m_number;
    return true;
  }
  std::uint32_t number() const { return m_number; }

 private:
  std::string_view m_text;
  std::size_t m_at = 0;
  std::uint32_t m_number = 0;
};

/// Cuts the two backslashes off that join the next line to this one.
bool cut_backslashes(std::string_view& text) {
  const bool joins = text.size() >= 2 && text.substr(text.size() - 2) == "\\\\";
  text = joins ? trimmed(text.substr(0, text.size() - 2)) : text;
  return joins;
}

class CardReader {
 public:
  CardReader(CardList& result, DiagnosticList& diagnostics) : m_result(result), m_diagnostics(diagnostics) {}

  void read_top(const std::shared_ptr<const TextFile>& file) {
    m_top_folder = file->location.parent_path();
    m_files.add(file);
    read_file(file, true, {});
  }

 private:
  /// One file, or one section of it, that is being read.
  struct Level {
    std::shared_ptr<const TextFile> file;
    bool is_top = false;
    std::string wanted_section;  ///< empty: the whole file
    bool in_section = false;     ///< inside of the wanted section
    std::string other_section;   ///< name of the section that is being skipped
    bool section_found = false;
    Place section_begin;
    bool in_control = false;
    Place control_begin;
    bool ended = false;
    bool joins_next = false;      ///< the last line ended with what joins the next one to it
    std::optional<Card> pending;  ///< may still get continuation lines
  };

  void read_file(const std::shared_ptr<const TextFile>& file, bool is_top, const std::string& section) {
    Level level;
    level.file = file;
    level.is_top = is_top;
    level.wanted_section = section;
    keep(file);
    m_active.push_back({file.get(), section});
    LineReader lines(file->text);
    std::string_view line;
    while (!level.ended && lines.next(line) && count_line(level, lines.number())) {
      read_line(level, line, lines.number());
    }
    flush(level);
    check_closed(level);
    m_active.pop_back();
  }

  void keep(const std::shared_ptr<const TextFile>& file) {
    if (m_kept.insert(file.get()).second) {
      m_result.files.push_back(file);
    }
  }

  bool count_line(const Level& level, std::uint32_t number) {
    if (++m_lines == most_lines) {
      m_diagnostics.error("spice:too_long", source_place({level.file.get(), number, 1}),
                          "the netlist and what it includes have more than " + std::to_string(most_lines) + " lines");
    }
    return m_lines < most_lines;
  }

  void read_line(Level& level, std::string_view line, std::uint32_t number) {
    if (level.is_top && number == 1) {
      m_result.title = std::string(trimmed(line));
      return;
    }
    if (level.in_control) {
      level.in_control = first_word(line) != ".endc";
      return;
    }
    const std::string_view kept = without_comment(line);
    std::string_view text = trimmed(kept);
    if (text.empty()) {
      return;
    }
    const bool is_joined = level.joins_next;
    level.joins_next = cut_backslashes(text);
    const Place place{level.file.get(), number, static_cast<std::uint32_t>(text.data() - line.data() + 1)};
    if (text.empty()) {
      level.joins_next = is_joined || level.pending;
    } else if (text.front() == '+') {
      continue_card(level, text.substr(1), place);
    } else if (is_joined && level.pending) {
      level.pending->append(text, place);
    } else {
      flush(level);
      begin_card(level, text, place);
    }
    if (level.pending && kept.size() < line.size() && line[kept.size()] == '$') {
      level.pending->set_cut_at_dollar();
    }
  }

  void continue_card(Level& level, std::string_view text, Place place) {
    ++place.column;
    if (level.pending) {
      level.pending->append(text, place);
    } else if (level.wanted_section.empty()) {
      --place.column;
      m_diagnostics.error("spice:nothing_to_continue", source_place(place),
                          "a continuation line, but no statement stands before it in this file");
    }
  }

  void begin_card(Level& level, std::string_view text, const Place& place) {
    const std::string word = text.front() == '.' ? first_word(text) : std::string();
    if (word == ".end" && text.size() == word.size() && level.wanted_section.empty()) {
      level.ended = level.is_top;  // one in an included file ends nothing
      return;
    }
    if (word == ".control") {
      level.in_control = true;
      level.control_begin = place;
      if (is_wanted(level)) {
        m_result.control_sections.emplace_back(text, place);
      }
      return;
    }
    level.pending.emplace(text, place);
  }

  static bool is_wanted(const Level& level) { return level.wanted_section.empty() || level.in_section; }

  /// Hands on the card that can't be continued any more.
  void flush(Level& level) {
    if (!level.pending) {
      return;
    }
    Card card = std::move(*level.pending);
    level.pending.reset();
    const std::string word = card.text().front() == '.' ? first_word(card.text()) : std::string();
    if (word == ".lib" || word == ".endl") {
      library_card(level, card, word == ".lib");
    } else if (!is_wanted(level)) {
      return;
    } else if (word == ".endc") {
      m_diagnostics.error("spice:unbalanced", source_place(card.place()), "'.endc' without a '.control' before it");
    } else if (is_include(word)) {
      include(level, card);
    } else {
      card.normalize();
      m_result.cards.push_back(std::move(card));
    }
  }

  // --- library sections

  void library_card(Level& level, const Card& card, bool begins) {
    CardCursor cursor(card);
    cursor.next();
    const Place place = cursor.place();
    const std::string name(enclosed_text(cursor.next()));
    const bool has_section = !cursor.at_end();
    if (begins && has_section) {
      if (is_wanted(level)) {
        include_section(level, name, place, lower_case(enclosed_text(cursor.next())));
      }
    } else if (begins) {
      begin_section(level, card, lower_case(name));
    } else {
      end_section(level, card, lower_case(name));
    }
  }

  void begin_section(Level& level, const Card& card, const std::string& name) {
    if (level.wanted_section.empty()) {
      m_diagnostics.error(name.empty() ? "spice:bad_card" : "spice:section_outside_library", source_place(card.place()),
                          name.empty() ? "'.lib' needs a file and the name of a section"
                                       : "section '" + name +
                                             "' of a library begins here, but no section of this file "
                                             "was asked for; valid is '.lib file section'");
    } else if (level.in_section || !level.other_section.empty()) {
      m_diagnostics
          .error("spice:unbalanced", source_place(card.place()),
                 "section '" + name + "' begins inside of another one; '.endl' is missing")
          .notes.push_back({"the other section begins here", source_place(level.section_begin)});
    } else {
      level.section_begin = card.place();
      level.in_section = name == level.wanted_section && !level.section_found;
      level.section_found = level.section_found || level.in_section;
      level.other_section = level.in_section ? std::string() : name;
    }
  }

  void end_section(Level& level, const Card& card, const std::string& name) {
    const std::string& open = level.in_section ? level.wanted_section : level.other_section;
    if (open.empty()) {
      m_diagnostics.error("spice:unbalanced", source_place(card.place()), "'.endl' without a '.lib' before it");
      return;
    }
    if (!name.empty() && name != open) {
      m_diagnostics.warning("spice:section_name", source_place(card.place()),
                            "'.endl " + name + "' ends the section '" + open + "'");
    }
    level.in_section = false;
    level.other_section.clear();
  }

  void check_closed(const Level& level) {
    if (level.in_section || !level.other_section.empty()) {
      m_diagnostics.error("spice:unbalanced", source_place(level.section_begin),
                          "this section of a library is never ended; '.endl' is missing");
    }
    if (level.in_control) {
      m_diagnostics.error("spice:unbalanced", source_place(level.control_begin),
                          "this control section is never ended; '.endc' is missing");
    }
  }

  // --- other files

  void include(const Level& level, const Card& card) {
    CardCursor cursor(card);
    cursor.next();
    const Place place = cursor.place();
    std::string_view name = cursor.rest();
    name = is_enclosed(name) ? enclosed_text(name) : name;
    if (name.empty()) {
      m_diagnostics.error("spice:bad_card", source_place(card.place()), "'.include' needs the name of a file");
      return;
    }
    if (const auto file = load(level, std::string(name), place)) {
      if (may_enter(*file, {}, place)) {
        read_file(file, false, {});
      }
    }
  }

  void include_section(const Level& level, const std::string& name, const Place& place, const std::string& section) {
    const auto file = load(level, name, place);
    if (file == nullptr || !may_enter(*file, section, place)) {
      return;
    }
    if (!has_section(*file, section)) {
      report_missing_section(*file, section, place);
    } else {
      read_file(file, false, section);
    }
  }

  std::shared_ptr<const TextFile> load(const Level& level, const std::string& name, const Place& place) {
    const std::filesystem::path given(name);
    const std::filesystem::path beside = level.file->location.parent_path() / given;
    std::error_code code;
    const bool from_top = !std::filesystem::exists(beside, code) && std::filesystem::exists(m_top_folder / given, code);
    const std::filesystem::path path = from_top ? m_top_folder / given : beside;
    std::string reason;
    auto file = m_files.load(path, path.string(), reason);
    if (file == nullptr) {
      m_diagnostics.error("spice:missing_file", source_place(place), "can't read '" + path.string() + "': " + reason);
    }
    return file;
  }

  bool may_enter(const TextFile& file, const std::string& section, const Place& place) {
    const auto same = [&](const auto& active) { return active.first == &file && active.second == section; };
    if (std::any_of(m_active.begin(), m_active.end(), same)) {
      m_diagnostics.error("spice:include_cycle", source_place(place), "'" + file.shown_name + "' includes itself");
      return false;
    }
    if (m_active.size() >= deepest_include) {
      m_diagnostics.error("spice:include_depth", source_place(place),
                          "files include each other more than " + std::to_string(deepest_include) + " levels deep");
      return false;
    }
    return true;
  }

  /// Names of the sections of a library file, in their order.
  const std::vector<std::string>& sections(const TextFile& file) {
    auto [entry, is_new] = m_sections.try_emplace(&file);
    if (is_new) {
      LineReader lines(file.text);
      for (std::string_view line; lines.next(line);) {
        const Card card(trimmed(without_comment(line)), {});
        CardCursor cursor(card);
        if (lower_case(cursor.next()) == ".lib") {
          const std::string name = lower_case(enclosed_text(cursor.next()));
          if (!name.empty() && cursor.at_end()) {
            entry->second.push_back(name);
          }
        }
      }
    }
    return entry->second;
  }

  bool has_section(const TextFile& file, const std::string& section) {
    const auto& names = sections(file);
    return std::find(names.begin(), names.end(), section) != names.end();
  }

  void report_missing_section(const TextFile& file, const std::string& section, const Place& place) {
    Diagnostic& error = m_diagnostics.error("spice:missing_section", source_place(place),
                                            "'" + file.shown_name + "' has no section '" + section + "'");
    const auto& names = sections(file);
    std::string all;
    for (const std::string& name : names) {
      all += (all.empty() ? "" : ", ") + name;
    }
    const std::string nearest(nearest_name(section, {names.begin(), names.end()}));
    error.notes.push_back({all.empty()       ? "it has no sections at all"
                           : nearest.empty() ? "its sections are " + all
                                             : "did you mean '" + nearest + "'? Its sections are " + all,
                           {}});
  }

  CardList& m_result;
  DiagnosticList& m_diagnostics;
  TextFiles m_files;
  std::filesystem::path m_top_folder;
  std::vector<std::pair<const TextFile*, std::string>> m_active;
  std::set<const TextFile*> m_kept;
  std::map<const TextFile*, std::vector<std::string>> m_sections;
  std::size_t m_lines = 0;
};

}  // namespace

CardList read_cards(const std::shared_ptr<const TextFile>& top, DiagnosticList& diagnostics) {
  CardList result;
  CardReader(result, diagnostics).read_top(top);
  return result;
}

}  // namespace kinemo::formats::spice
