#include "common/gl/gti/src/kernel/block_model/core_block_entry.hpp"

#include "common/gl/gti/src/kernel/coreblock/core_block.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <boost/make_shared.hpp>

namespace gl::gti {

CoreBlockEntryData::CoreBlockEntryData(double handle, ModelConnectivity& connectivity) {
  readBlock(handle, connectivity);
  coreBlock_ = coreBlockOf(handle);
  readPorts(connectivity, [this](double port) { return kmf::utf8_string_to_ustring(coreBlock_->portName(port)); });
}

ComponentEmbedding CoreBlockEntryData::makeEmbedding(const TranslationConfiguration& config,
                                                     const BlockData& data) const {
  return coreBlock_->makeEmbedding(config, data);
}

void CoreBlockEntryData::applyRuntimeParameters(ParameterSetter setter, const ParameterRewrites& rewrites) {
  ParameterRewrites kept;
  for (const auto& rewrite : rewrites)
    if (staysTunable(rewrite.first)) kept.insert(rewrite);
  coreBlock_->applyRuntimeParameters(setter, kept);
}

boost::shared_ptr<BlockEntryData> CoreBlockEntryData::clone() const {
  return boost::make_shared<CoreBlockEntryData>(*this);
}

bool CoreBlockEntryData::staysTunable(const kmf::VnId& parameter) const {
  const auto conf = data().parameters().find(std::string(parameter) + "_conf");
  if (conf == data().parameters().end()) return true;
  const cvArray_tag* value = conf->second.value();
  return cvIsChar(value) && kmf::lower(kmf::cvarray_to_string(value)) == "runtime";
}

}  // namespace gl::gti
