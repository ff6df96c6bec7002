#include "embedded/scripting_runtime/prompt.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "embedded/scripting_runtime/script.hpp"

#include <new>
#include <utility>

namespace embedded::scripting_runtime {

void Prompt::enter(const std::string& line) {
  pending_ += line + "\n";
  if (!incomplete_.needs_more(line)) finish();
}

void Prompt::finish() {
  const std::string text = std::exchange(pending_, {});
  incomplete_ = {};
  if (!text.empty()) run(text);
}

void Prompt::abandon() {
  pending_.clear();
  incomplete_ = {};
}

void Prompt::run(const std::string& text) {
  request_interrupt(false);
  try {
    const Interruptible interruptible(true);
    run_script(text, "", workspace_);
  } catch (const ExitRequest& request) {
    exit_code_ = request.code();
  } catch (const kmf::Exception& error) {
    tell(to_text(problem_of(error)));
  } catch (const std::bad_alloc&) {
    tell("error: out of memory\n");
  }
  request_interrupt(false);
}

void Prompt::tell(const std::string& error) {
  failed_ = true;
  write_error_output(error);
}

}  // namespace embedded::scripting_runtime
