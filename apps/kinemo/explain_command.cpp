#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "views/explain.hpp"

namespace kinemo::app {

int run_explain(Session& session) {
  embedded::block_diagram::Diagram* diagram = nullptr;
  const boost::optional<CompiledModel> compiled = session.read_and_compile(diagram);
  if (!compiled) return exit_code::model_has_errors;
  const Options& options = session.options();
  formats::DiagnosticList list;
  const auto explanation =
      views::explain(compiled->model, *diagram, options.block, options.parameter, session.model_file(), list);
  session.console().diagnostics(list);
  if (!explanation) return exit_code::usage;
  Output output(options.output);
  if (options.format == "json") {
    views::write_explanation_json(output.stream(), diagram->name(), *explanation);
  } else {
    views::write_explanation_text(output.stream(), *explanation);
  }
  output.commit();
  return exit_code::clean;
}

}  // namespace kinemo::app
