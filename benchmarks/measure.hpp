#pragma once

// What several benchmarks report, and how their programs run.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>

namespace benchmarks {

/// Adds the time per block, or per entry of another kind, as the counter `name`.
void report_time_per(benchmark::State& state, std::size_t count, const char* name = "per_block");

/// What is in use on the heap, not what the process holds.
std::size_t heap_bytes();

/// The main of a program whose benchmarks need an environment with the physical domain. `declare` registers those that
/// aren't static.
int run_in_environment(
    int argc, char** argv, const std::function<void()>& declare = [] {});

}  // namespace benchmarks
