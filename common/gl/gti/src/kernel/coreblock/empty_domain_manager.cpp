#include "common/gl/gti/src/kernel/coreblock/empty_domain_manager.hpp"

namespace gl::gti {

namespace {

class EmptyDomainManager final : public DADomainMgr {
 public:
  explicit EmptyDomainManager(const std::string& domainName) : domainName_(domainName) {}

  DADomainMgr* clone() const override { return new EmptyDomainManager(*this); }
  const std::string& domainName() const override { return domainName_; }
  void startCompile(const std::string&) override {}
  void addMachine(const KMMachineData_tag*) override {}
  void compile(const std::string&, DACompileResult&) override {}
  void endCompile(const std::string&) override {}

 private:
  std::string domainName_;
};

}  // namespace

std::unique_ptr<DADomainMgr> make_empty_domain_manager(const std::string& domainName) {
  return std::make_unique<EmptyDomainManager>(domainName);
}

}  // namespace gl::gti
