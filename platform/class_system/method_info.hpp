#pragma once

#include "platform/class_system/method.hpp"

#include <boost/shared_ptr.hpp>

namespace kmf::ccos {

/// A method info that forwards everything to another one, which it shares with whoever made it. Packages are given such
/// wrappers, so that they may end them while the author's own info lives on.
class KINEMO_PLATFORM_API MethodInfo : public ::ccos::COSMethodInfo {
 public:
  /// `method` must not be empty.
  explicit MethodInfo(const boost::shared_ptr<::ccos::COSMethodInfo>& method) : method_(method) {}

  ~MethodInfo() override;
  const char* getName() const override;
  const char* getDescription() const override;
  const char* getDetailedDescription() const override;
  ::ccos::COSMemberAccess getMemberAccess() const override;
  const ::ccos::COSNameID* getExtendedAccess() const override;
  const ::ccos::COSMethodSignature* getMethodSignature() const override;
  void invoke(const ::ccos::COSClient* client, int& nOut, ::ccos::COSValue* outputs, int nIn,
              const ::ccos::COSValue* inputs) const override;
  bool isFirstArgDispatch() const override;
  bool isStatic() const override;
  bool isAbstract() const override;
  bool isSealed() const override;
  bool isVisible() const override;
  bool isDestructible() const override;
  bool isLocked() const override;
  bool isExplicit() const override;
  bool doesMethodOverrideAllSignatures() const override;

 private:
  boost::shared_ptr<::ccos::COSMethodInfo> method_;
};

}  // namespace kmf::ccos
