#include "embedded/scripting_runtime/indexing.hpp"

#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/places.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::scripting_runtime {

namespace {

/// The places in a dimension that a subscript names, and the shape that it gives to a result.
struct Places {
  std::vector<std::size_t> at;
  Shape shape;
  bool all = false;
};

std::size_t place_from(double index, std::size_t count) {
  if (!(index >= 1) || index != std::floor(index)) {
    throw_runtime_error("InvalidIndex", number_text(index));
  }
  if (index > static_cast<double>(count)) {
    throw_runtime_error("IndexOutOfRange", number_text(index), std::to_string(count));
  }
  return static_cast<std::size_t>(index) - 1;
}

Places all_places(std::size_t count) {
  checked_count({count});
  Places result{std::vector<std::size_t>(count), {count, 1}, true};
  for (std::size_t i = 0; i < count; ++i) result.at[i] = i;
  return result;
}

Places places_of_mask(const Numbers& mask, std::size_t count) {
  Places result;
  for (std::size_t i = 0; i < mask.size(); ++i) {
    if (mask.re[i] != 0) result.at.push_back(place_from(static_cast<double>(i + 1), count));
  }
  const bool row = mask.is_matrix() && mask.shape[0] == 1 && mask.shape[1] != 1;
  result.shape = row ? Shape{1, result.at.size()} : Shape{result.at.size(), 1};
  return result;
}

Places places_of(const Subscript& subscript, std::size_t count) {
  if (!subscript) return all_places(count);
  const Numbers numbers = numbers_of(*subscript);
  if (numbers.class_id == cvLOGICAL_CLASS) return places_of_mask(numbers, count);
  Places result{{}, numbers.shape, false};
  result.at.reserve(numbers.size());
  for (const double index : numbers.re) result.at.push_back(place_from(index, count));
  return result;
}

bool is_vector(const Shape& shape) {
  return shape.size() == 2 && (shape[0] == 1 || shape[1] == 1);
}

/// The shape of a(i): that of i, but a vector stays a vector of its own direction.
Shape linear_shape(const Shape& array, const Places& places) {
  if (places.all || !is_vector(places.shape) || !is_vector(array) || (array[0] == 1 && array[1] == 1)) {
    return places.shape;
  }
  return array[0] == 1 ? Shape{1, places.at.size()} : Shape{places.at.size(), 1};
}

struct Selection {
  Shape shape;
  std::vector<std::size_t> sources;
};

Selection select_many(const Shape& shape, const std::vector<Subscript>& subscripts) {
  const Shape sizes = seen_by(shape, subscripts.size());
  std::vector<Places> places;
  Selection result;
  for (std::size_t d = 0; d < subscripts.size(); ++d) {
    places.push_back(places_of(subscripts[d], sizes[d]));
    result.shape.push_back(places.back().at.size());
  }
  const std::size_t count = checked_count(result.shape);
  result.sources.assign(count == 0 ? 0 : 1, 0);
  std::size_t stride = 1;
  for (const std::size_t size : sizes) stride *= size;
  for (std::size_t d = subscripts.size(); d-- > 0 && count > 0;) {
    stride /= std::max<std::size_t>(sizes[d], 1);
    // Built from the last dimension: each offset so far is repeated for the faster dimension before it.
    std::vector<std::size_t> next;
    next.reserve(result.sources.size() * places[d].at.size());
    for (const std::size_t base : result.sources) {
      for (const std::size_t place : places[d].at) next.push_back(base + place * stride);
    }
    result.sources = std::move(next);
  }
  return result;
}

Selection select(const cvArray_tag* array, const std::vector<Subscript>& subscripts) {
  const Shape& shape = cvGetDimensions(array);
  if (subscripts.size() > 1) return select_many(shape, subscripts);
  const Subscript all;  // what no subscript means, as in c{}
  Places places = places_of(subscripts.empty() ? all : subscripts[0], cvGetNumberOfElements(array));
  return {linear_shape(shape, places), std::move(places.at)};
}

}  // namespace

Value indexed(const cvArray_tag* array, const std::vector<Subscript>& subscripts) {
  if (subscripts.empty()) return Value::of(array);
  if (subscripts.size() == 1 && subscripts[0] && subscripts[0]->is_number()) {
    if (const double* doubles = cvGetDoubles(array)) {
      return doubles[place_from(subscripts[0]->number(), cvGetNumberOfElements(array))];
    }
  }
  if (is_value_object(array)) {
    const Quantity quantity = quantity_of(array);
    return value_of({indexed(quantity.numbers.array(), subscripts), quantity.unit});
  }
  const Selection selection = select(array, subscripts);
  return gather(array, selection.shape, selection.sources);
}

std::vector<Value> cell_contents(const cvArray_tag* array, const std::vector<Subscript>& subscripts) {
  if (!cvIsCell(array)) throw_runtime_error("NotCell", cvGetClassName(array));
  std::vector<Value> result;
  for (const std::size_t source : select(array, subscripts).sources) {
    result.push_back(Value::of(cvGetCell(array, source)));
  }
  return result;
}

std::size_t end_of(const cvArray_tag* array, std::size_t position, std::size_t count) {
  return seen_by(shape_of(array), count)[position];
}

}  // namespace embedded::scripting_runtime
