#include "formats/diagram/writing.hpp"

#include "embedded/block_diagram/edit.hpp"
#include "platform/block_diagram/library.hpp"
#include "platform/foundation/strings.hpp"

#include <memory>

namespace kinemo::formats::diagram {

namespace {

constexpr std::size_t longest_line = 100;
constexpr std::size_t most_refusals = 1000;

}  // namespace

void Writing::refuse(const GTBlock* block, const std::string& what, const std::string& valid, const std::string& rule) {
  if (refusals_++ == most_refusals) {
    problems_.error("diagram:too-many", {file_, 0, 0}, "there is more that can't be written than is shown here");
  }
  if (refusals_ > most_refusals) return;
  SourcePlace place{file_, 0, 0};
  const host::SourcePlace written = block != nullptr ? host::sourcePlace(*block) : host::SourcePlace();
  if (written.line != 0 && written.file != nullptr) {
    place = {*written.file, static_cast<std::size_t>(written.line), static_cast<std::size_t>(written.column)};
  }
  Diagnostic& diagnostic = problems_.error(rule, place, what);
  if (!valid.empty()) diagnostic.notes.push_back({"valid: " + valid, {}});
  if (block != nullptr) diagnostic.notes.push_back({"in " + kmf::ustring_to_utf8_string(block->getFullPath(true)), {}});
}

std::string Writing::checked(const GTBlock* block, const ustring& told) {
  std::string utf8 = kmf::ustring_to_utf8_string(told);
  if (kmf::utf8_string_to_ustring(utf8) != told) {
    refuse(block, "'" + utf8 + "' holds half of a character, which a file can't", "whole characters of Unicode");
  }
  return utf8;
}

std::string Writing::checked(const GTBlock* block, const std::string& utf8) {
  std::string same = kmf::ustring_to_utf8_string(kmf::utf8_string_to_ustring(utf8));
  if (same != utf8) refuse(block, "'" + same + "' isn't text in UTF-8");
  return same;
}

void Writing::mapping(std::size_t indent, const std::string& key, const YamlEntries& entries) {
  if (entries.empty()) return;
  const std::string flow = yaml_mapping(entries);
  if (flow.size() <= longest_line) return entry(indent, key, flow);
  open(indent, key);
  for (const auto& [name, value] : entries) entry(indent + 2, name, value);
}

void Writing::block(std::size_t indent, const std::string& key, const YamlEntries& entries,
                    const YamlEntries& parameters) {
  YamlEntries all = entries;
  if (!parameters.empty()) all.emplace(all.begin() + 1, "parameters", yaml_mapping(parameters));
  const std::string flow = yaml_mapping(all);
  if (flow.size() <= longest_line) return entry(indent, key, flow);
  open(indent, key);
  for (const auto& [name, value] : all) {
    if (name == "parameters") {
      mapping(indent + 2, name, parameters);
    } else {
      entry(indent + 2, name, value);
    }
  }
}

const BlockDefaults& Writing::defaults(const std::string& library_name) {
  const auto [found, is_new] = defaults_.try_emplace(library_name);
  const GTBlock* prototype = is_new ? gt_find_prototype(library_name) : nullptr;
  if (prototype == nullptr) return found->second;
  const std::unique_ptr<GTBlock> placed(prototype->clone());
  placed->checkDialogParameters(0);
  for (const std::string& name : host::parameterNames(*placed)) {
    found->second.parameters[name] = host::parameter(*placed, name);
  }
  found->second.properties = host::properties(*placed);
  return found->second;
}

void Writing::count_mask(const GTBlock& subsystem) {
  if (const auto mask = MaskInterface::mask(&subsystem)) ++mask_uses_[mask.get()];
}

void Writing::count_masks(const host::System& top) {
  std::vector<const host::System*> systems{&top};
  for (std::size_t i = 0; i < systems.size(); ++i) {
    for (const GTBlock* block : systems[i]->subsystems()) {
      count_mask(*block);
      systems.push_back(host::contents(*block));
    }
  }
}

std::pair<std::string, bool> Writing::anchor(const GTMaskDefinition& mask) {
  const auto [found, is_new] = anchors_.try_emplace(&mask, "mask" + std::to_string(anchors_.size() + 1));
  return {found->second, !is_new};
}

}  // namespace kinemo::formats::diagram
