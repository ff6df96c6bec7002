#include "apps/scripting/part_block.hpp"

#include "apps/scripting/findings.hpp"
#include "formats/diagram/linked_files.hpp"
#include "formats/diagram/read_part.hpp"

namespace kinemo::scripting {

bool is_part(const std::string& type) {
  return formats::diagram::names_a_file(type);
}

GTBlock& place_part(host::System& system, const ustring& name, const std::string& file) {
  formats::DiagnosticList problems;
  GTBlock* const block = formats::diagram::read_part(system, name, file, problems);
  if (block == nullptr) {
    throw_with_findings(kmf::Message(kmf::MessageId(diagram_messages, "CannotPlacePart", file, name)), problems);
  }
  warn_of_findings(problems);
  return *block;
}

}  // namespace kinemo::scripting
