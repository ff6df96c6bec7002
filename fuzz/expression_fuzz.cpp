// Any text: it parses or is refused with a place in it, its tree prints to a text that parses to an equal tree, and
// evaluation ends within its limits with a value or an error.

#include "embedded/expression/parse.hpp"
#include "embedded/expression/print.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/foundation/exception.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

namespace {

using namespace embedded;

void set_up() {
  scripting_runtime::limits().array_bytes = std::size_t{1} << 18;
  scripting_runtime::limits().steps = 2000;
  scripting_runtime::set_display_sink([](const std::string&) {});
  scripting_runtime::Workspace& base = scripting_runtime::base_workspace();
  base.set("a", 2);
  base.set("m", scripting_runtime::evaluate("[1 2;3 4]", scripting_runtime::Scope()));
  base.set("c", scripting_runtime::evaluate("{1,'two',{3}}", scripting_runtime::Scope()));
  base.set("s", scripting_runtime::evaluate("struct('f',{1,2})", scripting_runtime::Scope()));
}

void check_printing(const expression::Tree& tree) {
  const expression::ParseResult again = expression::parse(expression::print(tree));
  if (!again || !expression::equal(again.tree, tree)) std::abort();
}

void check_place(std::string_view text, const expression::ParseError& error) {
  if (error.id.empty() || error.line == 0 || error.column == 0 || error.column > text.size() + 1) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const bool ready = (set_up(), true);
  (void)ready;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const expression::ParseResult result = expression::parse(text);
  if (!result) {
    check_place(text, result.error);
    return 0;
  }
  check_printing(result.tree);
  const std::size_t alive = cvLiveArrayCount();
  try {
    const scripting_runtime::Scope scope(scripting_runtime::base_workspace());
    scripting_runtime::display_text(scripting_runtime::evaluate(result.tree, scope, text).get());
  } catch (const kmf::Exception&) {  // most texts are errors: only how evaluation ends is of interest
  }
  if (cvLiveArrayCount() != alive) std::abort();
  return 0;
}
