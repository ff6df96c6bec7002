// Limits of evaluation: memory, steps, depth, and the user's interrupt.

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluate.hpp"
#include "platform/scripting_runtime/interrupt_mode.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <atomic>
#include <cmath>
#include <utility>

namespace embedded::scripting_runtime {

namespace {

constexpr std::size_t depth_limit = 1500;

struct Running {
  std::size_t depth = 0;
  std::size_t evaluations = 0;
  std::size_t steps = 0;
  std::size_t model_evaluations = 0;
  bool interruptible = false;
};

Running& running() {
  static Running state;
  return state;
}

std::atomic<bool> stop_requested{false};

utInterruptMode::Mode interrupt_mode = utInterruptMode::ON;

bool must_stop() {
  return interrupt_mode == utInterruptMode::ON && stop_requested;
}

}  // namespace

Limits& limits() {
  static Limits values;
  return values;
}

void request_interrupt(bool stop) noexcept {
  stop_requested = stop;
}

std::string shape_text(const Shape& shape) {
  std::string result;
  for (const std::size_t size : shape) {
    if (!result.empty()) result += 'x';
    result += std::to_string(size);
  }
  return result;
}

std::size_t checked_count(const Shape& shape) {
  long double count = 1;
  for (const std::size_t size : shape) count *= static_cast<long double>(size);
  const std::size_t allowed = limits().array_bytes;
  const long double most = allowed == 0 ? 1e18L : static_cast<long double>(allowed) / sizeof(double);
  if (count > most) throw_runtime_error("ArrayTooLarge", shape_text(shape), std::to_string(allowed));
  return static_cast<std::size_t>(count);
}

std::size_t dimension_from(double number) {
  constexpr double most = 1e15;
  if (std::isnan(number) || number != std::floor(number)) throw_runtime_error("InvalidSize", number_text(number));
  return number <= 0 ? 0 : static_cast<std::size_t>(std::min(number, most));
}

DepthGuard::DepthGuard(std::size_t levels) : levels_(levels) {
  if (running().depth + levels > depth_limit) throw_runtime_error("TooDeeplyNested", std::to_string(depth_limit));
  running().depth += levels;
}

DepthGuard::~DepthGuard() {
  running().depth -= levels_;
}

void count_step() {
  const std::size_t steps = ++running().steps;
  const std::size_t allowed = limits().steps;
  if (allowed != 0 && steps > allowed) throw_runtime_error("TooManySteps", std::to_string(allowed));
  check_interrupt();  // at each one: a step may be long, and the look is one load
}

void check_interrupt() {
  if (running().interruptible && must_stop()) throw_runtime_error("Interrupted");
}

RunningEvaluation::RunningEvaluation() {
  if (running().evaluations++ == 0) running().steps = 0;
}

RunningEvaluation::~RunningEvaluation() {
  --running().evaluations;
}

ModelEvaluation::ModelEvaluation() noexcept {
  ++running().model_evaluations;
}

ModelEvaluation::~ModelEvaluation() {
  --running().model_evaluations;
}

void refuse_in_model_evaluation(const char* function) {
  if (running().model_evaluations != 0) throw_runtime_error("CalledByModel", std::string(function));
}

Interruptible::Interruptible(bool interruptible) : before_(running().interruptible) {
  running().interruptible = before_ || interruptible;
  if (running().interruptible && must_stop()) {
    running().interruptible = before_;
    throw_runtime_error("Interrupted");
  }
}

Interruptible::~Interruptible() {
  running().interruptible = before_;
}

}  // namespace embedded::scripting_runtime

bool kmf::interrupt_requested() {
  return embedded::scripting_runtime::must_stop();
}

utInterruptMode::utInterruptMode(Mode mode)
    : before_(std::exchange(embedded::scripting_runtime::interrupt_mode, mode)) {}

utInterruptMode::~utInterruptMode() {
  embedded::scripting_runtime::interrupt_mode = before_;
}
