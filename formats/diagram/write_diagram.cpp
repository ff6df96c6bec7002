#include "formats/diagram/write_diagram.hpp"

#include "formats/diagram/json_text.hpp"
#include "formats/diagram/linked_parts.hpp"
#include "formats/diagram/writing.hpp"
#include "formats/read_text.hpp"
#include "formats/write_text.hpp"
#include "platform/foundation/strings.hpp"

#include <filesystem>

namespace kinemo::formats::diagram {

namespace {

bool is_json_file(const std::string& file) {
  return kmf::lower(std::filesystem::path(file).extension().string()) == ".json";
}

/// The text as JSON, in which names can't be of any length. Empty after an error.
std::string json_of(Writing& writing, const std::string& file, DiagnosticList& problems) {
  const YamlTree tree(writing.text, file, problems);
  if (tree.root() == nullptr) return {};
  const std::string* too_long = nullptr;
  std::string json = json_text(*tree.root(), largest_model_file, too_long);
  if (too_long != nullptr) {
    writing.refuse(nullptr, "a name of " + std::to_string(too_long->size()) + " bytes is too long for a JSON file",
                   "a YAML file");
  }
  return json;
}

}  // namespace

std::optional<std::string> diagram_text(host::Diagram& diagram, const std::string& file, DiagnosticList& problems) {
  const std::size_t errors_before = problems.error_count();
  LinkedParts parts(file);
  Writing writing(problems, file.empty() ? diagram.name() : file, &parts);
  writing.count_masks(diagram.root());
  writing.entry(0, "kinemo", "1");
  writing.entry(0, "name", yaml_name(diagram.name()));
  write_settings(writing, diagram, file);
  write_systems(writing, diagram.root(), 0, 1);
  if (is_json_file(file) && problems.error_count() == errors_before) writing.text = json_of(writing, file, problems);
  if (writing.text.size() > largest_model_file) {
    writing.refuse(nullptr,
                   "the text of the diagram has more than " + std::to_string(largest_model_file) +
                       " bytes, and so could not be read again",
                   "subsystems that link to files of their own", "diagram:too-big");
  }
  if (problems.error_count() != errors_before) return std::nullopt;
  return std::move(writing.text);
}

bool write_diagram(host::Diagram& diagram, const std::string& file, DiagnosticList& problems) {
  const auto text = diagram_text(diagram, file, problems);
  if (!text) return false;
  std::string reason;
  if (write_text(file, *text, reason)) return true;
  problems.error("diagram:unwritable-file", {file, 0, 0}, "the file can't be written: " + reason);
  return false;
}

}  // namespace kinemo::formats::diagram
