// Errors of a compile as diagnostics: each at the place in the model's files where its block was written.
#pragma once

#include "formats/diagnostics.hpp"

#include <string>

namespace kmf {
class Exception;
}

namespace embedded::block_diagram {
class Diagram;
}

namespace kinemo::views {

/// Adds one diagnostic for the error, or one for each cause of an error that only gathers those of many blocks. The
/// rule is `group:id` of the message, the place that of the block concerned; causes and block paths become notes.
/// `diagram` may be null; `file` is shown where no block tells a place.
void add_error(const kmf::Exception& error, const embedded::block_diagram::Diagram* diagram, const std::string& file,
               formats::DiagnosticList& list);

/// The place where a block of a full path was written, or the nearest block around it that has one.
formats::SourcePlace place_of(const std::string& block_path, const embedded::block_diagram::Diagram* diagram,
                              const std::string& file);

}  // namespace kinemo::views
