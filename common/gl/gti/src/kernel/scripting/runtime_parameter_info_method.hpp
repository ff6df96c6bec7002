#pragma once

#include "platform/class_system/method.hpp"

#include <boost/shared_ptr.hpp>

namespace gl::gti {

/// kinemo.gl.gt.runtimeParameterInfo(domain, model): a model's run-time parameters as an object of
/// "kinemo.gl.RuntimeParameterInfo".
class RuntimeParameterInfoMethod : public ccos::COSMethodInfo {
 public:
  RuntimeParameterInfoMethod();
  ~RuntimeParameterInfoMethod() override;
  const char* getName() const override;
  const char* getDetailedDescription() const override;
  const ccos::COSMethodSignature* getMethodSignature() const override;
  /// @throws "kinemo:common:gl:gti:cos" "UnknownDomain" (domain), what the translation manager raises for the model,
  /// and what the runtime raises for an input that isn't text
  void invoke(const ccos::COSClient* client, int& nOut, ccos::COSValue* outputs, int nIn,
              const ccos::COSValue* inputs) const override;

 private:
  ccos::COSMethodSignature* signature_;
  boost::shared_ptr<ccos::COSMethodSignature> signatureOwner_;
};

}  // namespace gl::gti
