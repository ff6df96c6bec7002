#pragma once

// The host's compile as a domain sees it.
//
// Stages of a compile, for each domain manager that has blocks in the diagram, in this order:
//   notifyPreEvalParamsStage   before mask parameters are evaluated and blocks check theirs
//   startCompile               the diagram's physical network is known
//   addMachine                 the machine data of the network, once or more
//   compile                    make the model and put it into the result
//   endCompile                 always, on success and on failure
// The host owns managers that are registered, and copies the registered one (`clone`) for each compile.

#include "platform/foundation/export.hpp"

#include <boost/any.hpp>

#include <map>
#include <string>
#include <vector>

struct KMMachineData_tag;
class GTBlock;

/// What a compile leaves for whoever asked for it: by domain name, an object of the domain's choice.
class KINEMO_PLATFORM_API DACompileResult {
 public:
  void set(const std::string& domain, const boost::any& value) { values_[domain] = value; }
  const std::map<std::string, boost::any>& values() const { return values_; }

 private:
  std::map<std::string, boost::any> values_;
};

class KINEMO_PLATFORM_API DADomainObj {
 public:
  virtual ~DADomainObj();
};

class KINEMO_PLATFORM_API DADomainMgr : public DADomainObj {
 public:
  ~DADomainMgr() override;
  virtual DADomainMgr* clone() const = 0;
  virtual const std::string& domainName() const = 0;
  virtual void startCompile(const std::string& modelName) = 0;
  virtual void addMachine(const KMMachineData_tag* machine) = 0;
  /// Whether a block may be added to a graph of this domain; true unless overridden.
  virtual bool checkCanAddToGraph(const GTBlock* block) const;
  virtual void compile(const std::string& modelName, DACompileResult& result) = 0;
  virtual void endCompile(const std::string& modelName) = 0;
  virtual void notifyPreEvalParamsStage(const std::string& modelName);
  /// Texts that the host shows at connection ports; none unless overridden.
  virtual std::vector<std::string> getConnPortAnnotations(const GTBlock* block) const;
  /// The port type that a line between unlike domains gets; empty unless overridden.
  virtual std::string GetDomainMismatchPortType() const;
  /// A block type that stands in for another; empty unless overridden.
  virtual std::string GetBlockReplacementSpec(const std::string& blockType) const;
  /// Throws what the domain has to say of a failed update; nothing unless overridden.
  virtual void ThrowUpdateError() const;
};

/// The host's registry of default domain managers by domain name.
class KINEMO_PLATFORM_API DomainMgrPrototypeRegistry {
 public:
  static DomainMgrPrototypeRegistry& get();
  /// Null where there is none.
  DADomainObj* getDefaultMgr(const std::string& domainName) const;
  /// Takes over the manager; an earlier one of the name ends.
  void setDefaultMgr(DADomainObj* manager, const std::string& domainName);
  void removeDefaultMgr(const std::string& domainName);
  std::vector<std::string> names() const;

 private:
  DomainMgrPrototypeRegistry();
  ~DomainMgrPrototypeRegistry();
  struct Data;
  Data* data_;
};
