#include "apps/scripting/setting_names.hpp"

#include "common/gl/gti/export/translation_manager.hpp"
#include "embedded/block_diagram/diagram.hpp"
#include "formats/names.hpp"

#include <algorithm>

namespace kinemo::scripting {

namespace {

namespace host = embedded::block_diagram;

std::vector<std::string> names_asked_for(const std::string& model, const std::vector<std::string>& domains) {
  gl::gti::TranslationManager& manager = gl::gti::TranslationManager::get();
  std::vector<std::string> names;
  for (const std::string& domain : domains) {
    if (!manager.hasDomain(domain)) continue;
    const gl::gti::DomainKey key = manager.domainKey(domain);
    if (!manager.hasModel(key, model)) continue;
    for (const auto& entry : manager.objectParameters(key, model)) names.emplace_back(std::string(entry.first));
  }
  return names;
}

}  // namespace

void warn_of_setting_names(const host::Diagram& diagram, const std::vector<std::string>& domains,
                           const std::string& file, formats::DiagnosticList& list) {
  const std::vector<std::string> asked = names_asked_for(diagram.name(), domains);
  for (const auto& [name, text] : diagram.parameters()) {
    const host::SourcePlace place = diagram.parameterPlace(name);
    if (std::find(asked.begin(), asked.end(), name) != asked.end()) continue;
    const std::string near = formats::did_you_mean(name, asked);
    if (near.empty()) continue;
    list.warning("kinemo:unknown-setting",
                 {place.file != nullptr ? *place.file : file, static_cast<std::size_t>(place.line),
                  static_cast<std::size_t>(place.column)},
                 "no domain asks for a setting '" + name + "'" + near);
  }
}

}  // namespace kinemo::scripting
