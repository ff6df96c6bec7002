#include "domains/physical/domain_manager.hpp"

#include "common/gl/gti/export/translation_configuration.hpp"
#include "domains/physical/boundary.hpp"
#include "domains/physical/opaque_factory.hpp"
#include "domains/physical/prepared_kind.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace kinemo::physical {

const char runtime_parameters_setting[] = "PropagateRuntimeParameters";

namespace {

const cvArray_tag* model_parameter(kmf::CvCleaner& cleaner, const std::string& modelName, const char* parameter) {
  cvArray_tag* inputs[] = {cleaner.createString(modelName), cleaner.createString(std::string(parameter))};
  cvArray_tag* output = nullptr;
  kmf::call_internal_corvane(1, &output, 2, inputs, "get_param");
  return cleaner.addCvArray(output);
}

/// Hosts don't know the setting of themselves: a model that says nothing doesn't have it.
bool keeps_runtime_parameters(const std::string& modelName) {
  kmf::CvCleaner cleaner;
  const cvArray_tag* known = model_parameter(cleaner, modelName, "ObjectParameters");
  if (cvGetField(known, 0, runtime_parameters_setting) == nullptr) return false;
  const cvArray_tag* value = model_parameter(cleaner, modelName, runtime_parameters_setting);
  return cvIsChar(value) && kmf::cvarray_to_string(value) == "on";
}

}  // namespace

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
  result.set(domain_name, gl::gti::TranslationManager::get().model(key_, modelName));
}

void PhysicalDomainManager::endCompile(const std::string&) {}

gl::gti::TranslationConfiguration translation_configuration(const std::string& modelName) {
  gl::gti::TranslationConfiguration configuration;
  configuration.factory(gl::gti::BlockType::OPAQUE, make_opaque_component);
  configuration.addBlockParameter(component_type_parameter);
  configuration.addBlockParameter(port_types_parameter);
  configuration.nonVirtualBoundaryFcn(refuse_crossing);
  configuration.propagateRuntimeParametersFcn([modelName] { return keeps_runtime_parameters(modelName); });
  return configuration;
}

}  // namespace kinemo::physical
