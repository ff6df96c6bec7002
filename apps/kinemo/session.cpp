#include "apps/kinemo/session.hpp"

#include "apps/kinemo/definitions.hpp"
#include "apps/kinemo/exit_codes.hpp"
#include "apps/kinemo/model_input.hpp"
#include "apps/scripting/diagram_files.hpp"
#include "apps/scripting/setting_names.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/environment/vector_icons.hpp"
#include "embedded/foundation/warnings.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "formats/diagram/variables.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "views/error_diagnostics.hpp"

#include <filesystem>

namespace kinemo::app {

namespace {

constexpr const char* standard_module = "kinemo_physical.so";

/// Beside the program, in the places where a build and an installation put it.
std::string find_standard_module() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  const std::filesystem::path folder = program.parent_path();
  for (const char* below : {"../lib", ".", "../lib/kinemo"}) {
    const std::filesystem::path candidate = (folder / below / standard_module).lexically_normal();
    if (std::filesystem::exists(candidate, error)) return candidate.string();
  }
  return {};
}

bool names_standard_module(const std::string& file) {
  return std::filesystem::path(file).filename() == standard_module;
}

/// The first model among what the domains made. A diagram of several domains has more, which no view shows yet.
boost::optional<CompiledModel> pick_model(const DACompileResult& result, const std::string& file,
                                          formats::DiagnosticList& list) {
  boost::optional<CompiledModel> picked;
  for (const auto& [domain, value] : result.values()) {
    const auto* model = boost::any_cast<gl::core::Model>(&value);
    if (model == nullptr) continue;
    if (picked) {
      list.warning("kinemo:several-domains", {file, 0, 0},
                   "the model of the domain '" + domain + "' isn't shown, but that of '" + picked->domain + "'");
    } else {
      picked = CompiledModel{domain, *model};
    }
  }
  return picked;
}

bool draws(const Options& options) {
  return options.command == Command::render || options.command == Command::run || options.command == Command::repl ||
         !options.picture.empty();
}

}  // namespace

void add_warnings(const kmf::embedded::WarningCapture& capture, const std::string& file,
                  formats::DiagnosticList& list) {
  for (const kmf::Message& warning : capture.warnings()) {
    const kmf::MessageId& id = warning.identifier();
    list.warning(id.group + ":" + id.id, {file, 0, 0}, warning.text());
  }
}

Session::Session(const Options& options, Console& console) : options_(options), console_(console) {
  formats::diagram::install_dictionary_reader();
  if (draws(options)) embedded::show_vector_icons();
  load_domains();
}

void Session::load_domains() {
  std::vector<std::string> files;
  bool replaced = false;
  for (const std::string& file : options_.domains) replaced = replaced || names_standard_module(file);
  if (!replaced) {
    files.push_back(find_standard_module());
    if (files.back().empty()) {
      throw UsageError(std::string("the domain module ") + standard_module +
                       " isn't beside the program; --domain FILE.so names one");
    }
  }
  files.insert(files.end(), options_.domains.begin(), options_.domains.end());
  for (const std::string& file : files) {
    try {
      console_.verbose("domain '" + environment_.loadDomain(file) + "' from " + file);
    } catch (const kmf::Exception& error) {
      const kmf::ErrorData data = error.data();
      throw UsageError(data.text + " [" + data.group + ":" + data.id + "]");
    }
  }
  console_.end_stage("domains");
}

std::string Session::model_file() const {
  return options_.model == "-" ? "<stdin>" : options_.model;
}

embedded::block_diagram::Diagram* Session::read(formats::DiagnosticList& list, formats::OnErrors on_errors) {
  return read(options_, model_file(), list, on_errors);
}

embedded::block_diagram::Diagram* Session::read(const Options& options, const std::string& shown,
                                                formats::DiagnosticList& list, formats::OnErrors on_errors) {
  console_.progress("reading", 0, 0);
  const embedded::scripting_runtime::ModelEvaluation evaluation;
  kmf::embedded::WarningCapture warnings;
  embedded::block_diagram::Diagram* diagram = read_model(options, shown, console_, list, on_errors);
  if (diagram != nullptr) define_variables(options.definitions, *diagram, list);
  add_warnings(warnings, shown, list);
  console_.end_stage("read");
  return list.has_errors() && on_errors == formats::OnErrors::close ? nullptr : diagram;
}

boost::optional<CompiledModel> Session::compile(embedded::block_diagram::Diagram& diagram,
                                                formats::DiagnosticList& list) {
  kmf::embedded::WarningCapture warnings;
  boost::optional<CompiledModel> model;
  try {
    const DACompileResult result = embedded::compile_layer::compile(
        diagram,
        [this](const char* stage, std::size_t done, std::size_t total) { console_.progress(stage, done, total); });
    model = pick_model(result, model_file(), list);
    std::vector<std::string> domains;
    for (const auto& entry : result.values()) domains.push_back(entry.first);
    scripting::warn_of_setting_names(diagram, domains, model_file(), list);
    if (!model) {
      list.error("kinemo:no-blocks", {model_file(), 0, 0}, "no domain has blocks in the model, so there is no graph");
    }
  } catch (const kmf::Exception& error) {
    views::add_error(error, &diagram, model_file(), list);
  }
  add_warnings(warnings, model_file(), list);
  console_.end_stage("compile");
  return model;
}

bool Session::open_models() {
  bool right = true;
  for (const std::string& file : options_.models) {
    if (file == "-") throw UsageError("MODEL can't be standard input here");
    Options one = options_;
    one.model = file;
    formats::DiagnosticList list;
    const embedded::block_diagram::Diagram* diagram = read(one, file, list, formats::OnErrors::close);
    if (diagram != nullptr) scripting::keep_diagram_file(*diagram, file);
    right = diagram != nullptr && right;
    console_.diagnostics(list);
  }
  return right;
}

boost::optional<CompiledModel> Session::read_and_compile(embedded::block_diagram::Diagram*& diagram) {
  formats::DiagnosticList list;
  boost::optional<CompiledModel> model;
  diagram = read(list);
  if (diagram != nullptr) {
    if (!options_.runtime_parameters.empty()) {
      diagram->setParameter("PropagateRuntimeParameters", kmf::utf8_string_to_ustring(options_.runtime_parameters));
    }
    model = compile(*diagram, list);
  }
  console_.diagnostics(list);
  return model;
}

}  // namespace kinemo::app
