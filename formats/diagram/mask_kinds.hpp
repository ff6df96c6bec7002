// The words of diagram files for what a mask parameter is.
#pragma once

#include "platform/block_diagram/dialog.hpp"

namespace kinemo::formats::diagram {

struct MaskParameterKind {
  const char* word;
  GTPrmDesc::Type type;
};

/// The first one is meant where nothing is said.
constexpr MaskParameterKind mask_parameter_kinds[] = {
    {"expression", GTPrmDesc::EDIT},
    {"text", GTPrmDesc::STRING},
    {"switch", GTPrmDesc::BOOLEAN},
    {"choice", GTPrmDesc::POPUP},
};

}  // namespace kinemo::formats::diagram
