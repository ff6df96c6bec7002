#pragma once

#include "platform/class_system/method.hpp"

#include <boost/shared_ptr.hpp>

namespace gl::gti {

/// kinemo.gl.gt.graph(domain, model): the graph of a model as an object of "kinemo.gl.Graph".
class GraphMethod : public ccos::COSMethodInfo {
 public:
  GraphMethod();
  ~GraphMethod() override;
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
