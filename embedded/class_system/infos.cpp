// Signatures, and the infos of methods and packages: what infos answer where their authors say nothing, and the memory
// of them all.

#include "platform/class_system/class_system.hpp"
#include "platform/class_system/method_info.hpp"

#include <new>

namespace ccos {

COSMethodSignature::COSMethodSignature() = default;
COSMethodSignature::~COSMethodSignature() = default;

COSMethodSignature* COSMethodSignature::createMethodSignature() {
  return new COSMethodSignature();
}

void COSMethodSignature::addInputType(const COSNameID& type) {
  inputs_.insert(inputs_.begin() + static_cast<std::ptrdiff_t>(required_), type);
  ++required_;
}

void COSMethodSignature::addOptionalInputType(const COSNameID& type) {
  inputs_.push_back(type);
}

void COSMethodSignature::setFurtherInputType(const COSNameID& type) {
  further_.assign(1, type);
}

void COSMethodSignature::addOutputType(const COSNameID& type) {
  outputs_.push_back(type);
}

// Libraries of one process may bring C++ run-times of their own: all these are made and ended here, whoever does it.

void* COSMethodSignature::operator new(std::size_t size) {
  return ::operator new(size);
}
void COSMethodSignature::operator delete(void* memory) noexcept {
  ::operator delete(memory);
}
void* COSMethodInfo::operator new(std::size_t size) {
  return ::operator new(size);
}
void COSMethodInfo::operator delete(void* memory) noexcept {
  ::operator delete(memory);
}
void* COSPackageInfo::operator new(std::size_t size) {
  return ::operator new(size);
}
void COSPackageInfo::operator delete(void* memory) noexcept {
  ::operator delete(memory);
}

COSMethodInfo::~COSMethodInfo() = default;
const char* COSMethodInfo::getDescription() const {
  return "";
}
const char* COSMethodInfo::getDetailedDescription() const {
  return "";
}
COSMemberAccess COSMethodInfo::getMemberAccess() const {
  return COSMemberAccess::Public;
}
const COSNameID* COSMethodInfo::getExtendedAccess() const {
  return nullptr;
}
bool COSMethodInfo::isFirstArgDispatch() const {
  return false;
}
bool COSMethodInfo::isStatic() const {
  return true;
}
bool COSMethodInfo::isAbstract() const {
  return false;
}
bool COSMethodInfo::isSealed() const {
  return false;
}
bool COSMethodInfo::isVisible() const {
  return true;
}
bool COSMethodInfo::isDestructible() const {
  return true;
}
bool COSMethodInfo::isLocked() const {
  return false;
}
bool COSMethodInfo::isExplicit() const {
  return false;
}
bool COSMethodInfo::doesMethodOverrideAllSignatures() const {
  return false;
}

COSPackageInfo::~COSPackageInfo() = default;
const char* COSPackageInfo::getDescription() const {
  return "";
}
const char* COSPackageInfo::getDetailedDescription() const {
  return "";
}
bool COSPackageInfo::attemptToLoadSubPackage(const COSNameID&) {
  return false;
}
bool COSPackageInfo::attemptToLoadClass(const COSNameID&) {
  return false;
}
bool COSPackageInfo::attemptToLoadFunction(const COSNameID&) {
  return false;
}
bool COSPackageInfo::attemptToLoadType(const COSNameID&) {
  return false;
}
const COSMethodSelector* COSPackageInfo::getMethodSelector() const {
  return nullptr;
}
void COSPackageInfo::setPackage(COSPackage*) {}
bool COSPackageInfo::isDestructible() const {
  return false;
}
bool COSPackageInfo::isLocked() const {
  return false;
}
const char* COSPackageInfo::getH1Line() const {
  return "";
}
const char* COSPackageInfo::getHelpText() const {
  return "";
}

}  // namespace ccos

namespace kmf::ccos {

MethodInfo::~MethodInfo() = default;
const char* MethodInfo::getName() const {
  return method_->getName();
}
const char* MethodInfo::getDescription() const {
  return method_->getDescription();
}
const char* MethodInfo::getDetailedDescription() const {
  return method_->getDetailedDescription();
}
::ccos::COSMemberAccess MethodInfo::getMemberAccess() const {
  return method_->getMemberAccess();
}
const ::ccos::COSNameID* MethodInfo::getExtendedAccess() const {
  return method_->getExtendedAccess();
}
const ::ccos::COSMethodSignature* MethodInfo::getMethodSignature() const {
  return method_->getMethodSignature();
}
void MethodInfo::invoke(const ::ccos::COSClient* client, int& nOut, ::ccos::COSValue* outputs, int nIn,
                        const ::ccos::COSValue* inputs) const {
  method_->invoke(client, nOut, outputs, nIn, inputs);
}
bool MethodInfo::isFirstArgDispatch() const {
  return method_->isFirstArgDispatch();
}
bool MethodInfo::isStatic() const {
  return method_->isStatic();
}
bool MethodInfo::isAbstract() const {
  return method_->isAbstract();
}
bool MethodInfo::isSealed() const {
  return method_->isSealed();
}
bool MethodInfo::isVisible() const {
  return method_->isVisible();
}
bool MethodInfo::isDestructible() const {
  return method_->isDestructible();
}
bool MethodInfo::isLocked() const {
  return method_->isLocked();
}
bool MethodInfo::isExplicit() const {
  return method_->isExplicit();
}
bool MethodInfo::doesMethodOverrideAllSignatures() const {
  return method_->doesMethodOverrideAllSignatures();
}

}  // namespace kmf::ccos
