#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "formats/spice/diagram_names.hpp"
#include "formats/spice/write_netlist.hpp"

#include <sstream>

namespace kinemo::app {

namespace {

/// Without expressions nothing depends on run-time parameters, and none is written.
gl::core::Model exported(const CompiledModel& compiled, const Options& options) {
  const bool keeps = options.runtime_parameters != "off";
  return keeps ? compiled.model : gl::core::Model(compiled.model.graph(), gl::core::RuntimeParameterInfo());
}

}  // namespace

int run_export(Session& session) {
  embedded::block_diagram::Diagram* diagram = nullptr;
  const boost::optional<CompiledModel> compiled = session.read_and_compile(diagram);
  if (!compiled) return exit_code::model_has_errors;
  formats::DiagnosticList list;
  std::ostringstream text;
  const gl::core::Model model = exported(*compiled, session.options());
  const formats::spice::DiagramNames names(*diagram, session.model_file());
  const bool written = formats::spice::write_netlist(text, model, diagram->name(), names, list);
  session.console().diagnostics(list);
  session.console().end_stage("export");
  if (!written) return exit_code::model_has_errors;
  Output output(session.options().output);
  output.stream() << text.str();
  output.commit();
  session.console().end_stage("write");
  return exit_code::clean;
}

}  // namespace kinemo::app
