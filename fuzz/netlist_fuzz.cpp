// Any bytes as a netlist: it is read and expanded, and nothing may crash, hang or leak.

#include <cstddef>
#include <cstdint>
#include <string>

#include "formats/spice/expansion.hpp"
#include "formats/spice/inner_nodes.hpp"
#include "formats/spice/live_text.hpp"
#include "formats/spice/netlist_reader.hpp"
#include "formats/spice/text_file.hpp"

namespace {

namespace spice = kinemo::formats::spice;

/// Looks at every value and text, up to a number of instances.
class Visitor : public spice::ExpansionVisitor {
 public:
  bool begin(const spice::Instance&, const spice::ParameterScopes&) override { return ++m_instances < 1'000; }
  void element(const spice::Element& element, const spice::ParameterScopes& scopes) override {
    const std::size_t here = scopes.depth() - 1;
    m_size += spice::live_text(element.text, scopes, here, here).text.size();
    m_size += element.model == nullptr ? 0 : spice::live_text(element.model->card, scopes, 0, here).text.size();
    m_size += element.value == nullptr ? 0 : spice::LiveExpressions(scopes, here, here).tell(*element.value).steps().size();
  }
  void end(const spice::Instance&) override {}

 private:
  std::size_t m_instances = 0;
  std::size_t m_size = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  if (spice::looks_binary(text)) {
    return 0;
  }
  kinemo::formats::DiagnosticList diagnostics;
  const auto file = spice::make_text_file("fuzz.cir", "/nowhere/fuzz.cir", text);
  const spice::Netlist netlist = spice::read_cards_and_resolve(file, diagnostics);
  if (!diagnostics.has_errors()) {
    Visitor visitor;
    spice::Reporter reporter(diagnostics);
    const spice::InnerNodes inner_nodes(netlist);
    spice::expand(netlist, visitor, reporter);
  }
  return 0;
}
