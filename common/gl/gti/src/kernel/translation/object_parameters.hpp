#pragma once

#include "common/gl/gti/export/translation_configuration.hpp"
#include "common/gl/gti/export/translation_manager.hpp"
#include "platform/foundation/ustring.hpp"

namespace gl::gti {

/// Reads the settings of a model from the host into `values`, over earlier values of theirs. A setting that the model
/// doesn't have takes its default.
/// @throws kmf::MessageException "kinemo:common:gl:gti:compile" "ConfigSetEvalErr" (text, parameter, model)
void readObjectParameters(const ustring& modelName, const ModelParameterMap& parameters, ObjectParameterMap& values);

}  // namespace gl::gti
