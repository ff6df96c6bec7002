#include "apps/kinemo/commands.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/output.hpp"
#include "apps/kinemo/pictures.hpp"
#include "apps/kinemo/session.hpp"
#include "checks/check.hpp"
#include "views/diagnostics_view.hpp"
#include "views/picture/finding_marks.hpp"

#include <unistd.h>

namespace kinemo::app {

namespace {

constexpr const char* compile_rules_text =
    "Everything that reading and compiling a model reports is an error whose rule is the message's id, "
    "such as diagram:unknown-port.";

std::vector<views::RuleText> rule_texts() {
  std::vector<views::RuleText> texts;
  for (const checks::Rule& rule : checks::rules()) texts.push_back({rule.id, rule.text});
  return texts;
}

int list_rules(Session& session) {
  Output output(session.options().output);
  for (const checks::Rule& rule : checks::rules()) {
    output.stream() << rule.id << " (" << formats::to_string(rule.severity) << "): " << rule.text << '\n';
  }
  output.stream() << compile_rules_text << '\n';
  output.commit();
  return exit_code::clean;
}

void write_findings(Session& session, std::ostream& out, const formats::DiagnosticList& list) {
  const Options& options = session.options();
  if (options.format == "json") return views::write_diagnostics_json(out, list);
  if (options.format == "sarif") return views::write_diagnostics_sarif(out, list, KINEMO_VERSION, rule_texts());
  const bool to_terminal = options.output.empty() || options.output == "-";
  views::write_diagnostics_text(out, list, to_terminal && session.console().color(STDOUT_FILENO));
}

std::string counted(std::size_t number, const char* noun) {
  return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

formats::DiagnosticList find_all(Session& session, embedded::block_diagram::Diagram*& diagram) {
  formats::DiagnosticList list;
  // A picture shows what could be read; rules would only find what is missing for that.
  const bool draws = !session.options().picture.empty();
  diagram = session.read(list, draws ? formats::OnErrors::keep : formats::OnErrors::close);
  if (diagram != nullptr && !list.has_errors()) {
    const boost::optional<CompiledModel> compiled = session.compile(*diagram, list);
    checks::run_rules({*diagram, compiled ? &compiled->model : nullptr, session.model_file()}, list);
    session.console().end_stage("check");
  }
  list.sort();
  return list;
}

void draw_findings(Session& session, embedded::block_diagram::Diagram* diagram, const formats::DiagnosticList& list) {
  const std::string& file = session.options().picture;
  if (file.empty()) return;
  if (diagram == nullptr) {
    session.console().info("there is no picture, as nothing of the model can be read");
    return;
  }
  write_picture(session, *diagram,
                views::picture::picture_of_findings(*diagram, list, *views::picture::picture_format(file)), file);
}

}  // namespace

int run_check(Session& session) {
  if (session.options().list_rules) return list_rules(session);
  embedded::block_diagram::Diagram* diagram = nullptr;
  const formats::DiagnosticList list = find_all(session, diagram);
  Output output(session.options().output);
  write_findings(session, output.stream(), list);
  output.commit();
  draw_findings(session, diagram, list);
  const std::size_t warnings = views::count(list, formats::Severity::warning);
  session.console().info(session.model_file() + ": " + counted(list.error_count(), "error") + ", " +
                         counted(warnings, "warning"));
  const bool bad = list.has_errors() || (session.options().warnings_as_errors && warnings != 0);
  return bad ? exit_code::model_has_errors : exit_code::clean;
}

}  // namespace kinemo::app
