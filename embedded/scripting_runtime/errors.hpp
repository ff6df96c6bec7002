#pragma once

// The errors of the runtime and the checks that raise them.

#include "platform/foundation/exception.hpp"

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace embedded::scripting_runtime {

using Shape = std::vector<std::size_t>;

template <class... Arguments>
[[noreturn]] void throw_runtime_error(const char* id, Arguments&&... arguments) {
  kmf::throw_message("kinemo:scripting:runtime", id, std::forward<Arguments>(arguments)...);
}

/// What `compute` gives. @throws "OutOfMemory" where it needs more memory than there is
template <class Compute>
auto within_memory(Compute compute) {
  try {
    return compute();
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {  // of a container that was asked for more than can be addressed
  }
  throw_runtime_error("OutOfMemory");
}

/// "2x3x4"
std::string shape_text(const Shape& shape);

/// The number of elements of a new array.
/// @throws "ArrayTooLarge" (shape, bytes allowed) when it would take more memory than the limits give
std::size_t checked_count(const Shape& shape);
/// A dimension from a number of the language: negative ones are 0. @throws "InvalidSize" (number)
std::size_t dimension_from(double number);

/// Counts the levels of evaluation that are open. @throws "TooDeeplyNested" (limit)
class DepthGuard {
 public:
  explicit DepthGuard(std::size_t levels = 1);
  DepthGuard(const DepthGuard&) = delete;
  DepthGuard& operator=(const DepthGuard&) = delete;
  ~DepthGuard();

 private:
  std::size_t levels_;
};

/// Counts one step of the running evaluation, and ends it when there were too many or the user asked for it.
/// @throws "TooManySteps" (limit), "Interrupted"
void count_step();

/// For built-in functions that take long. @throws "Interrupted" where the user asked to end the evaluation
void check_interrupt();

/// The same in a loop of many short steps: looks at every so many of them.
class InterruptPoll {
 public:
  void step() {
    constexpr std::size_t steps_between_looks = 4096;
    if (++steps_ % steps_between_looks == 0) check_interrupt();
  }

 private:
  std::size_t steps_ = 0;
};

/// Marks an evaluation as running; the outermost one begins the count of steps.
class RunningEvaluation {
 public:
  RunningEvaluation();
  RunningEvaluation(const RunningEvaluation&) = delete;
  RunningEvaluation& operator=(const RunningEvaluation&) = delete;
  ~RunningEvaluation();
};

/// While one is alive the user's interrupt ends evaluations.
class Interruptible {
 public:
  explicit Interruptible(bool interruptible);
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;
  ~Interruptible();

 private:
  bool before_;
};

}  // namespace embedded::scripting_runtime
