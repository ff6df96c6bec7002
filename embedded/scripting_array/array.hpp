#pragma once

// What an array is made of: a light handle, and a payload that handles share until one of them writes. A real number
// needs no payload, nor do the 0 by 0 arrays of numbers: there are far more of these than of all others.
// Nothing here is safe for use by several threads.

#include "platform/scripting_array/scripting_array.hpp"

#include "embedded/scripting_array/shape.hpp"

#include <cstddef>
#include <vector>

namespace kmf::embedded {

/// Arrays that wait for their end, linked through themselves, so that ending takes neither memory nor stack.
class ArrayChain {
 public:
  void push(cvArray_tag* array) noexcept;
  cvArray_tag* pop() noexcept;  ///< null when there is none

 private:
  cvArray_tag* first_ = nullptr;
};

/// The contents of an array. Counted by the handles that refer to it.
class Payload {
 public:
  explicit Payload(Shape its_shape) : shape(std::move(its_shape)) {}
  Payload(const Payload& other) : shape(other.shape) {}
  Payload& operator=(const Payload&) = delete;
  virtual ~Payload() = default;

  /// A copy whose inner arrays are shared copies.
  virtual Payload* clone() const = 0;
  /// A copy in which element i is the one that stood at `sources[i]`.
  virtual Payload* gathered(Shape new_shape, const std::vector<std::size_t>& sources) const = 0;
  /// Hands the inner arrays out to be ended.
  virtual void release_children(ArrayChain&) noexcept {}

  std::size_t references = 1;
  Shape shape;
};

/// A link in the list of a scope's arrays; null where the array belongs to scope 0 or to a container.
struct ScopeLink {
  ScopeLink* previous = nullptr;
  ScopeLink* next = nullptr;
};

}  // namespace kmf::embedded

struct cvArray_tag : kmf::embedded::ScopeLink {
  kmf::embedded::Payload* payload = nullptr;  ///< null for a real number and for 0 by 0 numbers
  double number = 0;                          ///< without a payload: the value
  int scope = 0;
  unsigned char class_id = cvDOUBLE_CLASS;
  bool has_number = false;  ///< without a payload: 1 by 1 rather than 0 by 0
};

namespace kmf::embedded {

/// A new array in the open scope. Takes over `payload`, also when it fails.
cvArray_tag* make_array(cvClassID class_id, Payload* payload);
cvArray_tag* make_number(cvClassID class_id, double value);

/// An array of 0 by 0 numbers that stands for every place of a container that nothing was put in. Not counted.
const cvArray_tag* empty_array() noexcept;

/// A shared copy that belongs to no scope, for places in containers.
cvArray_tag* share(const cvArray_tag& array);

/// Takes an array out of the list of its scope, since a container owns it from here on.
void leave_scope(cvArray_tag* array) noexcept;

/// @throws "kinemo:scripting:array" "NoArray" for null.
const cvArray_tag& checked(const cvArray_tag* array);
cvArray_tag& checked(cvArray_tag* array);

inline cvClassID class_of(const cvArray_tag& array) noexcept {
  return static_cast<cvClassID>(array.class_id);
}
std::size_t count_of(const cvArray_tag& array) noexcept;
const Shape& shape_of(const cvArray_tag& array) noexcept;

/// Drops one reference to `payload`, and ends it and what it holds with the last one.
void release(Payload* payload) noexcept;

/// The payload for writing: unshared first.
Payload& own_payload(cvArray_tag& array);

template <class T>
const T& payload_as(const cvArray_tag& array) {
  return static_cast<const T&>(*array.payload);
}
template <class T>
T& own_payload_as(cvArray_tag& array) {
  return static_cast<T&>(own_payload(array));
}

}  // namespace kmf::embedded
