#pragma once

#include "common/gl/gti/export/translation_manager.hpp"
#include "platform/compile_layer/domain_manager.hpp"

#include <string>

namespace kinemo::physical {

/// The domain in the host's compile: hands the network to the translation service, and the model that comes back to the
/// result, under the domain's name, as a `gl::core::Model`.
class PhysicalDomainManager final : public DADomainMgr {
 public:
  explicit PhysicalDomainManager(gl::gti::DomainKey key);

  DADomainMgr* clone() const override;
  const std::string& domainName() const override;
  void startCompile(const std::string& modelName) override;
  void addMachine(const KMMachineData_tag* machine) override;
  void compile(const std::string& modelName, DACompileResult& result) override;
  /// Nothing: the model stays registered until it is closed, so that it can be asked for its graph.
  void endCompile(const std::string& modelName) override;

 private:
  gl::gti::DomainKey key_;
};

/// How the domain wants a model translated.
gl::gti::TranslationConfiguration translation_configuration(const std::string& modelName);

}  // namespace kinemo::physical
