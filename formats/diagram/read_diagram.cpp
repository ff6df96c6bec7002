#include "formats/diagram/read_diagram.hpp"

#include "formats/diagram/reading.hpp"
#include "formats/names.hpp"
#include "formats/read_text.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/vn_id.hpp"

namespace kinemo::formats::diagram {

namespace {

/// The name that the file gives, or its stem.
std::string model_name(const Scope& scope, const YamlNode& model) {
  if (const YamlNode* given = model.find("name")) {
    return expect_text(scope, *given, "a model's name").value_or("model");
  }
  const std::string stem = scope.file.location.stem().string();
  return kmf::VnId::make(stem.empty() || stem == "<stdin>" ? "model" : stem);
}

bool create_diagram(Reading& reading, const Scope& scope, const YamlNode& model) {
  const YamlNode* name = model.find("name");
  return scope.guarded(name != nullptr ? *name : model,
                       [&] { reading.diagram = &host::Diagram::create(model_name(scope, model)); });
}

void read_all(Reading& reading, const ModelFile& file) {
  const YamlNode* model = file.tree.root();
  if (model == nullptr) return;
  const LinkStep* links = reading.link(file, nullptr);
  Scope scope{reading.report, file, links, nullptr};
  if (!model->is_mapping()) {
    return scope.error(*model, "diagram:wrong-kind",
                       "a diagram is a mapping, and this is " + std::string(kind_name(model->kind)),
                       list_names(keys_of(ObjectKind::model)));
  }
  expect_object(scope, *model, ObjectKind::model);
  check_version(scope, *model);
  if (!create_diagram(reading, scope, *model)) return;
  scope.system = &reading.diagram->root();
  read_settings(reading, scope, *model);
  reading.pending.push_back({scope.system, &file, links, model});
  read_pending(reading, scope, *model);
}

}  // namespace

void read_pending(Reading& reading, const Scope& scope, const YamlNode& node) {
  while (!reading.pending.empty() && reading.diagram->blockCount() <= block_limit) {
    const PendingSystem next = reading.pending.back();
    reading.pending.pop_back();
    read_system(reading, next);
  }
  if (reading.diagram->blockCount() <= block_limit) return;
  scope.error(node, "diagram:too-big", "the diagram has more than " + std::to_string(block_limit) + " blocks");
}

host::Diagram* read_diagram_text(const std::string& text, const std::string& name, DiagnosticList& problems,
                                 OnErrors on_errors) {
  Reading reading(problems);
  std::error_code ignored;
  std::filesystem::path location = std::filesystem::weakly_canonical(name, ignored);
  if (ignored) location = name;
  try {
    read_all(reading, reading.files.add(name, location, text));
  } catch (...) {
    if (reading.diagram != nullptr) host::Diagram::close(*reading.diagram);
    throw;
  }
  if (!reading.report.has_errors()) return reading.diagram;
  problems.sort();
  if (on_errors == OnErrors::keep) return reading.diagram;
  if (reading.diagram != nullptr) host::Diagram::close(*reading.diagram);
  return nullptr;
}

host::Diagram* read_diagram(const std::string& path, DiagnosticList& problems, OnErrors on_errors) {
  std::string reason;
  const auto text = read_text(path, reason);
  if (text) return read_diagram_text(*text, path, problems, on_errors);
  problems.error("diagram:unreadable", {path, 0, 0}, "the file can't be read: " + reason);
  return nullptr;
}

}  // namespace kinemo::formats::diagram
