#include "common/gl/gti/src/kernel/scripting/model_inputs.hpp"

#include "platform/foundation/exception.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace gl::gti {

ModelInputs model_inputs(const ccos::COSValue* inputs) {
  const std::string domain = kmf::cvarray_to_string(inputs[0]);
  std::string model = kmf::cvarray_to_string(inputs[1]);
  const DomainKey key = TranslationManager::get().domainKey(domain);
  if (key == ~DomainKey{0}) kmf::throw_message("kinemo:common:gl:gti:cos", "UnknownDomain", domain);
  return {key, std::move(model)};
}

boost::shared_ptr<ccos::COSMethodSignature> model_signature() {
  const ccos::COSNameID any("any");
  boost::shared_ptr<ccos::COSMethodSignature> signature(ccos::COSMethodSignature::createMethodSignature());
  signature->addInputType(any);
  signature->addInputType(any);
  signature->addOutputType(any);
  return signature;
}

}  // namespace gl::gti
