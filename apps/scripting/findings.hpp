// What readers and writers of model files find, as errors and warnings of the scripting language.
#pragma once

#include "formats/diagnostics.hpp"
#include "platform/foundation/exception.hpp"

namespace kinemo::scripting {

/// Throws the message as an error, with each error of the list as a cause.
[[noreturn]] void throw_with_findings(const kmf::Message& message, const formats::DiagnosticList& problems);
/// Raises each warning of the list.
void warn_of_findings(const formats::DiagnosticList& problems);

}  // namespace kinemo::scripting
