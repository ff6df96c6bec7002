#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "formats/diagram/write_diagram.hpp"
#include "formats/spice/diagram_names.hpp"
#include "formats/spice/write_netlist.hpp"

#include <optional>
#include <sstream>
#include <string>

namespace kinemo::app {

namespace {

/// Without expressions nothing depends on run-time parameters, and none is written.
gl::core::Model exported(const CompiledModel& compiled, const Options& options) {
  const bool keeps = options.runtime_parameters != "off";
  return keeps ? compiled.model : gl::core::Model(compiled.model.graph(), gl::core::RuntimeParameterInfo());
}

std::optional<std::string> netlist_text(Session& session) {
  embedded::block_diagram::Diagram* diagram = nullptr;
  const boost::optional<CompiledModel> compiled = session.read_and_compile(diagram);
  if (!compiled) return std::nullopt;
  formats::DiagnosticList list;
  std::ostringstream text;
  const gl::core::Model model = exported(*compiled, session.options());
  const formats::spice::DiagramNames names(*diagram, session.model_file());
  const bool written = formats::spice::write_netlist(text, model, diagram->name(), names, list);
  session.console().diagnostics(list);
  return written ? std::optional(text.str()) : std::nullopt;
}

/// A diagram is written as it was read: nothing needs to be compiled for that.
std::optional<std::string> diagram_text(Session& session) {
  formats::DiagnosticList list;
  embedded::block_diagram::Diagram* diagram = session.read(list);
  const std::string& file = session.options().output;
  std::optional<std::string> text;
  if (diagram != nullptr) text = formats::diagram::diagram_text(*diagram, file == "-" ? std::string() : file, list);
  session.console().diagnostics(list);
  return text;
}

}  // namespace

int run_export(Session& session) {
  const std::optional<std::string> text =
      session.options().format == "diagram" ? diagram_text(session) : netlist_text(session);
  session.console().end_stage("export");
  if (!text) return exit_code::model_has_errors;
  Output output(session.options().output);
  output.stream() << *text;
  output.commit();
  session.console().end_stage("write");
  return exit_code::clean;
}

}  // namespace kinemo::app
