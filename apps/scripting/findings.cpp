#include "apps/scripting/findings.hpp"

#include "apps/scripting/diagram_inputs.hpp"
#include "platform/foundation/warning.hpp"

namespace kinemo::scripting {

namespace {

/// Place, text and rule; whoever shows the message says whether it is an error or a warning.
kmf::Message message_of(const formats::Diagnostic& diagnostic) {
  std::string text = formats::to_string(diagnostic);
  const std::string severity = std::string(formats::to_string(diagnostic.severity)) + ": ";
  const std::size_t place = text.find(severity + diagnostic.text);
  if (place != std::string::npos) text.erase(place, severity.size());
  return kmf::Message(kmf::MessageId(diagram_messages, "Finding", text));
}

}  // namespace

void throw_with_findings(const kmf::Message& message, const formats::DiagnosticList& problems) {
  kmf::MessageException error(message);
  for (const formats::Diagnostic& diagnostic : problems.all()) {
    if (diagnostic.severity == formats::Severity::error) error.addCause(kmf::MessageException(message_of(diagnostic)));
  }
  throw error;
}

void warn_of_findings(const formats::DiagnosticList& problems) {
  for (const formats::Diagnostic& diagnostic : problems.all()) {
    if (diagnostic.severity == formats::Severity::warning) kmf::Warning::get().issueWarning(message_of(diagnostic));
  }
}

}  // namespace kinemo::scripting
