#include "apps/scripting/text_candidates.hpp"

#include "apps/scripting/diagram_inputs.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <iterator>
#include <set>

namespace kinemo::scripting {

namespace {

using embedded::scripting_runtime::TypedText;

/// What an input of a function is; inputs of functions that aren't listed may be paths.
struct Meaning {
  const char* function;
  std::size_t argument;
  std::vector<std::string> (*names)();  ///< null for files
};

std::vector<std::string> block_types() {
  std::vector<std::string> types = gt_prototype_names();
  types.insert(types.end(), {"subsystem", "port"});
  return types;
}

std::vector<std::string> diagram_names() {
  std::vector<std::string> names;
  for (const host::Diagram* diagram : host::Diagram::open()) names.push_back(diagram->name());
  return names;
}

/// Libraries of blocks have the names of their domains.
std::vector<std::string> domain_names() {
  std::set<std::string> names;
  for (const std::string& type : gt_prototype_names()) names.insert(type.substr(0, type.find('/')));
  const gl::gti::TranslationManager& manager = gl::gti::TranslationManager::get();
  std::vector<std::string> domains;
  std::copy_if(names.begin(), names.end(), std::back_inserter(domains),
               [&](const std::string& name) { return manager.hasDomain(name); });
  return domains;
}

const Meaning meanings[] = {
    {"add_block", 0, block_types},
    {"kinemo.gl.gt.graph", 0, domain_names},
    {"kinemo.gl.gt.graph", 1, diagram_names},
    {"kinemo.gl.gt.runtimeParameterInfo", 0, domain_names},
    {"kinemo.gl.gt.runtimeParameterInfo", 1, diagram_names},
    {"compile_diagram", 0, diagram_names},
    {"compile_diagram", 1, domain_names},
    {"open_diagram", 0, nullptr},
    {"save_diagram", 1, nullptr},
    {"render_diagram", 1, nullptr},
    {"run", 0, nullptr},
    {"imread", 0, nullptr},
    {"Gantrel.dd.open", 0, nullptr},
};

std::vector<std::string> beginning_with(const std::string& typed, std::vector<std::string> names) {
  const auto differs = [&](const std::string& name) { return name.compare(0, typed.size(), typed) != 0; };
  names.erase(std::remove_if(names.begin(), names.end(), differs), names.end());
  return names;
}

/// The inside of a diagram or subsystem; null where the path leads to none.
const host::System* inside_at(const std::string& path) {
  GantrelObject* object = host::findByPath(kmf::utf8_string_to_ustring(path));
  if (object == nullptr) return nullptr;
  if (auto* diagram = dynamic_cast<GTBlockDiagram*>(object)) return &diagram->diagram().root();
  const auto* block = dynamic_cast<const GTBlock*>(object);
  return block != nullptr ? host::contents(*block) : nullptr;
}

/// Where the last name of a path begins: behind the last slash that isn't doubled.
std::size_t last_name(const std::string& path) {
  std::size_t begin = 0;
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] != '/') continue;
    if (i + 1 < path.size() && path[i + 1] == '/') {
      ++i;
    } else {
      begin = i + 1;
    }
  }
  return begin;
}

std::vector<std::string> block_paths(const std::string& typed) {
  const std::size_t begin = last_name(typed);
  if (begin == 0) return beginning_with(typed, diagram_names());
  const host::System* system = inside_at(typed.substr(0, begin - 1));
  std::vector<std::string> paths;
  for (std::size_t i = 0; system != nullptr && i < system->blocks().size(); ++i) {
    std::string name = kmf::ustring_to_utf8_string(host::escapedName(system->blocks()[i]->getGrName()));
    std::replace(name.begin(), name.end(), '\n', ' ');
    paths.push_back(typed.substr(0, begin) + name);
  }
  return beginning_with(typed, std::move(paths));
}

}  // namespace

std::vector<std::string> diagram_text_candidates(const TypedText& typed) {
  for (const Meaning& meaning : meanings) {
    if (meaning.function != typed.function || meaning.argument != typed.argument) continue;
    return meaning.names != nullptr ? beginning_with(typed.text, meaning.names()) : std::vector<std::string>();
  }
  return block_paths(typed.text);
}

}  // namespace kinemo::scripting
