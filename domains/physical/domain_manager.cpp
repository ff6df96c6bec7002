#include "domains/physical/domain_manager.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "domains/physical/boundary.hpp"
#include "domains/physical/model_settings.hpp"
#include "domains/physical/opaque_factory.hpp"
#include "domains/physical/prepared_kind.hpp"

namespace kinemo::physical {

PhysicalDomainManager::PhysicalDomainManager(gl::gti::DomainKey key) : key_(key) {}

DADomainMgr* PhysicalDomainManager::clone() const {
  return new PhysicalDomainManager(*this);
}

const std::string& PhysicalDomainManager::domainName() const {
  static const std::string name = domain_name;
  return name;
}

void PhysicalDomainManager::startCompile(const std::string& modelName) {
  gl::gti::TranslationManager::get().registerModel(key_, modelName, translation_configuration(modelName));
}

void PhysicalDomainManager::addMachine(const KMMachineData_tag* machine) {
  gl::gti::TranslationManager::get().addConnectivity(key_, machine);
}

void PhysicalDomainManager::compile(const std::string& modelName, DACompileResult& result) {
  read_model_settings(modelName);
  result.set(domain_name, gl::gti::TranslationManager::get().model(key_, modelName));
}

void PhysicalDomainManager::endCompile(const std::string&) {}

gl::gti::TranslationConfiguration translation_configuration(const std::string& modelName) {
  gl::gti::TranslationConfiguration configuration;
  configuration.factory(gl::gti::BlockType::OPAQUE, make_opaque_component);
  configuration.addBlockParameter(component_type_parameter);
  configuration.addBlockParameter(port_types_parameter);
  add_model_settings(configuration);
  configuration.nonVirtualBoundaryFcn(refuse_crossing);
  configuration.propagateRuntimeParametersFcn([modelName] { return keeps_runtime_parameters(modelName); });
  return configuration;
}

}  // namespace kinemo::physical
