// Equality to any depth. Pairs that are still to be compared wait in a list, so that depth takes no stack.

#include "embedded/scripting_array/payloads.hpp"

#include <boost/functional/hash.hpp>
#include <boost/unordered_set.hpp>

#include <utility>
#include <vector>

namespace kmf::embedded {
namespace {

class Comparison {
 public:
  bool equal(const cvArray_tag& a, const cvArray_tag& b) {
    open_.emplace_back(&a, &b);
    while (!open_.empty()) {
      const auto [x, y] = open_.back();
      open_.pop_back();
      if (!alike(*x, *y)) return false;
    }
    return true;
  }

 private:
  // False when the two differ in themselves; their inner arrays are put on the list.
  bool alike(const cvArray_tag& a, const cvArray_tag& b) {
    if (a.class_id != b.class_id || shape_of(a) != shape_of(b)) return false;
    switch (class_of(a)) {
      case cvCHAR_CLASS:
        return payload_as<TextPayload>(a).text == payload_as<TextPayload>(b).text;
      case cvFUNCTION_CLASS:
        return alike(payload_as<FunctionPayload>(a), payload_as<FunctionPayload>(b));
      case cvCELL_CLASS:
        return first_time(a, b) ? open(payload_as<CellPayload>(a).places, payload_as<CellPayload>(b).places) : true;
      case cvSTRUCT_CLASS:
        return first_time(a, b) ? open(payload_as<StructPayload>(a).fields, payload_as<StructPayload>(b).fields) : true;
      case cvOBJECT_CLASS:
        return first_time(a, b) ? alike(payload_as<ObjectPayload>(a), payload_as<ObjectPayload>(b)) : true;
      default:
        return alike_numbers(a, b);
    }
  }

  static bool alike_numbers(const cvArray_tag& a, const cvArray_tag& b) {
    const std::size_t count = count_of(a);
    for (std::size_t i = 0; i < count; ++i) {
      if (cvGetComplexElement(&a, i) != cvGetComplexElement(&b, i)) return false;
    }
    return true;
  }

  static bool alike(const FunctionPayload& a, const FunctionPayload& b) {
    return a.text == b.text && a.callable == b.callable;
  }

  bool alike(const ObjectPayload& a, const ObjectPayload& b) {
    return a.class_name == b.class_name && a.same_natives(b) && open(a.properties, b.properties);
  }

  bool open(const Places& a, const Places& b) {
    for (std::size_t i = 0; i < a.size(); ++i) open_.emplace_back(a.get(i), b.get(i));
    return true;
  }

  // The order of fields doesn't count.
  bool open(const Fields& a, const Fields& b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
      const int other = b.find(a.names()[i]);
      if (other < 0) return false;
      open(a.places(i), b.places(static_cast<std::size_t>(other)));
    }
    return true;
  }

  // Contents that are shared in many places are compared once: a difference would have ended the comparison.
  bool first_time(const cvArray_tag& a, const cvArray_tag& b) {
    if (a.payload->references == 1 || b.payload->references == 1) return true;
    return seen_.emplace(a.payload, b.payload).second;
  }

  std::vector<std::pair<const cvArray_tag*, const cvArray_tag*>> open_;
  boost::unordered_set<std::pair<const Payload*, const Payload*>> seen_;
};

}  // namespace
}  // namespace kmf::embedded

bool cvAreMatricesEqual(const cvArray_tag* a, const cvArray_tag* b) {
  return kmf::embedded::Comparison().equal(kmf::embedded::checked(a), kmf::embedded::checked(b));
}
