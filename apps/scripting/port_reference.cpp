#include "apps/scripting/port_reference.hpp"

#include "embedded/block_diagram/nearest.hpp"
#include "embedded/block_diagram/paths.hpp"
#include "formats/names.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "views/block_ports.hpp"

#include <optional>

namespace kinemo::scripting {

namespace {

struct Reference {
  std::string text;  ///< as it was given
  std::string block;
  std::optional<std::string> port;
};

Reference reference_of_text(const std::string& text) {
  const std::size_t dot = text.find('.');
  if (dot == std::string::npos && !text.empty()) return {text, text, std::nullopt};
  if (dot == std::string::npos || dot == 0 || dot + 1 == text.size() || text.rfind('.') != dot) {
    kmf::throw_message(diagram_messages, "BadPort", text);
  }
  return {text, text.substr(0, dot), text.substr(dot + 1)};
}

Reference reference_from(const cvArray_tag* array, const InputPlace& place) {
  if (!cvIsCell(array)) return reference_of_text(kmf::ustring_to_utf8_string(text_of(array, place)));
  std::vector<std::string> parts;
  for (const ustring& part : texts_of(array, place)) parts.push_back(kmf::ustring_to_utf8_string(part));
  if (parts.empty() || parts.size() > 2) {
    kmf::throw_message(diagram_messages, "BadPort", formats::list_names(parts));
  }
  if (parts.size() == 1) return {parts[0], parts[0], std::nullopt};
  return {parts[0] + "." + parts[1], parts[0], parts[1]};
}

[[noreturn]] void throw_unknown_block(const Reference& reference, const host::System& system) {
  const std::string path = kmf::ustring_to_utf8_string(system.path());
  const ustring wide = kmf::utf8_string_to_ustring(reference.block);
  if (host::findBelow(system, wide) != nullptr || host::findByPath(wide) != nullptr) {
    kmf::throw_message(diagram_messages, "LineAcrossSystems", reference.text, path);
  }
  kmf::throw_message(diagram_messages, "UnknownBlock", reference.text, path, reference.block,
                     host::nearestName(reference.block, block_names(system)));
}

gtPort* find_port(const Reference& reference, const host::System& system) {
  const GTBlock* block = system.find(kmf::utf8_string_to_ustring(reference.block));
  if (block == nullptr) throw_unknown_block(reference, system);
  const std::vector<gtPort*> ports = views::ports_in_kind_order(*block);
  gtPort* port = nullptr;
  if (reference.port) {
    port = views::find_port(*block, *reference.port);
  } else if (ports.size() == 1) {
    port = ports.front();
  }
  if (port != nullptr) return port;
  const std::string names = formats::list_names(views::port_names(*block));
  if (!reference.port) kmf::throw_message(diagram_messages, "WhichPort", block->getFullPath(true), names);
  std::string unknown = views::describe_unknown_port(*block, *reference.port);
  if (unknown.back() != '?') unknown += '.';
  kmf::throw_message(diagram_messages, "UnknownPort", block->getFullPath(true), unknown, names);
}

}  // namespace

gtPort* port_of(const cvArray_tag* reference, const InputPlace& place, const host::System& system) {
  return find_port(reference_from(reference, place), system);
}

std::vector<gtPort*> ports_from(const Call& call, std::size_t first, std::size_t end, const host::System& system) {
  std::vector<gtPort*> ports;
  for (std::size_t i = first; i < end; ++i) ports.push_back(port_of(call[i], {call.name, i + 1}, system));
  return ports;
}

}  // namespace kinemo::scripting
