#pragma once

#include "common/gl/gti/export/translation_manager.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/any.hpp>
#include <boost/shared_ptr.hpp>

#include <map>
#include <string>

namespace gl::gti {

class ModelConnectivity;
class ModelManager;

/// One registered domain: its name and its models. Owned by the translation manager. Operations that name a model
/// @throws kmf::MessageException "kinemo:common:gl:gti:compile" "UnknownModelForDomain" (model, domain) unless told
/// otherwise. Those that change a model copy it first when somebody else holds it.
class DomainManager {
 public:
  explicit DomainManager(const std::string& name) : name_(name) {}

  const std::string& name() const { return name_; }

  void registerModel(const std::string& modelName, const TranslationConfiguration& configuration);
  bool hasModel(const std::string& modelName) const { return models_.count(modelName) != 0; }
  /// Nothing happens for an unknown model.
  void removeModel(const std::string& modelName) { models_.erase(modelName); }
  void clear() { models_.clear(); }
  /// A share in a model's manager.
  boost::shared_ptr<ModelManager> share(const std::string& modelName) const;

  void addConnectivity(ModelConnectivity& connectivity);
  gl::core::Graph graph(const std::string& modelName) const;
  gl::core::Model model(const std::string& modelName) const;
  const ObjectParameterMap& objectParameters(const std::string& modelName);
  boost::any& modelData(const std::string& modelName);
  void setModelData(const std::string& modelName, const boost::any& data);

 private:
  const ModelManager& find(const std::string& modelName) const;
  ModelManager& findToChange(const std::string& modelName);
  [[noreturn]] void throwUnknownModel(const std::string& modelName) const;

  std::string name_;
  std::map<std::string, boost::shared_ptr<ModelManager>> models_;
};

}  // namespace gl::gti
