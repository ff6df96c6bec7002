// Assignment to elements of arrays, and their growth.

#include "embedded/scripting_runtime/assign.hpp"
#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/object_arrays.hpp"
#include "embedded/scripting_runtime/places.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

Shape without_ones(Shape shape) {
  shape.erase(std::remove(shape.begin(), shape.end(), std::size_t{1}), shape.end());
  return shape;
}

[[noreturn]] void cannot_grow(std::size_t needed, const Shape& shape) {
  throw_runtime_error("CannotGrow", std::to_string(needed), shape_text(shape));
}

/// Shape of the vector that has place for `needed` elements.
Shape longer_vector(const Shape& shape, std::size_t needed) {
  if (product(shape) >= needed) return shape;
  if (shape.size() == 2 && (shape[0] == 1 || shape == Shape{0, 0})) return {1, needed};
  if (shape.size() == 2 && shape[1] == 1) return {needed, 1};
  cannot_grow(needed, shape);
}

/// Shape in which all places lie. In an array without elements ":" takes as many places as the value has there.
Shape shape_for(const Shape& shape, const std::vector<Names>& names, const Shape* value) {
  if (names.size() == 1) return longer_vector(shape, names[0].needed);
  const bool empty = product(shape) == 0;
  Shape result = names.size() < shape.size() ? seen_by(shape, names.size()) : shape;
  result.resize(names.size(), 1);
  bool larger = false;
  Shape sizes = value != nullptr && value->size() != names.size() ? without_ones(*value) : Shape();
  std::size_t next = 0;
  for (std::size_t d = 0; d < names.size(); ++d) {
    std::size_t needed = names[d].needed;
    if (names[d].all && empty && result[d] == 0 && value != nullptr) {
      needed = value->size() == names.size() ? (*value)[d] : next < sizes.size() ? sizes[next++] : 1;
    }
    larger = larger || needed > result[d];
    result[d] = std::max(result[d], needed);
  }
  if (!larger) return shape;
  if (names.size() < shape.size()) cannot_grow(names.back().needed, shape);
  while (result.size() > 2 && result.back() == 1) result.pop_back();
  return result;
}

void check_fit(const Shape& places, const Shape& value) {
  if (product(value) == 1) return;
  const bool fits = places.size() == 1 ? places[0] == product(value) : without_ones(places) == without_ones(value);
  if (!fits) throw_runtime_error("AssignmentMismatch", shape_text(places), shape_text(value));
}

// --- putting elements of one family

[[noreturn]] void cannot_assign(const cvArray_tag* value, const cvArray_tag* target) {
  if (cvIsCell(target)) throw_runtime_error("ValueIntoCells", cvGetClassName(value));
  throw_runtime_error("CannotAssign", cvGetClassName(value), cvGetClassName(target));
}

void check_numbers(const Numbers& value, cvClassID class_id) {
  if (class_id == cvLOGICAL_CLASS && std::any_of(value.re.begin(), value.re.end(), [](double x) { return x != x; })) {
    throw_runtime_error("NanAsLogical");
  }
  if (value.is_complex() && (class_id == cvLOGICAL_CLASS || class_id == cvCHAR_CLASS)) {
    throw_runtime_error("CannotAssign", std::string("complex"), class_name_of(class_id));
  }
}

void put_numbers(cvArray_tag* target, const std::vector<std::size_t>& places, const Numbers& value) {
  check_numbers(value, cvGetClassID(target));
  const std::size_t step = value.size() == 1 ? 0 : 1;
  if (double* doubles = value.is_complex() ? nullptr : cvGetWritableDoubles(target)) {
    for (std::size_t i = 0; i < places.size(); ++i) doubles[places[i]] = value.re[i * step];
    return;
  }
  for (std::size_t i = 0; i < places.size(); ++i) cvSetElement(target, places[i], value.at(i * step));
}

void put_cells(cvArray_tag* target, const std::vector<std::size_t>& places, const cvArray_tag* value) {
  const std::size_t step = cvGetNumberOfElements(value) == 1 ? 0 : 1;
  for (std::size_t i = 0; i < places.size(); ++i) {
    cvSetCell(target, places[i], cvCreateSharedCopy(cvGetCell(value, i * step)));
  }
}

void check_same_fields(const cvArray_tag* target, const cvArray_tag* value) {
  const std::vector<std::string> names = cvGetFieldNames(target);
  bool same = names.size() == cvGetFieldNames(value).size();
  for (const std::string& name : names) same = same && cvGetFieldNumber(value, name.c_str()) >= 0;
  if (!same) throw_runtime_error("DifferentFields");
}

void put_structures(cvArray_tag* target, const std::vector<std::size_t>& places, const cvArray_tag* value) {
  const std::size_t step = cvGetNumberOfElements(value) == 1 ? 0 : 1;
  for (const std::string& name : cvGetFieldNames(value)) {
    for (std::size_t i = 0; i < places.size(); ++i) {
      cvSetField(target, places[i], name.c_str(), cvCreateSharedCopy(cvGetField(value, i * step, name.c_str())));
    }
  }
}

void put_objects(cvArray_tag* target, const std::vector<std::size_t>& places, const cvArray_tag* value) {
  const std::size_t step = cvGetNumberOfElements(value) == 1 ? 0 : 1;
  for (std::size_t i = 0; i < places.size(); ++i) put_object(target, places[i], value, i * step);
}

void put(cvArray_tag* target, const std::vector<std::size_t>& places, const cvArray_tag* value) {
  if (cvIsCell(target)) return put_cells(target, places, value);
  if (cvIsStruct(target)) return put_structures(target, places, value);
  if (holds_objects(target)) return put_objects(target, places, value);
  put_numbers(target, places, numbers_of(value));
}

void check_family(const cvArray_tag* target, const cvArray_tag* value) {
  const bool fits = cvIsCell(target)        ? cvIsCell(value)
                    : cvIsStruct(target)    ? cvIsStruct(value)
                    : holds_objects(target) ? hold_same_objects(target, value)
                                            : holds_numbers(target) && holds_numbers(value);
  if (!fits) cannot_assign(value, target);
  if (cvIsStruct(target)) check_same_fields(target, value);
}

/// An empty array of the kind of a value.
cvUniquePtr empty_like(const cvArray_tag* value) {
  if (cvIsCell(value)) return cvUniquePtr(cvCreateCellMatrix(0, 0));
  if (cvIsStruct(value)) return cvUniquePtr(cvCreateStructMatrix(0, 0, cvGetFieldNames(value)));
  if (holds_objects(value)) return new_objects(value, {0, 0});
  if (holds_numbers(value)) return cvUniquePtr(cvCreateNumericArray({0, 0}, cvGetClassID(value)));
  return nullptr;
}

/// A value of a class that has no arrays of several elements: it can be all of a variable, written with the index 1.
void assign_whole(cvUniquePtr& target, const std::vector<Names>& names, const cvArray_tag* value) {
  for (const Names& each : names) {
    if (!each.all && each.at != std::vector<std::size_t>{0}) cannot_assign(value, target ? target.get() : value);
  }
  target.reset(cvCreateSharedCopy(value));
}

void assign_arrays(cvUniquePtr& target, const std::vector<Names>& names, const cvArray_tag* value) {
  cvUniquePtr made = is_nothing(target.get()) ? empty_like(value) : nullptr;
  const cvArray_tag* array = made ? made.get() : target.get();
  if (array == nullptr || (is_nothing(array) && !holds_numbers(value)) || !empty_like(array)) {
    const bool whole = is_nothing(target.get()) || cvGetNumberOfElements(target.get()) == 1;
    if (whole && (target == nullptr || cvGetClassID(target.get()) == cvGetClassID(value) || is_nothing(target.get()))) {
      return assign_whole(target, names, value);
    }
    cannot_assign(value, target.get());
  }
  check_family(array, value);
  const Shape shape = shape_for(cvGetDimensions(array), names, &cvGetDimensions(value));
  checked_count(shape);
  const Shape places = shape_of_places(shape, names);
  checked_count(places);  // places may be named again and again
  check_fit(places, cvGetDimensions(value));
  if (holds_numbers(array)) check_numbers(numbers_of(value), cvGetClassID(array));
  if (made || shape != cvGetDimensions(array)) target = grown(array, shape);
  put(target.get(), offsets_in(shape, names), value);
}

/// Numbers told in the unit of the array; an array without one takes that of the value.
void assign_quantities(cvUniquePtr& target, const std::vector<Names>& names, const Value& value) {
  std::vector<Value> both;
  both.push_back(target ? Value::of(target.get()) : Value(cvUniquePtr(cvCreateDoubleMatrix(0, 0))));
  both.push_back(Value::of(value.array()));
  const Unit unit = to_common_unit(both, "=");
  cvUniquePtr numbers = std::move(both[0]).release();
  assign_arrays(numbers, names, both[1].array());
  target = std::move(value_of({Value(std::move(numbers)), unit})).release();
}

// --- growth

/// Calls `copy(target, source)` for each element of an array that moves to a larger shape.
template <class Copy>
void for_each_moved(const Shape& from, const Shape& to, Copy copy) {
  const std::size_t count = product(from);
  std::vector<std::size_t> at(from.size());
  std::size_t target = 0;
  for (std::size_t i = 0; i < count; ++i) {
    copy(target, i);
    std::size_t stride = 1;
    for (std::size_t d = 0; d < at.size(); ++d) {
      target += stride;
      if (++at[d] < from[d]) break;
      target -= stride * from[d];
      at[d] = 0;
      stride *= d < to.size() ? to[d] : 1;
    }
  }
}

cvUniquePtr grown_numbers(const cvArray_tag* array, const Shape& shape) {
  Numbers before = numbers_of(array);
  Numbers after = Numbers::zeros(shape, before.class_id, before.is_complex());
  for_each_moved(before.shape, shape, [&](std::size_t target, std::size_t source) {
    after.re[target] = before.re[source];
    if (before.is_complex()) after.im[target] = before.im[source];
  });
  return array_of(std::move(after));
}

cvUniquePtr grown_objects(const cvArray_tag* array, const Shape& shape) {
  cvUniquePtr result = new_objects(array, shape);
  for_each_moved(cvGetDimensions(array), shape,
                 [&](std::size_t target, std::size_t source) { put_object(result.get(), target, array, source); });
  return result;
}

}  // namespace

bool is_nothing(const cvArray_tag* array) {
  return array == nullptr || (cvGetClassID(array) == cvDOUBLE_CLASS && cvGetDimensions(array) == Shape{0, 0});
}

cvUniquePtr grown(const cvArray_tag* array, const Shape& shape) {
  const Shape& before = cvGetDimensions(array);
  const std::size_t count = checked_count(shape);
  if (holds_numbers(array)) return grown_numbers(array, shape);
  if (holds_objects(array)) return grown_objects(array, shape);
  const bool cells = cvIsCell(array);
  const std::vector<std::string> fields = cells ? std::vector<std::string>() : cvGetFieldNames(array);
  cvUniquePtr result(cells ? cvCreateCellMatrix(1, count) : cvCreateStructMatrix(1, count, fields));
  cvSetDimensions(result.get(), shape);
  for_each_moved(before, shape, [&](std::size_t target, std::size_t source) {
    if (cells) cvSetCell(result.get(), target, cvCreateSharedCopy(cvGetCell(array, source)));
    for (const std::string& field : fields) {
      const cvArray_tag* value = cvGetField(array, source, field.c_str());
      cvSetField(result.get(), target, field.c_str(), cvCreateSharedCopy(value));
    }
  });
  return result;
}

OnePlace one_place(const cvArray_tag* array, const std::vector<Subscript>& subscripts) {
  const std::vector<Names> names = all_names(subscripts);
  const Shape before = array != nullptr ? cvGetDimensions(array) : Shape{0, 0};
  OnePlace result{shape_for(before, names, nullptr), 0};
  checked_count(result.shape);
  const Shape places = shape_of_places(result.shape, names);
  if (product(places) != 1) throw_runtime_error("OnePlaceNeeded", std::to_string(product(places)));
  result.index = offsets_in(result.shape, names).front();
  return result;
}

void assign_elements(cvUniquePtr& target, const std::vector<Subscript>& places, const Value& value) {
  const std::vector<Names> names = all_names(places);
  const bool with_unit = (target && is_value_object(target.get())) || is_value_object(value);
  if (with_unit && (is_nothing(target.get()) || holds_numbers(target.get()) || is_value_object(target.get()))) {
    return assign_quantities(target, names, value);
  }
  assign_arrays(target, names, value.array());
}

}  // namespace embedded::scripting_runtime
