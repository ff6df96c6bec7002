// Elements taken out of arrays, which close up.

#include "embedded/scripting_runtime/assign.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/object_arrays.hpp"
#include "embedded/scripting_runtime/places.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

namespace embedded::scripting_runtime {

namespace {

/// Whether the places are all of the dimension, also when they are told one by one.
bool covers(const Names& names, std::size_t size) {
  if (names.all) return true;
  std::vector<bool> seen(size);
  std::size_t count = 0;
  for (const std::size_t place : names.at) {
    if (!seen[place]) ++count;
    seen[place] = true;
  }
  return count == size;
}

/// Places from 0 to `size` that aren't named.
Names kept(const Names& names, std::size_t size) {
  Names result;
  if (names.all) return result;
  std::vector<bool> gone(size);
  for (const std::size_t place : names.at) gone[place] = true;
  for (std::size_t i = 0; i < size; ++i) {
    if (!gone[i]) result.at.push_back(i);
  }
  return result;
}

void check_range(const Names& names, std::size_t size) {
  if (names.needed > size) {
    throw_runtime_error("IndexOutOfRange", std::to_string(names.needed), std::to_string(size));
  }
}

cvUniquePtr without(const cvArray_tag* array, const Names& names) {
  const Shape& shape = cvGetDimensions(array);
  const std::size_t count = cvGetNumberOfElements(array);
  check_range(names, count);
  if (names.all) return gather(array, {0, 0}, {});
  const Names rest = kept(names, count);
  if (rest.at.size() == count) return cvUniquePtr(cvCreateSharedCopy(array));
  const bool column = shape.size() == 2 && shape[1] == 1 && shape[0] != 1;
  const std::size_t left = rest.at.size();
  return gather(array, column ? Shape{left, 1} : Shape{1, left}, rest.at);
}

/// All dimensions but one must be named as a whole.
cvUniquePtr without(const cvArray_tag* array, std::vector<Names> names) {
  const Shape sizes = seen_by(cvGetDimensions(array), names.size());
  std::size_t partial = names.size();
  for (std::size_t d = 0; d < names.size(); ++d) {
    check_range(names[d], sizes[d]);
    if (covers(names[d], sizes[d])) continue;
    if (partial != names.size()) throw_runtime_error("CannotDelete", shape_text(cvGetDimensions(array)));
    partial = d;
  }
  for (std::size_t d = 0; partial == names.size() && d < names.size(); ++d) {
    if (!names[d].all) partial = d;  // all are told one by one: these go
  }
  if (partial == names.size()) partial = 0;
  Shape shape = sizes;
  std::vector<Names> rest(names.size());
  for (Names& each : rest) each.all = true;
  rest[partial] = kept(names[partial], sizes[partial]);
  shape[partial] = rest[partial].at.size();
  return gather(array, shape, offsets_in(sizes, rest));
}

}  // namespace

void delete_elements(cvUniquePtr& target, const std::vector<Subscript>& places) {
  if (!target) target.reset(cvCreateDoubleMatrix(0, 0));
  if (is_value_object(target.get())) {
    Quantity quantity = quantity_of(target.get());
    cvUniquePtr numbers = std::move(quantity.numbers).release();
    delete_elements(numbers, places);
    target = std::move(value_of({Value(std::move(numbers)), quantity.unit})).release();
    return;
  }
  const bool one_object = cvGetClassID(target.get()) == cvOBJECT_CLASS && !holds_objects(target.get());
  if (one_object || cvGetClassID(target.get()) == cvFUNCTION_CLASS)
    throw_runtime_error("CannotDelete", cvGetClassName(target.get()));
  const std::vector<Names> names = all_names(places);
  target = names.size() == 1 ? without(target.get(), names[0]) : without(target.get(), names);
}

}  // namespace embedded::scripting_runtime
