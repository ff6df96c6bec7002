#include "common/gl/gti/src/kernel/translation/domain_manager.hpp"

#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "common/gl/gti/src/kernel/translation/model_manager.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

namespace gl::gti {

void DomainManager::registerModel(const std::string& modelName, const TranslationConfiguration& configuration) {
  models_[modelName] = boost::make_shared<ModelManager>(kmf::local_encoded_string_to_ustring(modelName), configuration);
}

boost::shared_ptr<ModelManager> DomainManager::share(const std::string& modelName) const {
  const auto found = models_.find(modelName);
  if (found == models_.end()) throwUnknownModel(modelName);
  return found->second;
}

void DomainManager::addConnectivity(ModelConnectivity& connectivity) {
  findToChange(connectivity.modelName()).addConnectivity(connectivity);
}

gl::core::Graph DomainManager::graph(const std::string& modelName) const {
  return find(modelName).graph();
}

gl::core::Model DomainManager::model(const std::string& modelName) const {
  return find(modelName).model();
}

const ObjectParameterMap& DomainManager::objectParameters(const std::string& modelName) {
  return findToChange(modelName).objectParameters();
}

boost::any& DomainManager::modelData(const std::string& modelName) {
  return findToChange(modelName).data();
}

void DomainManager::setModelData(const std::string& modelName, const boost::any& data) {
  findToChange(modelName).data() = data;
}

const ModelManager& DomainManager::find(const std::string& modelName) const {
  const auto found = models_.find(modelName);
  if (found == models_.end()) throwUnknownModel(modelName);
  return *found->second;
}

ModelManager& DomainManager::findToChange(const std::string& modelName) {
  const auto found = models_.find(modelName);
  if (found == models_.end()) throwUnknownModel(modelName);
  boost::shared_ptr<ModelManager>& manager = found->second;
  if (manager.use_count() != 1) manager = boost::make_shared<ModelManager>(*manager);
  return *manager;
}

void DomainManager::throwUnknownModel(const std::string& modelName) const {
  kmf::throw_message("kinemo:common:gl:gti:compile", "UnknownModelForDomain", modelName, name_);
}

}  // namespace gl::gti
