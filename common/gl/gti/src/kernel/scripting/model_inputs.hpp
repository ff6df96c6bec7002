#pragma once

#include "common/gl/gti/export/translation_manager.hpp"
#include "platform/class_system/method.hpp"

#include <boost/shared_ptr.hpp>

#include <string>

namespace gl::gti {

/// The model that a call names by a domain and a name.
struct ModelInputs {
  DomainKey domain;
  std::string model;
};

/// @throws kmf::MessageException "kinemo:common:gl:gti:cos" "UnknownDomain" (domain), and what the runtime raises for
/// an input that isn't text
ModelInputs model_inputs(const ccos::COSValue* inputs);

/// The signature of methods that take such inputs: two of any type, and one output.
boost::shared_ptr<ccos::COSMethodSignature> model_signature();

}  // namespace gl::gti
