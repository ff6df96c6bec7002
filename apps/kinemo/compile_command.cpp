#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "views/model_dot.hpp"
#include "views/model_graphml.hpp"
#include "views/model_json.hpp"
#include "views/model_summary.hpp"

#include <unistd.h>

namespace kinemo::app {

namespace {

void write_model(Session& session, std::ostream& out, const std::string& name, const CompiledModel& compiled) {
  const Options& options = session.options();
  if (options.format == "json") return views::write_model_json(out, name, compiled.domain, compiled.model);
  if (options.format == "dot") return views::write_model_dot(out, name, compiled.model);
  if (options.format == "graphml") return views::write_model_graphml(out, name, compiled.domain, compiled.model);
  views::SummaryOptions summary;
  summary.color = (options.output.empty() || options.output == "-") && session.console().color(STDOUT_FILENO);
  views::write_summary(out, name, compiled.domain, compiled.model, summary);
}

}  // namespace

int run_compile(Session& session) {
  embedded::block_diagram::Diagram* diagram = nullptr;
  const boost::optional<CompiledModel> compiled = session.read_and_compile(diagram);
  if (!compiled) return exit_code::model_has_errors;
  Output output(session.options().output);
  write_model(session, output.stream(), diagram->name(), *compiled);
  output.commit();
  session.console().end_stage("write");
  return exit_code::clean;
}

}  // namespace kinemo::app
