#include "benchmarks/measure.hpp"

#include "embedded/environment/environment.hpp"

#include <malloc.h>

namespace benchmarks {

void report_time_per(benchmark::State& state, std::size_t count, const char* name) {
  state.counters[name] = benchmark::Counter(
      static_cast<double>(count), benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

std::size_t heap_bytes() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

int run_in_environment(int argc, char** argv, const std::function<void()>& declare) {
  // Not a static object: the module must be closed before its own statics end.
  embedded::Environment environment;
  environment.loadDomain(KINEMO_PHYSICAL_MODULE);
  declare();
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}

}  // namespace benchmarks
