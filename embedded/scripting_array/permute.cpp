// Rearrangement of dimensions.

#include "embedded/scripting_array/errors.hpp"
#include "embedded/scripting_array/payloads.hpp"

using namespace kmf::embedded;

namespace {

// The dimension that goes to each place, from 0. Raises unless `order` names each of 1 to n once and n covers all.
std::vector<std::size_t> read_order(const cvArray_tag* order, std::size_t dimensions) {
  const std::size_t count = cvGetNumberOfElements(order);
  std::vector<std::size_t> from(count);
  std::vector<bool> seen(count);
  bool valid = count >= dimensions;
  for (std::size_t i = 0; i < count && valid; ++i) {
    const double number = cvGetElement(order, i);
    valid = number >= 1 && number <= static_cast<double>(count);
    if (!valid) break;
    from[i] = static_cast<std::size_t>(number) - 1;
    valid = static_cast<double>(from[i] + 1) == number && !seen[from[i]];
    seen[from[i]] = true;
  }
  if (!valid) throw_array_error("InvalidPermutation", std::to_string(dimensions));
  return from;
}

// For each element of the result, by columns, the element that it comes from.
std::vector<std::size_t> source_indices(const std::vector<std::size_t>& dimensions,
                                        const std::vector<std::size_t>& strides, std::size_t count) {
  std::vector<std::size_t> sources(count);
  std::vector<std::size_t> at(dimensions.size());
  std::size_t source = 0;
  for (std::size_t i = 0; i < count; ++i) {
    sources[i] = source;
    for (std::size_t d = 0; d < at.size(); ++d) {
      source += strides[d];
      if (++at[d] < dimensions[d]) break;
      source -= strides[d] * dimensions[d];
      at[d] = 0;
    }
  }
  return sources;
}

}  // namespace

cvArray_tag* cvPermute(const cvArray_tag* array, const cvArray_tag* order) {
  std::vector<std::size_t> old = cvGetDimensions(array);
  const std::vector<std::size_t> from = read_order(order, old.size());
  if (!array->payload) return cvCreateSharedCopy(array);

  old.resize(from.size(), 1);
  std::vector<std::size_t> old_strides(old.size(), 1);
  for (std::size_t d = 1; d < old.size(); ++d) old_strides[d] = old_strides[d - 1] * old[d - 1];
  std::vector<std::size_t> dimensions;
  std::vector<std::size_t> strides;
  for (const std::size_t d : from) {
    dimensions.push_back(old[d]);
    strides.push_back(old_strides[d]);
  }
  const std::vector<std::size_t> sources = source_indices(dimensions, strides, count_of(*array));
  return make_array(class_of(*array), array->payload->gathered(Shape(dimensions), sources));
}
