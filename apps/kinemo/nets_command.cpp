#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/session.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "views/nets.hpp"

namespace kinemo::app {

int run_nets(Session& session) {
  embedded::block_diagram::Diagram* diagram = nullptr;
  const boost::optional<CompiledModel> compiled = session.read_and_compile(diagram);
  if (!compiled) return exit_code::model_has_errors;
  const std::vector<views::Net> nets = views::make_nets(compiled->model, *diagram);
  session.console().end_stage("nets");
  Output output(session.options().output);
  if (session.options().format == "json") {
    views::write_nets_json(output.stream(), diagram->name(), nets);
  } else {
    views::write_nets_text(output.stream(), nets);
  }
  output.commit();
  session.console().end_stage("write");
  return exit_code::clean;
}

}  // namespace kinemo::app
