#pragma once

// Evaluation of expressions in scopes.
//
// Errors of the group "kinemo:scripting:runtime", each with a cause "Where" (line, column, excerpt) when the text is
// known; those of the function table pass through. "UndefinedName" (name, line, column, excerpt) has a cause
// "NearestName" (name) when a known name is near.

#include "embedded/expression/tree.hpp"
#include "embedded/scripting_runtime/workspace.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

/// Parses (with the cache of texts) and evaluates. A text that is a plain number takes a short way. The result is never
/// null and belongs to the caller alone.
cvUniquePtr evaluate(std::string_view text, const Scope& scope);
/// `source` is the text that the tree came from, for the places of errors.
cvUniquePtr evaluate(const expression::Tree& tree, const Scope& scope, std::string_view source = {});

/// All values that a text gives when `wanted` are asked for. With 0 there may be none, as for a function that only
/// acts, or one or more, as a prompt would show them.
std::vector<cvUniquePtr> evaluate_outputs(std::string_view text, const Scope& scope, int wanted);

/// What no evaluation of this process may exceed. A limit of 0 means none.
struct Limits {
  std::size_t array_bytes = std::size_t{1} << 31;  ///< of one array; beyond it "ArrayTooLarge" (bytes, limit)
  std::size_t steps = 0;                           ///< nodes in one outermost evaluation; then "TooManySteps" (limit)
};
Limits& limits();

/// Makes `evalin` take objects of a class as scopes: their native data is a `Workspace`, in which alone names are
/// found.
void register_scope_class(const std::string& class_name);

/// While one is alive, somebody works on a model and has parts of it in hand. Expressions of the model that are
/// evaluated meanwhile can't change or compile models.
class ModelEvaluation {
 public:
  ModelEvaluation() noexcept;
  ModelEvaluation(const ModelEvaluation&) = delete;
  ModelEvaluation& operator=(const ModelEvaluation&) = delete;
  ~ModelEvaluation();
};
/// For functions that change or compile models. @throws "CalledByModel" (function) while there is a `ModelEvaluation`
void refuse_in_model_evaluation(const char* function);

/// Asks the running command to stop, or withdraws that. Safe in signal handlers.
void request_interrupt(bool stop = true) noexcept;

}  // namespace embedded::scripting_runtime
