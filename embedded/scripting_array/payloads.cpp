#include "embedded/scripting_array/payloads.hpp"

#include <algorithm>
#include <utility>

namespace kmf::embedded {
namespace {

// Below this many fields a walk through the names is faster than a table, and takes less memory.
constexpr std::size_t kIndexedFrom = 12;

template <class Sequence>
Sequence gather(const Sequence& from, const std::vector<std::size_t>& sources) {
  Sequence result;
  if (from.empty()) return result;
  result.reserve(sources.size());
  for (const std::size_t source : sources) result.push_back(from[source]);
  return result;
}

}  // namespace

NumericPayload::NumericPayload(Shape its_shape, bool is_complex)
    : Payload(std::move(its_shape)), real(shape.count()), complex(is_complex) {
  if (complex) imaginary.resize(real.size());
}

Payload* NumericPayload::gathered(Shape new_shape, const std::vector<std::size_t>& sources) const {
  auto result = std::make_unique<NumericPayload>(Shape(), complex);
  result->real = gather(real, sources);
  result->imaginary = gather(imaginary, sources);
  result->shape = std::move(new_shape);
  return result.release();
}

Payload* TextPayload::gathered(Shape new_shape, const std::vector<std::size_t>& sources) const {
  return new TextPayload(std::move(new_shape), gather(text, sources));
}

Places::Places(const Places& other) : Places(other.size()) {
  for (std::size_t i = 0; i < size(); ++i) {
    if (other.arrays_[i]) arrays_[i] = share(*other.arrays_[i]);
  }
}

Places::~Places() {
  for (cvArray_tag* array : arrays_) cvDestroyArray(array);
}

void Places::set(std::size_t i, cvArray_tag* value) noexcept {
  if (value) leave_scope(value);
  cvDestroyArray(std::exchange(arrays_[i], value));
}

Places Places::gathered(const std::vector<std::size_t>& sources) const {
  Places result(sources.size());
  for (std::size_t i = 0; i < sources.size(); ++i) {
    if (arrays_[sources[i]]) result.arrays_[i] = share(*arrays_[sources[i]]);
  }
  return result;
}

void Places::release(ArrayChain& out) noexcept {
  for (cvArray_tag*& array : arrays_) {
    if (array) out.push(std::exchange(array, nullptr));
  }
}

Payload* CellPayload::gathered(Shape new_shape, const std::vector<std::size_t>& sources) const {
  auto result = std::make_unique<CellPayload>(Shape());
  result->places = places.gathered(sources);
  result->shape = std::move(new_shape);
  return result.release();
}

int Fields::find(std::string_view name) const {
  if (!index_.empty()) {
    const auto found = index_.find(std::string(name));
    return found == index_.end() ? -1 : found->second;
  }
  const auto found = std::find(names_.begin(), names_.end(), name);
  return found == names_.end() ? -1 : static_cast<int>(found - names_.begin());
}

std::size_t Fields::add(std::string_view name) {
  const int known = find(name);
  if (known >= 0) return static_cast<std::size_t>(known);
  places_.emplace_back(elements_);
  names_.emplace_back(name);
  if (names_.size() >= kIndexedFrom) {
    if (index_.empty()) {
      for (std::size_t i = 0; i + 1 < names_.size(); ++i) index_.emplace(names_[i], static_cast<int>(i));
    }
    index_.emplace(name, static_cast<int>(names_.size() - 1));
  }
  return names_.size() - 1;
}

Fields Fields::gathered(const std::vector<std::size_t>& sources) const {
  Fields result(sources.size());
  result.names_ = names_;
  result.index_ = index_;
  result.places_.reserve(places_.size());
  for (const Places& places : places_) result.places_.push_back(places.gathered(sources));
  return result;
}

void Fields::release(ArrayChain& out) noexcept {
  for (Places& places : places_) places.release(out);
}

Payload* StructPayload::gathered(Shape new_shape, const std::vector<std::size_t>& sources) const {
  auto result = std::make_unique<StructPayload>(Shape());
  result->fields = fields.gathered(sources);
  result->shape = std::move(new_shape);
  return result.release();
}

}  // namespace kmf::embedded
