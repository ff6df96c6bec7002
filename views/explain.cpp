#include "views/explain.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "formats/names.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"
#include "views/find_block.hpp"
#include "views/graph_access.hpp"
#include "views/json_writer.hpp"
#include "views/parameter_text.hpp"

#include <fmt/format.h>

#include <ostream>

namespace kinemo::views {

namespace {

namespace host = embedded::block_diagram;

std::vector<std::string> parameters_of(const GTBlock& block) {
  std::vector<std::string> names;
  if (const GTMask* mask = block.host().mask.get()) {
    for (const GTMaskParameter& parameter : mask->kind->parameters()) names.push_back(parameter.name);
  }
  return names;
}

bool has_parameter(const GTBlock& block, const std::string& parameter) {
  const GTMask* mask = block.host().mask.get();
  return mask != nullptr && mask->kind->find(parameter) >= 0;
}

/// The component of a block, by its full path; null when it has none.
const gl::core::Component* find_component(const gl::core::Graph& graph, const ustring& path) {
  std::vector<const gl::core::Graph*> open{&graph};
  while (!open.empty()) {
    const gl::core::Graph& level = *open.back();
    open.pop_back();
    for (const auto& entry : level.components()) {
      const gl::core::Component& component = entry.second;
      if (gl::core::object(component) == path) return &component;
      if (component.isSubgraph()) open.push_back(&component.graph());
    }
  }
  return nullptr;
}

CompiledParameter compiled_of(const gl::core::Model& model, const GTBlock& block, const std::string& parameter) {
  CompiledParameter compiled;
  const gl::core::Graph graph = model.graph();
  const gl::core::Component* component = find_component(graph, block.getFullPath(false));
  compiled.in_model = component != nullptr;
  compiled.subsystem = host::isSubsystem(block);
  compiled.opaque = compiled.subsystem && host::isOpaque(block);
  if (component == nullptr) return compiled;
  const auto found = component->parameters().find(kmf::VnId(parameter));
  if (found != component->parameters().end()) compiled.value = found->second.get({});
  return compiled;
}

// --- for people

std::string told(const Origin& origin) {
  std::string text;
  const bool variable = origin.text.empty() && origin.block.empty();
  const std::string value = origin.value       ? parameter_text(*origin.value)
                            : origin.evaluated ? "(no numbers)"
                                               : "(not evaluated)";
  if (origin.follows_setting()) {
    text = "follows a setting of the model";
  } else if (variable) {
    text = value;
  } else {
    text = origin.text.empty() ? "''" : origin.text;
    if (origin.is_expression && origin.text != value) text += " = " + value;
  }
  if (!origin.unit.empty()) text += ", in " + origin.unit;
  if (!origin.conf.empty()) text += ", " + origin.conf;
  if (origin.runtime) text += ", run-time parameter";
  return text;
}

void write_origin(std::ostream& out, const Origin& origin, std::size_t depth, bool again) {
  out << std::string(2 * depth + 2, ' ') << origin.name << " in " << place_text(origin);
  if (origin.place.line != 0) out << " (" << origin.place.file << ":" << origin.place.line << ")";
  out << ": " << (again ? "see above" : told(origin)) << "\n";
}

void write_origins(std::ostream& out, const std::vector<Origin>& origins) {
  struct Step {
    std::size_t origin;
    std::size_t depth;
  };
  std::vector<bool> written(origins.size());
  std::vector<Step> open{{0, 0}};
  while (!open.empty()) {
    const Step step = open.back();
    open.pop_back();
    const Origin& origin = origins[step.origin];
    write_origin(out, origin, step.depth, written[step.origin]);
    if (written[step.origin]) continue;
    written[step.origin] = true;
    for (auto name = origin.names.rbegin(); name != origin.names.rend(); ++name)
      open.push_back({*name, step.depth + 1});
  }
}

// --- for programs

const char* kind_name(OriginKind kind) {
  switch (kind) {
    case OriginKind::dialog:
      return "dialog";
    case OriginKind::mask:
      return "mask";
    case OriginKind::model_workspace:
      return "modelWorkspace";
    case OriginKind::dictionary:
      return "dictionary";
    case OriginKind::base_workspace:
      return "baseWorkspace";
    case OriginKind::unknown:
      break;
  }
  return "unknown";
}

void write_origin(JsonWriter& json, const Origin& origin) {
  json.begin_object().member("kind", std::string(kind_name(origin.kind)));
  if (!origin.block.empty()) json.member("block", origin.block);
  json.member("name", origin.name);
  if (!origin.block.empty()) json.member("text", origin.text);
  if (!origin.unit.empty()) json.member("unit", origin.unit);
  if (!origin.conf.empty()) json.member("conf", origin.conf);
  if (!origin.from.empty()) json.member("from", origin.from);
  if (origin.value) {
    json.key("value");
    write_parameter(json, *origin.value);
  }
  json.member("runtime", origin.runtime).key("names").begin_array(true);
  for (const std::size_t name : origin.names) json.value(name);
  json.end_array().end_object();
}

}  // namespace

boost::optional<Explanation> explain(const gl::core::Model& model, host::Diagram& diagram, const std::string& block,
                                     const std::string& parameter, const std::string& file,
                                     formats::DiagnosticList& list) {
  const formats::SourcePlace place{file, 0, 0};
  UnknownName unknown;
  const GTBlock* found = find_block(diagram, block, unknown);
  if (found == nullptr) {
    list.error("explain:unknown-block", place, unknown.text).notes.push_back({"valid: " + unknown.valid, {}});
    return boost::none;
  }
  Explanation explanation;
  explanation.block = relative_path(*found);
  explanation.parameter = parameter;
  if (!has_parameter(*found, parameter)) {
    const std::vector<std::string> known = parameters_of(*found);
    list.error("explain:unknown-parameter", place,
               "the block '" + explanation.block + "' has no parameter '" + parameter + "'" +
                   formats::did_you_mean(parameter, known))
        .notes.push_back({"valid: " + formats::list_names(known, known.size()), {}});
    return boost::none;
  }
  explanation.compiled = compiled_of(model, *found, parameter);
  explanation.trace = trace_parameter(diagram, *found, parameter, explanation.compiled.value, file);
  explanation.tunability = tunability(explanation.trace, explanation.compiled);
  return explanation;
}

void write_explanation_text(std::ostream& out, const Explanation& explanation) {
  const Tunability& answer = explanation.tunability;
  out << explanation.block << ", parameter " << explanation.parameter << "\n";
  write_origins(out, explanation.trace.origins);
  if (explanation.compiled.value) {
    out << "in the compiled model: " << parameter_text(*explanation.compiled.value) << "\n";
  }
  if (answer.tunable) {
    out << "tunable: yes, through " << fmt::format("{}", fmt::join(answer.through, ", ")) << "\n";
  } else {
    out << "tunable: no, as " << answer.reason << "\n";
  }
}

void write_explanation_json(std::ostream& out, const std::string& model, const Explanation& explanation) {
  JsonWriter json(out);
  json.begin_object().member("schema", std::size_t{1}).member("model", model).member("block", explanation.block);
  json.member("parameter", explanation.parameter).key("origins").begin_array();
  for (const Origin& origin : explanation.trace.origins) write_origin(json, origin);
  json.end_array();
  if (explanation.compiled.value) {
    json.key("compiled");
    write_parameter(json, *explanation.compiled.value);
  }
  const Tunability& answer = explanation.tunability;
  json.member("tunable", answer.tunable).key("through").begin_array(true);
  for (const std::string& name : answer.through) json.value(name);
  json.end_array();
  if (!answer.tunable) json.member("reason", answer.reason);
  json.end_object().finish();
}

}  // namespace kinemo::views
