#include "embedded/scripting_array/array.hpp"
#include "embedded/scripting_array/errors.hpp"
#include "embedded/scripting_array/scopes.hpp"

#include <memory>

namespace kmf::embedded {
namespace {

constinit std::size_t live_arrays = 0;
constinit ArrayChain ending;
constinit bool is_ending = false;

cvArray_tag* allocate(cvClassID class_id) {
  auto* const array = new cvArray_tag;
  ++live_arrays;
  array->class_id = static_cast<unsigned char>(class_id);
  return array;
}

void drop(Payload* payload) noexcept {
  if (--payload->references != 0) return;
  payload->release_children(ending);
  delete payload;
}

void end(cvArray_tag* array) noexcept {
  Payload* const payload = array->payload;
  delete array;
  --live_arrays;
  if (payload) drop(payload);
}

// Native data behind an object may end arrays of its own while it dies: those wait for the loop that runs already.
void end_waiting() noexcept {
  if (is_ending) return;
  is_ending = true;
  while (cvArray_tag* const array = ending.pop()) end(array);
  is_ending = false;
}

}  // namespace

void ArrayChain::push(cvArray_tag* array) noexcept {
  array->next = first_;
  first_ = array;
}

cvArray_tag* ArrayChain::pop() noexcept {
  cvArray_tag* const array = first_;
  if (array) first_ = static_cast<cvArray_tag*>(array->next);
  return array;
}

cvArray_tag* make_array(cvClassID class_id, Payload* payload) {
  std::unique_ptr<Payload> owner(payload);
  cvArray_tag* const array = allocate(class_id);
  array->payload = owner.release();
  enter_open_scope(array);
  return array;
}

cvArray_tag* make_number(cvClassID class_id, double value) {
  cvArray_tag* const array = allocate(class_id);
  array->number = value;
  array->has_number = true;
  enter_open_scope(array);
  return array;
}

cvArray_tag* share(const cvArray_tag& array) {
  cvArray_tag* const copy = allocate(class_of(array));
  copy->payload = array.payload;
  copy->number = array.number;
  copy->has_number = array.has_number;
  if (copy->payload) ++copy->payload->references;
  return copy;
}

const cvArray_tag* empty_array() noexcept {
  static constinit cvArray_tag array;
  return &array;
}

const cvArray_tag& checked(const cvArray_tag* array) {
  if (!array) throw_array_error("NoArray");
  return *array;
}

cvArray_tag& checked(cvArray_tag* array) {
  if (!array) throw_array_error("NoArray");
  return *array;
}

const Shape& shape_of(const cvArray_tag& array) noexcept {
  static const Shape one(1, 1);
  static const Shape none(0, 0);
  if (array.payload) return array.payload->shape;
  return array.has_number ? one : none;
}

std::size_t count_of(const cvArray_tag& array) noexcept {
  if (array.payload) return array.payload->shape.count();
  return array.has_number ? 1 : 0;
}

void release(Payload* payload) noexcept {
  drop(payload);
  end_waiting();
}

Payload& own_payload(cvArray_tag& array) {
  if (array.payload->references > 1) {
    Payload* const copy = array.payload->clone();
    --array.payload->references;
    array.payload = copy;
  }
  return *array.payload;
}

}  // namespace kmf::embedded

using namespace kmf::embedded;

cvArray_tag* cvCreateSharedCopy(const cvArray_tag* array) {
  cvArray_tag* const copy = share(checked(array));
  enter_open_scope(copy);
  return copy;
}

// Contents are copied when one of the arrays is written, at every depth.
cvArray_tag* cvDuplicateArray(const cvArray_tag* array) {
  return cvCreateSharedCopy(array);
}

void cvDestroyArray(cvArray_tag* array) noexcept {
  if (!array) return;
  leave_scope(array);
  ending.push(array);
  end_waiting();
}

std::size_t cvLiveArrayCount() noexcept {
  return live_arrays;
}
