#include "domains/physical/opaque_factory.hpp"

#include "domains/physical/parameter_reader.hpp"
#include "domains/physical/port_types.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace kinemo::physical {

const char component_type_parameter[] = "ComponentType";
const char port_types_parameter[] = "PortTypes";

namespace {

constexpr char group[] = "kinemo:physical:opaque";
constexpr std::size_t max_id_length = 64;

/// Text of a block parameter; empty where the block has none.
std::string text_of(const gl::gti::BlockData& data, const char* name) {
  const auto found = data.parameters().find(name);
  if (found == data.parameters().end() || !cvIsChar(found->second.value())) return {};
  return kmf::cvarray_to_string(found->second.value());
}

kmf::VnIdPath1 component_type(const std::string& text) {
  if (text.empty()) kmf::throw_message(group, "MissingComponentType");
  try {
    return kmf::VnIdPath1(text);
  } catch (const kmf::Exception&) {
    kmf::throw_message(group, "InvalidComponentType", text);
  }
}

bool ends_with(const std::string& text, const std::string& tail) {
  return text.size() > tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

/// Whether a parameter only tells the unit or the configuration of another one.
bool is_partner(const gl::gti::BlockData& data, const std::string& name) {
  for (const std::string tail : {"_unit", "_conf"})
    if (ends_with(name, tail) && data.parameters().count(name.substr(0, name.size() - tail.size()))) return true;
  return false;
}

bool is_own(const gl::gti::BlockData& data, const kmf::VnId& id) {
  return id != kmf::VnId(component_type_parameter) && id != kmf::VnId(port_types_parameter) && !is_partner(data, id);
}

void add_parameters(gl::core::Component& component, const gl::gti::BlockData& data, const std::string& type) {
  const ParameterReader reader(data, [&type] { return kmf::utf8_string_to_ustring(type); });
  for (const auto& [id, value] : data.parameters()) {
    if (!is_own(data, id)) continue;
    if (const auto parameter = reader.any(id, std::string(id) + "_unit")) component.addParameter(id, *parameter);
  }
}

/// One identifier for each port, in the order of their names, that no parameter has.
std::vector<kmf::VnId> port_ids(const gl::gti::BlockData& data) {
  std::vector<kmf::VnId> wanted;
  for (const ustring& name : data.ports()) wanted.push_back(kmf::VnId::make(kmf::ustring_to_utf8_string(name)));
  std::vector<kmf::VnId> taken;
  for (const auto& parameter : data.parameters()) taken.push_back(parameter.first);
  return kmf::VnId::unique(wanted, taken, max_id_length);
}

}  // namespace

gl::gti::ComponentEmbedding make_opaque_component(const gl::gti::BlockData& data) {
  const std::string type = text_of(data, component_type_parameter);
  gl::core::Component component(component_type(type));
  const PortTypes types(text_of(data, port_types_parameter));
  const std::vector<kmf::VnId> ids = port_ids(data);
  auto id = ids.begin();
  for (const ustring& name : data.ports()) component.addConnector(*id++, types(kmf::ustring_to_utf8_string(name)));
  add_parameters(component, data, type);
  gl::gti::ComponentEmbedding embedding(component);
  id = ids.begin();
  for (const ustring& name : data.ports()) embedding.addPortEmbedding(name, *id++);
  return embedding;
}

}  // namespace kinemo::physical
