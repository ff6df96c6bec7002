// Findings of a check as marks in pictures.
#pragma once

#include "formats/diagnostics.hpp"
#include "views/picture/picture.hpp"

namespace kinemo::views::picture {

/// Marks what the findings are about, and chooses the systems where something is marked, the topmost first; the top of
/// the diagram where nothing is. Formats without pages get the first of them.
PictureRequest picture_of_findings(embedded::block_diagram::Diagram& diagram, const formats::DiagnosticList& findings,
                                   embedded::drawing::Format format);

}  // namespace kinemo::views::picture
