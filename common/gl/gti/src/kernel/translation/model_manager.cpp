#include "common/gl/gti/src/kernel/translation/model_manager.hpp"

#include "common/gl/gti/export/toplevel_runtime_parameters.hpp"
#include "common/gl/gti/src/kernel/connectivity/km_io_ports.hpp"
#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "common/gl/gti/src/kernel/parameters/runtime_propagation.hpp"
#include "common/gl/gti/src/kernel/translation/atomic_units.hpp"
#include "common/gl/gti/src/kernel/translation/object_parameters.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/gantrel_id.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <map>
#include <utility>

namespace gl::gti {

namespace {

/// Makes the entry's component and puts it among the pending blocks. An error of the block names the block.
void addPending(const boost::shared_ptr<BlockEntryData>& entry, const TranslationConfiguration& configuration,
                TranslationResult& result, LevelTree& pending) {
  try {
    const ComponentEmbedding embedding = entry->embedding(configuration);
    pending.add(entry, embedding);
    result.entryList.push_back(entry);
  } catch (kmf::AttributedException& error) {
    error.addObject(entry->path());
    throw;
  }
}

/// The model with its parameters as expressions over its run-time parameters. Refused expressions are told where the
/// model is set up for interactive runs.
gl::core::Model propagated(const ustring& name, const TranslationResult& translated,
                           const gl::core::RuntimeParameterInfo& runtimeInfo) {
  const bool warn = getParamString(modelHandle(name), "InitializeInteractiveRuns") == "on";
  const PropagationResult result =
      propagate_runtime_parameters(translated.graph, translated.entries(), runtimeInfo, warn);
  return gl::core::Model(result.graph, result.info);
}

}  // namespace

BlockEntryMap TranslationResult::entries() const {
  BlockEntryMap byPath;
  for (const boost::shared_ptr<BlockEntryData>& entry : entryList) byPath.emplace(entry->path(), entry);
  return byPath;
}

ModelManager::ModelManager(const ustring& name, const TranslationConfiguration& configuration)
    : name_(name), configuration_(boost::make_shared<TranslationConfiguration>(configuration)) {}

ModelManager::ModelManager(const ModelManager& other)
    : name_(other.name_), configuration_(other.configuration_), entries_(other.entries_) {}

void ModelManager::addConnectivity(ModelConnectivity& connectivity) {
  KmIoPortCache ioPorts;
  std::map<double, double> remapTable;
  for (const double handle : connectivity.blockHandles()) {
    if (handles_.count(handle) != 0) continue;
    const boost::shared_ptr<BlockEntryData> entry = makeBlockEntry(ioPorts, handle, connectivity);
    handles_.insert(entry->handles().begin(), entry->handles().end());
    entries_.push_back(entry);
    entry->collectSubstitutions(remapTable);
  }
  for (boost::shared_ptr<BlockEntryData>& entry : entries_) applySubstitutions(entry, remapTable);
}

gl::core::Model ModelManager::model() const {
  const gl::core::RuntimeParameterInfo runtimeInfo = toplevel_runtime_parameters(name_);
  const TranslationResult result = translate({});
  if (configuration_->propagateRuntimeParametersFcn()()) return propagated(name_, result, runtimeInfo);
  return gl::core::Model(result.graph, runtimeInfo);
}

gl::core::Graph ModelManager::graph() const {
  return model().graph();
}

TranslationResult ModelManager::translate(const std::vector<kmf::VnId>& reservedIds) const {
  kmf::MessageException errors(
      kmf::Message(kmf::MessageId("kinemo:common:gl:gti:compile", "MultipleCompilationErrors", name_)));
  LevelTree pending;
  TranslationResult result;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const boost::shared_ptr<BlockEntryData> entry = entries_[i];  // a factory may bring in more of the model's blocks
    try {
      addPending(entry, *configuration_, result, pending);
    } catch (const kmf::Exception& error) {
      errors.addCause(error);
    }
  }
  if (errors.numCauses() != 0) throw errors;
  if (pending.empty()) return result;

  result.graph = foldHierarchy(pending, name_, *configuration_, reservedIds, result.entryList);
  checkNonVirtualBoundaries(result.graph, *configuration_);
  kmf::GantrelId::addRegistryEntry(kmf::VnId(kmf::ustring_to_utf8_string(name_)), gl::core::objects(result.graph));
  return result;
}

const ObjectParameterMap& ModelManager::objectParameters() {
  readObjectParameters(name_, configuration_->modelParameters(), objectParameters_);
  return objectParameters_;
}

}  // namespace gl::gti
