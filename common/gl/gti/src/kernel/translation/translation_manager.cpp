#include "common/gl/gti/export/translation_manager.hpp"

#include "common/gl/gti/src/kernel/connectivity/model_connectivity.hpp"
#include "common/gl/gti/src/kernel/translation/domain_manager.hpp"
#include "platform/block_diagram/events.hpp"
#include "platform/foundation/exception.hpp"

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include <limits>
#include <memory>
#include <utility>

namespace gl::gti {

namespace {

constexpr const char* messageGroup = "kinemo:common:gl:gti:compile";
constexpr DomainKey unknownDomain = std::numeric_limits<DomainKey>::max();

/// Marks a free place.
const boost::shared_ptr<DomainManager> noDomain;

class TranslationManagerImpl final : public TranslationManager {
 public:
  TranslationManagerImpl() = default;
  ~TranslationManagerImpl() override { GtBdDomainEventHandler::deregisterListener(&listener_); }

  /// From here on models go when their diagrams do.
  void subscribe() {
    GtBdDomainEventHandler::registerListener(&listener_);
    listener_.owner = this;
  }

  DomainKey registerDomain(const std::string& domainName) override {
    if (hasDomain(domainName)) kmf::throw_message(messageGroup, "DomainAlreadyRegistered", domainName);
    auto domain = boost::make_shared<DomainManager>(domainName);
    for (std::size_t i = 0; i < domains_.size(); ++i) {
      if (domains_[i] != noDomain) continue;
      domains_[i] = std::move(domain);
      return i;
    }
    domains_.push_back(std::move(domain));
    return domains_.size() - 1;
  }

  void unregisterDomain(const DomainKey& key) override {
    if (isLive(key)) domains_[key] = noDomain;
  }

  bool hasDomain(const std::string& domainName) const override { return domainKey(domainName) < unknownDomain; }

  DomainKey domainKey(const std::string& domainName) const override {
    for (std::size_t i = 0; i < domains_.size(); ++i) {
      if (domains_[i] != noDomain && domains_[i]->name() == domainName) return i;
    }
    return unknownDomain;
  }

  std::string domainName(const DomainKey& key) const override { return find(key).name(); }

  void registerModel(const DomainKey& key, const std::string& modelName,
                     const TranslationConfiguration& configuration) override {
    find(key).registerModel(modelName, configuration);
  }

  bool hasModel(const DomainKey& key, const std::string& modelName) const override {
    return find(key).hasModel(modelName);
  }

  // The connectivity is made first, so that a fault in the host's data shows before a bad key does.

  void addConnectivity(const DomainKey& key, std::string modelName, const PortNets& nets,
                       const std::vector<GTBlock*>& blocks) override {
    ModelConnectivity connectivity(std::move(modelName), nets, blocks);
    find(key).addConnectivity(connectivity);
  }

  void addConnectivity(const DomainKey& key, const KMMachineData_tag* machine) override {
    ModelConnectivity connectivity(machine);
    find(key).addConnectivity(connectivity);
  }

  gl::core::Graph graph(const DomainKey& key, const std::string& modelName) const override {
    return find(key).graph(modelName);
  }

  gl::core::Model model(const DomainKey& key, const std::string& modelName) const override {
    return find(key).model(modelName);
  }

  const ObjectParameterMap& objectParameters(const DomainKey& key, const std::string& modelName) override {
    return find(key).objectParameters(modelName);
  }

  boost::any& modelData(const DomainKey& key, const std::string& modelName) override {
    return find(key).modelData(modelName);
  }

  void setModelData(const DomainKey& key, const std::string& modelName, const boost::any& data) override {
    find(key).setModelData(modelName, data);
  }

  void clearDomain(const DomainKey& key) override {
    if (isLive(key)) domains_[key]->clear();
  }

  void removeModel(const std::string& modelName) override {
    for (const boost::shared_ptr<DomainManager>& domain : domains_) {
      if (domain != noDomain) domain->removeModel(modelName);
    }
  }

 private:
  /// Drops the model of a diagram that is about to go away.
  struct Listener final : GtBdDomainListener {
    void handleBlockDiagramEvent(GTBlockDiagram* diagram) override {
      if (owner == nullptr) return;
      owner->removeModel(gt::intrf::getBlockDiagram(diagram).getGrDisplayName().get_converted_lcp_str());
    }

    TranslationManager* owner = nullptr;  ///< null until the subscription has succeeded
  };

  bool isLive(const DomainKey& key) const { return key < domains_.size() && domains_[key] != noDomain; }

  const DomainManager& find(const DomainKey& key) const {
    if (!isLive(key)) kmf::throw_message(messageGroup, "InvalidDomainKey");
    return *domains_[key];
  }
  DomainManager& find(const DomainKey& key) {
    if (!isLive(key)) kmf::throw_message(messageGroup, "InvalidDomainKey");
    return *domains_[key];
  }

  std::vector<boost::shared_ptr<DomainManager>> domains_;
  Listener listener_;
};

TranslationManager* manager = nullptr;

}  // namespace

TranslationManager::~TranslationManager() = default;

TranslationManager& TranslationManager::get() {
  if (manager == nullptr) {
    auto made = std::make_unique<TranslationManagerImpl>();
    made->subscribe();
    manager = made.release();
  }
  return *manager;
}

}  // namespace gl::gti
