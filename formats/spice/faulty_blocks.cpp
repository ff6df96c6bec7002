#include "formats/spice/faulty_blocks.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "embedded/block_diagram/diagram.hpp"
#include "platform/foundation/strings.hpp"

namespace kinemo::formats::spice {

namespace {

namespace host = embedded::block_diagram;

/// A line of a file.
using Line = std::pair<std::string, std::size_t>;

Line line_of(const Diagnostic& diagnostic) {
  return {diagnostic.file, diagnostic.line};
}

/// Cards of several lines.
class CardLines {
 public:
  explicit CardLines(const Netlist& netlist) {
    for (const FaultyCard& card : netlist.faulty_cards) {
      const SourcePlace place = source_place(card.place);
      m_last_lines[{place.file, place.line}] = card.last_line;
    }
  }

  /// The line where the card begins that a line belongs to; the line itself outside of them.
  Line first_of(const Line& line) const {
    auto card = m_last_lines.upper_bound(line);
    if (card == m_last_lines.begin()) {
      return line;
    }
    --card;
    return card->first.first == line.first && line.second <= card->second ? card->first : line;
  }

 private:
  std::map<Line, std::size_t> m_last_lines;
};

/// Paths of blocks by the lines that they were read from.
class BlocksOfLines {
 public:
  void want(const Line& line) { m_paths[line]; }
  const std::string& path(const Line& line) const { return m_paths.at(line); }

  void find(const host::System& top) {
    std::vector<const host::System*> pending{&top};
    while (!pending.empty()) {
      const host::System& system = *pending.back();
      pending.pop_back();
      for (const GTBlock* block : system.blocks()) {
        add(*block);
      }
      for (const GTBlock* block : system.subsystems()) {
        pending.push_back(host::contents(*block));
      }
    }
  }

 private:
  /// Ports of a subsystem stand where its definition begins.
  void add(const GTBlock& block) {
    const host::SourcePlace place = host::sourcePlace(block);
    const auto line =
        place.file == nullptr ? m_paths.end() : m_paths.find({*place.file, static_cast<std::size_t>(place.line)});
    if (line == m_paths.end() || !line->second.empty()) {
      return;
    }
    const GTBlock& shown = host::isIoPort(block) ? *host::parentSystem(block).owner() : block;
    line->second = kmf::ustring_to_utf8_string(shown.getFullPath(false));
  }

  std::map<Line, std::string> m_paths;
};

}  // namespace

void point_at_blocks(const Netlist& netlist, const host::Diagram& diagram, DiagnosticList& diagnostics) {
  const CardLines cards(netlist);
  BlocksOfLines blocks;
  for (const Diagnostic& diagnostic : diagnostics.all()) {
    blocks.want(cards.first_of(line_of(diagnostic)));
  }
  blocks.find(diagram.root());
  diagnostics.for_each([&](Diagnostic& diagnostic) {
    const std::string& path = blocks.path(cards.first_of(line_of(diagnostic)));
    if (diagnostic.severity == Severity::error && diagnostic.objects.empty() && !path.empty()) {
      diagnostic.objects.push_back({path, {}, false});
    }
  });
}

}  // namespace kinemo::formats::spice
