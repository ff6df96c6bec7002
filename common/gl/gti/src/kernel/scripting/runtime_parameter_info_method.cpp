#include "common/gl/gti/src/kernel/scripting/runtime_parameter_info_method.hpp"

#include "common/gl/gti/src/kernel/scripting/model_inputs.hpp"
#include "common/gl/gti/src/kernel/scripting/script_object.hpp"

namespace gl::gti {

RuntimeParameterInfoMethod::RuntimeParameterInfoMethod() : signature_(nullptr), signatureOwner_(model_signature()) {
  signature_ = signatureOwner_.get();
}

RuntimeParameterInfoMethod::~RuntimeParameterInfoMethod() = default;

const char* RuntimeParameterInfoMethod::getName() const {
  return "runtimeParameterInfo";
}

const char* RuntimeParameterInfoMethod::getDetailedDescription() const {
  return "Returns the RuntimeParameterInfo constructed for the given Physical Domain and Gantrel model during the last "
         "compilation of the Gantrel model.";
}

const ccos::COSMethodSignature* RuntimeParameterInfoMethod::getMethodSignature() const {
  return signature_;
}

void RuntimeParameterInfoMethod::invoke(const ccos::COSClient*, int& nOut, ccos::COSValue* outputs, int,
                                        const ccos::COSValue* inputs) const {
  const ModelInputs asked = model_inputs(inputs);
  const gl::core::Model model = TranslationManager::get().model(asked.domain, asked.model);
  outputs[0] = array_around(object_around("kinemo.gl.RuntimeParameterInfo", model.runtimeParameters()));
  nOut = 1;
}

}  // namespace gl::gti
