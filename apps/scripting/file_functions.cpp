// Diagrams as a whole: made, opened, saved, closed.

#include "apps/scripting/diagram_files.hpp"
#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/findings.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "formats/diagram/write_diagram.hpp"
#include "formats/model_format.hpp"
#include "formats/read_text.hpp"
#include "formats/spice/read_netlist.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <filesystem>

namespace kinemo::scripting {

namespace {

void new_diagram(Call& call) {
  const std::string name = text_from(call, 0);
  host::Diagram::create(name);
  if (call.wanted > 0) call.give(name);
}

host::Diagram* read_model(const std::string& file, const std::string& text, formats::DiagnosticList& problems) {
  if (formats::detect_format(file, text) == formats::ModelFormat::diagram) {
    host::Diagram* diagram = formats::diagram::read_diagram_text(text, file, problems);
    if (diagram != nullptr) keep_diagram_file(*diagram, file);
    return diagram;
  }
  return formats::spice::read_netlist_text(text, file, {}, problems);
}

void open_diagram(Call& call) {
  const std::string file = text_from(call, 0);
  std::string reason;
  const auto text = formats::read_text(file, reason);
  if (!text) kmf::throw_message(diagram_messages, "CannotRead", file, reason);
  formats::DiagnosticList problems;
  const host::Diagram* diagram = read_model(file, *text, problems);
  if (diagram == nullptr) {
    throw_with_findings(kmf::Message(kmf::MessageId(diagram_messages, "CannotOpen", file)), problems);
  }
  warn_of_findings(problems);
  call.give(diagram->name());
}

/// Where the diagram is saved to. @throws "NoFile" (name), "NotADiagramFile" (file)
std::string file_from(const Call& call, const host::Diagram& diagram) {
  std::string file = call.size() > 1 ? text_from(call, 1) : diagram_file(diagram);
  if (file.empty()) kmf::throw_message(diagram_messages, "NoFile", diagram.name());
  const std::string extension = kmf::lower(std::filesystem::path(file).extension().string());
  if (extension != ".yaml" && extension != ".yml" && extension != ".json")
    kmf::throw_message(diagram_messages, "NotADiagramFile", file);
  return file;
}

void save_diagram(Call& call) {
  host::Diagram& diagram = diagram_from(call, 0);
  const std::string file = file_from(call, diagram);
  formats::DiagnosticList problems;
  if (!formats::diagram::write_diagram(diagram, file, problems)) {
    throw_with_findings(kmf::Message(kmf::MessageId(diagram_messages, "CannotSave", diagram.name(), file)), problems);
  }
  keep_diagram_file(diagram, file);
}

void close_diagram(Call& call) {
  host::Diagram::close(diagram_from(call, 0));
}

void diagrams(Call& call) {
  std::vector<std::string> names;
  for (const host::Diagram* diagram : host::Diagram::open()) names.push_back(diagram->name());
  call.give(text_column(names));
}

}  // namespace

std::vector<DiagramFunction> file_functions() {
  return {
      {"new_diagram",
       1,
       1,
       new_diagram,
       {"new_diagram(name)\nname = new_diagram(name)", "Opens an empty diagram.",
        "The name is an identifier that no open diagram has."}},
      {"open_diagram",
       1,
       1,
       open_diagram,
       {"name = open_diagram(file)", "Opens a model file, a diagram or a netlist, and tells the diagram's name.",
        "All errors of the file are told in one error. What a reader warns of is a warning."}},
      {"save_diagram",
       1,
       2,
       save_diagram,
       {"save_diagram(name)\nsave_diagram(name, file)", "Writes a diagram as a file (.yaml, .yml or .json).",
        "Without a file, the one that the diagram was opened from or saved to last. The file is replaced at once, "
        "and only by the whole text. Parts that blocks link to stay links as long as their contents are those of "
        "the part's file."}},
      {"close_diagram",
       1,
       1,
       close_diagram,
       {"close_diagram(name)", "Closes a diagram, saved or not, with all that was compiled of it.", ""}},
      {"diagrams", 0, 0, diagrams, {"names = diagrams()", "Names of the open diagrams, as a column of texts.", ""}}};
}

}  // namespace kinemo::scripting
