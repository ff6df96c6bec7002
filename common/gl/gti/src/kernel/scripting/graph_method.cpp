#include "common/gl/gti/src/kernel/scripting/graph_method.hpp"

#include "common/gl/gti/src/kernel/scripting/model_inputs.hpp"
#include "common/gl/gti/src/kernel/scripting/script_object.hpp"

namespace gl::gti {

GraphMethod::GraphMethod() : signature_(nullptr), signatureOwner_(model_signature()) {
  signature_ = signatureOwner_.get();
}

GraphMethod::~GraphMethod() = default;

const char* GraphMethod::getName() const {
  return "graph";
}

const char* GraphMethod::getDetailedDescription() const {
  return "Returns the graph constructed for the given Physical Domain and Gantrel model during the last compilation of "
         "the Gantrel model.";
}

const ccos::COSMethodSignature* GraphMethod::getMethodSignature() const {
  return signature_;
}

void GraphMethod::invoke(const ccos::COSClient*, int& nOut, ccos::COSValue* outputs, int,
                         const ccos::COSValue* inputs) const {
  const ModelInputs asked = model_inputs(inputs);
  const gl::core::Graph graph = TranslationManager::get().graph(asked.domain, asked.model);
  outputs[0] = array_around(object_around("kinemo.gl.Graph", graph));
  nOut = 1;
}

}  // namespace gl::gti
