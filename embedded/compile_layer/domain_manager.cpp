#include "platform/compile_layer/domain_manager.hpp"

#include <memory>

DADomainObj::~DADomainObj() = default;
DADomainMgr::~DADomainMgr() = default;

bool DADomainMgr::checkCanAddToGraph(const GTBlock*) const {
  return true;
}
void DADomainMgr::notifyPreEvalParamsStage(const std::string&) {}
std::vector<std::string> DADomainMgr::getConnPortAnnotations(const GTBlock*) const {
  return {};
}
std::string DADomainMgr::GetDomainMismatchPortType() const {
  return {};
}
std::string DADomainMgr::GetBlockReplacementSpec(const std::string&) const {
  return {};
}
void DADomainMgr::ThrowUpdateError() const {}

struct DomainMgrPrototypeRegistry::Data {
  std::map<std::string, std::unique_ptr<DADomainObj>> managers;
};

DomainMgrPrototypeRegistry::DomainMgrPrototypeRegistry() : data_(new Data) {}
DomainMgrPrototypeRegistry::~DomainMgrPrototypeRegistry() {
  delete data_;
}

DomainMgrPrototypeRegistry& DomainMgrPrototypeRegistry::get() {
  // Never destroyed: a manager's code may lie in a module that is closed by then.
  static auto* const registry = new DomainMgrPrototypeRegistry;
  return *registry;
}

DADomainObj* DomainMgrPrototypeRegistry::getDefaultMgr(const std::string& domainName) const {
  const auto found = data_->managers.find(domainName);
  return found == data_->managers.end() ? nullptr : found->second.get();
}

void DomainMgrPrototypeRegistry::setDefaultMgr(DADomainObj* manager, const std::string& domainName) {
  data_->managers[domainName].reset(manager);
}

void DomainMgrPrototypeRegistry::removeDefaultMgr(const std::string& domainName) {
  data_->managers.erase(domainName);
}

std::vector<std::string> DomainMgrPrototypeRegistry::names() const {
  std::vector<std::string> result;
  for (const auto& row : data_->managers) result.push_back(row.first);
  return result;
}
