// Pictures of systems without positions: layout, routing, drawing. Time per block is what to look at.
//
//   picture_benchmark --benchmark_filter=Picture/ladder

#include "benchmarks/measure.hpp"
#include "benchmarks/shapes.hpp"

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/environment/vector_icons.hpp"
#include "views/picture/picture.hpp"
#include "views/systems.hpp"

#include <benchmark/benchmark.h>

#include <functional>

namespace {

using benchmarks::Diagram;
using embedded::drawing::Format;
using kinemo::views::picture::PictureRequest;

using Builder = std::function<Diagram&(const std::string&, std::size_t)>;

/// The top alone, or all systems where the format has pages.
PictureRequest request_for(Diagram& diagram, Format format) {
  PictureRequest request;
  request.format = format;
  request.systems.push_back(&diagram.root());
  if (format != Format::Pdf) return request;
  request.systems.clear();
  kinemo::views::for_each_system(diagram,
                                 [&](embedded::block_diagram::System& system) { request.systems.push_back(&system); });
  return request;
}

void draw(benchmark::State& state, const Builder& builder, Format format) {
  const auto blocks = static_cast<std::size_t>(state.range(0));
  Diagram& diagram = builder("drawn", blocks);
  const PictureRequest request = request_for(diagram, format);
  std::size_t bytes = 0;
  for (auto _ : state) bytes = kinemo::views::picture::make_picture(diagram, request).size();
  Diagram::close(diagram);
  state.counters["bytes_per_block"] = static_cast<double>(bytes) / static_cast<double>(blocks);
  benchmarks::report_time_per(state, blocks);
}

void register_shape(const std::string& name, const Builder& builder, Format format) {
  benchmark::RegisterBenchmark(("Picture/" + name).c_str(), draw, builder, format)
      ->Arg(100)
      ->Arg(1000)
      ->Arg(10000)
      ->Unit(benchmark::kMillisecond)
      ->UseRealTime();
}

void register_all() {
  embedded::show_vector_icons();
  register_shape("chain", benchmarks::flat, Format::Svg);
  register_shape("ladder", benchmarks::ladder, Format::Svg);
  register_shape("ladder_png", benchmarks::ladder, Format::Png);
  register_shape("star", benchmarks::star, Format::Svg);
  register_shape("tree_of_pages", benchmarks::tree, Format::Pdf);
}

}  // namespace

int main(int argc, char** argv) {
  return benchmarks::run_in_environment(argc, argv, register_all);
}
