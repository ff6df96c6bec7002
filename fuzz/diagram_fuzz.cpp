// Any bytes as a diagram file: a diagram comes of them, or errors do and no diagram; a diagram compiles or is refused with
// errors of the system's own kind.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/compile_layer/compile.hpp"
#include "embedded/environment/environment.hpp"
#include "formats/diagram/read_diagram.hpp"
#include "platform/foundation/exception.hpp"
#include "views/error_diagnostics.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

void compile(embedded::block_diagram::Diagram& diagram) {
  try {
    embedded::compile_layer::compile(diagram);
  } catch (const kmf::Exception& error) {
    kinemo::formats::DiagnosticList list;
    kinemo::views::add_error(error, &diagram, "fuzz.yaml", list);
    if (!list.has_errors()) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static embedded::Environment environment;
  static const bool loaded = [] {
    // The domain's module, where the environment of the run names one: without it no block of the library is known.
    const char* module = std::getenv("KINEMO_FUZZ_DOMAIN");
    if (module != nullptr) environment.loadDomain(module);
    return module != nullptr;
  }();
  static_cast<void>(loaded);
  kinemo::formats::DiagnosticList problems;
  const std::string text(reinterpret_cast<const char*>(data), size);
  auto* diagram = kinemo::formats::diagram::read_diagram_text(text, "/nowhere/fuzz.yaml", problems);
  if ((diagram == nullptr) != problems.has_errors()) std::abort();
  if (diagram != nullptr) {
    compile(*diagram);
    embedded::block_diagram::Diagram::close(*diagram);
  }
  if (!embedded::block_diagram::Diagram::open().empty()) std::abort();
  return 0;
}
