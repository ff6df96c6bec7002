#include "embedded/class_system/native_method.hpp"

#include <algorithm>

namespace embedded::class_system {

using ccos::COSNameID;

NativeMethod::NativeMethod(const MethodDefinition& definition, const std::string* class_name)
    : definition_(&definition), signature_(ccos::COSMethodSignature::createMethodSignature()) {
  signature_->addInputType(COSNameID(*class_name));
  for (const std::string& type : definition.inputs) signature_->addInputType(COSNameID(type));
  for (const std::string& type : definition.optional) signature_->addOptionalInputType(COSNameID(type));
  if (!definition.further.empty()) signature_->setFurtherInputType(COSNameID(definition.further));
  signature_->addOutputType("any");
}

void NativeMethod::invoke(const ccos::COSClient*, int& nOut, ccos::COSValue* outputs, int nIn,
                          const ccos::COSValue* inputs) const {
  scripting_runtime::Call call(getName(), nOut, nIn, const_cast<ccos::COSValue*>(inputs));
  definition_->body(call);
  const int room = std::max(nOut, 1);
  nOut = std::min(room, static_cast<int>(call.outputs.size()));
  for (int i = 0; i < nOut; ++i) outputs[i] = call.outputs[static_cast<std::size_t>(i)].release();
}

}  // namespace embedded::class_system
