#pragma once

#include "common/gl/gti/export/api.hpp"
#include "common/gl/gti/export/translation_configuration.hpp"
#include "platform/foundation/vn_id.hpp"
#include "platform/graph_core/graph.hpp"

#include <boost/any.hpp>
#include <boost/noncopyable.hpp>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

class GTBlock;
class gtPort;
struct KMMachineData_tag;

namespace gl::gti {

/// Names a registered domain: the index of its place. The all-ones value stands for an unknown one.
using DomainKey = std::uint64_t;

/// A model's settings by identifier.
using ObjectParameterMap = std::map<kmf::VnId, ParameterVariant>;

/// Groups of nets of ports.
using PortNets = std::vector<std::vector<std::vector<gtPort*>>>;

/// The one way into the translation service: the registry of domains, and of each domain's models. There is one for the
/// process, made on first use and never ended. All names are in the local encoding. To be called on the host's main
/// thread. The virtual operations keep their declared order.
///
/// A domain registers once and keeps its key. For each model that it compiles it calls `registerModel`, then
/// `addConnectivity` once or more, then `model` or `graph`, each call of which is a whole compile.
class KINEMO_GTI_API TranslationManager : private boost::noncopyable {
 public:
  static TranslationManager& get();

  /// The key stays valid until `unregisterDomain`; keys that were given back are used again.
  /// @throws kmf::MessageException "kinemo:common:gl:gti:compile" "DomainAlreadyRegistered" (name)
  virtual DomainKey registerDomain(const std::string& domainName) = 0;
  /// Ends the domain with its models. A bad key is ignored.
  virtual void unregisterDomain(const DomainKey& key) = 0;
  virtual bool hasDomain(const std::string& domainName) const = 0;
  /// All ones for an unknown name.
  virtual DomainKey domainKey(const std::string& domainName) const = 0;
  /// @throws "InvalidDomainKey", as does every operation below that takes a key, but for `clearDomain`
  virtual std::string domainName(const DomainKey& key) const = 0;

  /// Starts a model anew: an earlier registration of the name is dropped with everything gathered for it.
  virtual void registerModel(const DomainKey& key, const std::string& modelName,
                             const TranslationConfiguration& configuration) = 0;
  virtual bool hasModel(const DomainKey& key, const std::string& modelName) const = 0;

  /// Takes in nets as lists of ports, and blocks that must be known even though no net touches them.
  /// @throws "UnknownModelForDomain" (model, domain), as does every operation below that names a model
  virtual void addConnectivity(const DomainKey& key, std::string modelName, const PortNets& nets,
                               const std::vector<GTBlock*>& blocks) = 0;
  /// Takes in the host's machine data of a physical network, which names the model. @throws also
  /// "kinemo:common:gl:gti:connectivity" "DuplicateBlockHandles" (handle), "InvalidBlockName" (block, model)
  virtual void addConnectivity(const DomainKey& key, const KMMachineData_tag* machine) = 0;

  /// Compiles, and returns the graph alone.
  virtual gl::core::Graph graph(const DomainKey& key, const std::string& modelName) const = 0;
  /// Compiles. @throws "MultipleCompilationErrors" (model) with one cause for each block that failed,
  /// "MissingPortEmbedding" (port)
  virtual gl::core::Model model(const DomainKey& key, const std::string& modelName) const = 0;

  /// Reads the settings that the configuration asks for from the host. The map is valid until the model goes.
  /// @throws "ConfigSetEvalErr" (text, parameter, model)
  virtual const ObjectParameterMap& objectParameters(const DomainKey& key, const std::string& modelName) = 0;
  /// A place for a value of the domain's own, kept with the model; empty at first.
  virtual boost::any& modelData(const DomainKey& key, const std::string& modelName) = 0;
  virtual void setModelData(const DomainKey& key, const std::string& modelName, const boost::any& data) = 0;

  /// Drops all models of the domain. A bad key is ignored.
  virtual void clearDomain(const DomainKey& key) = 0;
  /// Drops the model of that name in every domain that has one.
  virtual void removeModel(const std::string& modelName) = 0;

 protected:
  TranslationManager() = default;
  virtual ~TranslationManager();
};

}  // namespace gl::gti
