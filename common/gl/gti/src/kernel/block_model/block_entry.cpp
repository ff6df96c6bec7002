#include "common/gl/gti/src/kernel/block_model/block_entry.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/src/kernel/block_model/core_block_entry.hpp"
#include "common/gl/gti/src/kernel/block_model/mask_parameters.hpp"
#include "common/gl/gti/src/kernel/block_model/opaque_block_entry.hpp"
#include "common/gl/gti/src/kernel/block_model/property_reader.hpp"
#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <ostream>

namespace gl::gti {

BlockEntryData::~BlockEntryData() = default;

void BlockEntryData::applyRuntimeParameters(ParameterSetter, const ParameterRewrites&) {}

void BlockEntryData::applySubstitutions(const std::map<double, double>& table) {
  for (auto& [handle, port] : ports_) port.applySubstitutions(table);
}

void BlockEntryData::print(std::ostream& out, const std::string& indent) const {
  out << indent << kmf::ustring_to_utf8_string(path_) << '\n';
  out << indent << " ports:\n";
  for (const auto& [handle, port] : ports_) port.print(out, indent + "  ");
}

std::ostream& operator<<(std::ostream& out, const BlockEntryData& entry) {
  entry.print(out, "");
  return out;
}

ComponentEmbedding FactoryBlockEntryData::embedding(const TranslationConfiguration& config) const {
  BlockData read = data_;
  for (const auto& [handle, port] : ports_) read.addPort(port.name());
  const PropertyReader properties(handle_);
  for (const kmf::VnId& id : config.blockParameters()) {
    const boost::optional<std::string> text = properties.read(id);
    if (!text) continue;
    const ustring typed = kmf::utf8_string_to_ustring(*text);
    const cvUniquePtr value(cvCreateUString(typed));
    read.addParameter(id, ParameterValue(value.get(), typed));
  }
  return makeEmbedding(config, read);
}

ComponentEmbedding FactoryBlockEntryData::makeEmbedding(const TranslationConfiguration& config,
                                                        const BlockData& data) const {
  return config.factory(blockType())(data);
}

void FactoryBlockEntryData::readBlock(double handle, const ModelConnectivity& connectivity) {
  path_ = connectivity.blockName(handle);
  handle_ = handle;
  readMaskParameters(handle, data_);
  handles_.insert(handle);
}

void FactoryBlockEntryData::readPorts(ModelConnectivity& connectivity, const PortName& portName) {
  for (const BlockConnection& connection : connectivity.connections(handle_)) {
    const double port = connection.source.portHandle;
    auto row = ports_.find(port);
    if (row == ports_.end()) {
      row = ports_.emplace(port, PortRecord()).first;
      row->second.setName(portName(port));
    }
    row->second.addConnected(connection.destination.portHandle);
  }
}

boost::shared_ptr<BlockEntryData> makeBlockEntry(KmIoPortCache& ioPorts, double handle,
                                                 ModelConnectivity& connectivity) {
  if (isCoreBlock(handle)) return boost::make_shared<CoreBlockEntryData>(handle, connectivity);
  return makeOpaqueBlockEntry(ioPorts, handle, connectivity);
}

void applySubstitutions(boost::shared_ptr<BlockEntryData>& entry, const std::map<double, double>& substitutions) {
  if (entry.use_count() != 1) entry = entry->clone();
  entry->applySubstitutions(substitutions);
}

bool isOpaqueSubsystem(double handle) {
  return getParamString(handle, "BlockType") == "SubSystem" && getParamString(handle, "Opaque") == "on";
}

}  // namespace gl::gti
