// What a diagram means: its variables, its compiled model, its faults and its nets.

#include "apps/scripting/diagram_files.hpp"
#include "apps/scripting/diagram_inputs.hpp"
#include "apps/scripting/diagram_table.hpp"
#include "apps/scripting/findings.hpp"
#include "apps/scripting/setting_names.hpp"
#include "checks/check.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/foundation/warnings.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "formats/diagram/variables.hpp"
#include "formats/names.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"
#include "views/error_diagnostics.hpp"
#include "views/model_summary.hpp"
#include "views/nets.hpp"

#include <boost/optional.hpp>

namespace kinemo::scripting {

namespace {

// --- variables

/// @throws "BadVariable" (name)
std::string variable_from(const Call& call, std::size_t input) {
  const std::string name = text_from(call, input);
  if (!formats::diagram::is_variable_name(name)) kmf::throw_message(diagram_messages, "BadVariable", name);
  return name;
}

void set_variable(Call& call) {
  host::Diagram& diagram = diagram_from(call, 0);
  const std::string name = variable_from(call, 1);
  const std::string unit = call.size() > 3 ? text_from(call, 3) : std::string();
  const bool runtime = call.size() > 4 && switch_from(call, 4);
  cvUniquePtr value(cvCreateSharedCopy(call[2]));
  if (!unit.empty() || runtime) value = host::parameterObject(std::move(value), unit, runtime);
  cvSetArrayScope(value.get(), 0);
  diagram.workspace().set(name, std::move(value));
}

void delete_variable(Call& call) {
  host::Diagram& diagram = diagram_from(call, 0);
  const std::string name = text_from(call, 1);
  if (!diagram.workspace().clear(name)) {
    kmf::throw_message(diagram_messages, "NoVariable", name, diagram.name(),
                       formats::list_names(diagram.workspace().names()));
  }
}

// --- the compiled model

struct Compiled {
  std::string domain;
  gl::core::Model model;
};

/// The model of a domain, of the first one where the name is empty; none where no domain made one.
boost::optional<Compiled> pick(const DACompileResult& result, const std::string& domain) {
  for (const auto& [name, value] : result.values()) {
    const auto* model = boost::any_cast<gl::core::Model>(&value);
    if (model != nullptr && (domain.empty() || domain == name)) return Compiled{name, *model};
  }
  return boost::none;
}

std::vector<std::string> domains_of(const DACompileResult& result) {
  std::vector<std::string> domains;
  for (const auto& entry : result.values()) domains.push_back(entry.first);
  return domains;
}

void warn_of_settings(const host::Diagram& diagram, const DACompileResult& result) {
  formats::DiagnosticList list;
  warn_of_setting_names(diagram, domains_of(result), diagram_file(diagram), list);
  warn_of_findings(list);
}

enum class Settings { warned_of, left };

/// @throws "NoModel" (diagram, domain or "", domains), and what the compile raises
Compiled compiled(host::Diagram& diagram, const std::string& domain, Settings settings) {
  const DACompileResult result = embedded::compile_layer::compile(diagram);
  if (settings == Settings::warned_of) warn_of_settings(diagram, result);
  if (auto picked = pick(result, domain)) return *picked;
  kmf::throw_message(diagram_messages, "NoModel", diagram.name(), domain, formats::list_names(domains_of(result)));
}

void set_number(cvArray_tag* structure, const char* field, std::size_t number) {
  cvSetField(structure, 0, field, cvCreateDoubleScalar(static_cast<double>(number)));
}

void compile_diagram(Call& call) {
  const std::string domain = call.size() > 1 ? text_from(call, 1) : std::string();
  const Compiled done = compiled(diagram_from(call, 0), domain, Settings::warned_of);
  if (call.wanted == 0) return;
  const views::ModelCounts counts = views::count(done.model);
  cvUniquePtr summary(cvCreateStructMatrix(1, 1, {"domain"}));
  cvSetField(summary.get(), 0, "domain", cvCreateString(done.domain));
  set_number(summary.get(), "components", counts.components);
  set_number(summary.get(), "subgraphs", counts.subgraphs);
  set_number(summary.get(), "nodes", counts.nodes);
  set_number(summary.get(), "connections", counts.connections);
  set_number(summary.get(), "depth", counts.depth);
  call.give(std::move(summary));
}

// --- findings

/// Everything that a compile and the rules have to say.
formats::DiagnosticList findings(host::Diagram& diagram) {
  formats::DiagnosticList list;
  const std::string file = diagram_file(diagram);
  kmf::embedded::WarningCapture warnings;
  boost::optional<Compiled> model;
  try {
    const DACompileResult result = embedded::compile_layer::compile(diagram);
    model = pick(result, {});
    warn_of_setting_names(diagram, domains_of(result), file, list);
  } catch (const kmf::Exception& error) {
    if (kmf::interrupt_requested()) throw;
    views::add_error(error, &diagram, file, list);
  }
  for (const kmf::Message& warning : warnings.take()) {
    const kmf::MessageId& id = warning.identifier();
    list.warning(id.group + ":" + id.id, {file, 0, 0}, warning.text());
  }
  checks::run_rules({diagram, model ? &model->model : nullptr, file}, list);
  list.sort();
  return list;
}

cvUniquePtr note_texts(const formats::Diagnostic& diagnostic) {
  std::vector<std::string> texts;
  for (const formats::DiagnosticNote& note : diagnostic.notes) texts.push_back(note.text);
  return text_column(texts);
}

void check_diagram(Call& call) {
  const formats::DiagnosticList list = findings(diagram_from(call, 0));
  const std::size_t count = list.all().size();
  cvUniquePtr found(
      cvCreateStructMatrix(count, count != 0 ? 1 : 0, {"severity", "rule", "text", "notes", "file", "line", "column"}));
  for (std::size_t i = 0; i < count; ++i) {
    const formats::Diagnostic& diagnostic = list.all()[i];
    cvSetField(found.get(), i, "severity", cvCreateString(std::string(formats::to_string(diagnostic.severity))));
    cvSetField(found.get(), i, "rule", cvCreateString(diagnostic.rule));
    cvSetField(found.get(), i, "text", cvCreateString(diagnostic.text));
    cvSetField(found.get(), i, "notes", note_texts(diagnostic).release());
    cvSetField(found.get(), i, "file", cvCreateString(diagnostic.file));
    cvSetField(found.get(), i, "line", cvCreateDoubleScalar(static_cast<double>(diagnostic.line)));
    cvSetField(found.get(), i, "column", cvCreateDoubleScalar(static_cast<double>(diagnostic.column)));
  }
  call.give(std::move(found));
}

// --- nets

cvUniquePtr pins_of(const views::Net& net) {
  cvUniquePtr pins(cvCreateStructMatrix(net.pins.size(), net.pins.empty() ? 0 : 1, {"block", "port", "index"}));
  for (std::size_t i = 0; i < net.pins.size(); ++i) {
    cvSetField(pins.get(), i, "block", cvCreateString(net.pins[i].block));
    cvSetField(pins.get(), i, "port", cvCreateString(net.pins[i].port));
    cvSetField(pins.get(), i, "index", cvCreateDoubleScalar(static_cast<double>(net.pins[i].index)));
  }
  return pins;
}

void nets(Call& call) {
  host::Diagram& diagram = diagram_from(call, 0);
  const std::vector<views::Net> all = views::make_nets(compiled(diagram, {}, Settings::left).model, diagram);
  cvUniquePtr told(cvCreateStructMatrix(all.size(), all.empty() ? 0 : 1, {"name", "pins"}));
  for (std::size_t i = 0; i < all.size(); ++i) {
    cvSetField(told.get(), i, "name", cvCreateString(all[i].name));
    cvSetField(told.get(), i, "pins", pins_of(all[i]).release());
  }
  call.give(std::move(told));
}

}  // namespace

std::vector<DiagramFunction> model_functions() {
  return {
      {"set_variable",
       3,
       5,
       set_variable,
       {"set_variable(diagram, name, value)\nset_variable(diagram, name, value, unit)\n"
        "set_variable(diagram, name, value, unit, runtime)",
        "Sets a variable of a diagram's workspace.",
        "A number takes the unit, a value that has one is converted to it; '' is none. With runtime 'on' or true it is "
        "a run-time parameter, which stays tunable in a compiled model where the setting PropagateRuntimeParameters of "
        "the diagram is 'on' and the block parameter that follows it is 'runtime', such as R_conf for R."}},
      {"delete_variable",
       2,
       2,
       delete_variable,
       {"delete_variable(diagram, name)", "Takes a variable out of a diagram's workspace.", ""}},
      {"compile_diagram",
       1,
       2,
       compile_diagram,
       {"compile_diagram(diagram)\nsummary = compile_diagram(diagram)\nsummary = compile_diagram(diagram, domain)",
        "Compiles a diagram; the summary has the domain's name and counts of its model.",
        "The graph stays with the domain until the diagram is closed or compiled again. All errors of the blocks are "
        "told in one error. A setting that is nearly one which a domain asks for is a warning."}},
      {"check_diagram",
       1,
       1,
       check_diagram,
       {"findings = check_diagram(diagram)", "Compiles a diagram and looks for mistakes in it.",
        "A structure array with severity, rule, text, notes, file, line and column; empty where all is well."}},
      {"nets",
       1,
       1,
       nets,
       {"list = nets(diagram)", "Compiles a diagram and tells which ports share a node, through all levels.",
        "A structure array with name and pins; a pin has block, port, and index, which counts the block's ports."}}};
}

}  // namespace kinemo::scripting
