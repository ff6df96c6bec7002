#include "apps/kinemo/model_input.hpp"

#include "apps/kinemo/console.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "formats/read_text.hpp"
#include "formats/spice/read_netlist.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>

namespace kinemo::app {

namespace {

/// Whether the text begins as a diagram does: a mapping of JSON, or YAML whose first key is one of a model.
bool looks_like_diagram(std::string_view text) {
  constexpr std::array<std::string_view, 7> first_keys{"kinemo",     "name",   "settings", "workspace",
                                                       "dictionary", "blocks", "lines"};
  while (!text.empty()) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(text.size(), line.size() + 1));
    const std::size_t start = line.find_first_not_of(" \t\r");
    if (start == std::string_view::npos || line[start] == '#' || line.substr(start, 3) == "---") continue;
    if (line[start] == '{') return true;
    const std::string_view key = line.substr(0, line.find(':'));
    return key.size() < line.size() && std::find(first_keys.begin(), first_keys.end(), key) != first_keys.end();
  }
  return false;
}

std::string read_input(const Options& options, const std::string& shown) {
  std::string reason;
  const auto text =
      options.model == "-" ? formats::read_text(std::cin, reason) : formats::read_given_text(options.model, reason);
  if (!text) throw UsageError("can't read '" + shown + "': " + reason);
  return *text;
}

}  // namespace

ModelFormat detect_format(const std::string& file, std::string_view text) {
  const std::string extension = kmf::lower(std::filesystem::path(file).extension().string());
  for (const char* known : {".yaml", ".yml", ".json"}) {
    if (extension == known) return ModelFormat::diagram;
  }
  for (const char* known : {".cir", ".sp", ".spice", ".net", ".ckt", ".cdl"}) {
    if (extension == known) return ModelFormat::spice;
  }
  return looks_like_diagram(text) ? ModelFormat::diagram : ModelFormat::spice;
}

embedded::block_diagram::Diagram* read_model(const Options& options, const std::string& shown, Console& console,
                                             formats::DiagnosticList& list) {
  const std::string text = read_input(options, shown);
  const ModelFormat format = options.input_format.empty()        ? detect_format(options.model, text)
                             : options.input_format == "diagram" ? ModelFormat::diagram
                                                                 : ModelFormat::spice;
  console.verbose("reading " + shown + (format == ModelFormat::diagram ? " as a diagram" : " as a netlist"));
  if (format == ModelFormat::diagram) return formats::diagram::read_diagram_text(text, shown, list);
  formats::spice::Options netlist;
  if (options.model == "-") netlist.model_name = "model";
  return formats::spice::read_netlist_text(text, shown, netlist, list);
}

}  // namespace kinemo::app
