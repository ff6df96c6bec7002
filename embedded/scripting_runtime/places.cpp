#include "embedded/scripting_runtime/places.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::scripting_runtime {

namespace {

std::size_t place_of(double index) {
  constexpr double most = 1e18;
  if (!(index >= 1) || index != std::floor(index)) {
    throw_runtime_error("InvalidIndex", number_text(index));
  }
  return static_cast<std::size_t>(std::min(index, most)) - 1;
}

Names names_of(const Subscript& subscript) {
  Names result;
  result.all = !subscript;
  if (result.all) return result;
  const Numbers numbers = numbers_of(*subscript);
  const bool mask = numbers.class_id == cvLOGICAL_CLASS;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    if (mask && numbers.re[i] == 0) continue;
    result.at.push_back(mask ? i : place_of(numbers.re[i]));
    result.needed = std::max(result.needed, result.at.back() + 1);
  }
  return result;
}

}  // namespace

std::vector<Names> all_names(const std::vector<Subscript>& subscripts) {
  std::vector<Names> result;
  for (const Subscript& subscript : subscripts) result.push_back(names_of(subscript));
  if (result.empty()) result.push_back(names_of(Subscript()));
  return result;
}

Shape seen_by(const Shape& shape, std::size_t count) {
  Shape result(count, 1);
  for (std::size_t d = 0; d < shape.size(); ++d) result[std::min(d, count - 1)] *= shape[d];
  return result;
}

std::size_t product(const Shape& shape) {
  std::size_t result = 1;
  for (const std::size_t size : shape) result *= size;
  return result;
}

std::vector<std::size_t> offsets_in(const Shape& shape, const std::vector<Names>& names) {
  const Shape sizes = seen_by(shape, names.size());
  std::vector<std::size_t> result{0};
  std::size_t stride = product(sizes);
  for (std::size_t d = names.size(); d-- > 0;) {
    stride = sizes[d] == 0 ? 0 : stride / sizes[d];
    const std::size_t count = names[d].all ? sizes[d] : names[d].at.size();
    std::vector<std::size_t> next;
    next.reserve(result.size() * count);
    for (const std::size_t base : result) {
      for (std::size_t i = 0; i < count; ++i) next.push_back(base + (names[d].all ? i : names[d].at[i]) * stride);
    }
    result = std::move(next);
  }
  return result;
}

Shape shape_of_places(const Shape& shape, const std::vector<Names>& names) {
  const Shape sizes = seen_by(shape, names.size());
  Shape result;
  for (std::size_t d = 0; d < names.size(); ++d) result.push_back(names[d].all ? sizes[d] : names[d].at.size());
  return result;
}

}  // namespace embedded::scripting_runtime
