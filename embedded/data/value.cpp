#include "platform/data/data.hpp"
#include "platform/foundation/exception.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace data2::core {

namespace {

using Dimensions = std::vector<std::size_t>;

const Dimensions& scalar_dimensions() {
  static const Dimensions& one = *new Dimensions{1, 1};
  return one;
}

/// Products that no array can hold come out as the largest number.
std::size_t count_of(const Dimensions& dimensions) {
  std::size_t count = 1;
  bool overflow = false;
  for (const std::size_t length : dimensions) {
    if (length == 0) return 0;
    overflow |= __builtin_mul_overflow(count, length, &count);
  }
  return overflow ? static_cast<std::size_t>(-1) : count;
}

std::string text_of(const Dimensions& dimensions) {
  std::string text;
  for (const std::size_t length : dimensions) text += (text.empty() ? "" : "x") + std::to_string(length);
  return text;
}

/// Equal numbers, and not-a-number equals itself: a value is equal to its copy.
bool same_number(double a, double b) {
  return a == b || (std::isnan(a) && std::isnan(b));
}

}  // namespace

/// A scalar keeps no dimensions: models hold a million of them.
struct ValueData::Contents {
  Dimensions dimensions;
  std::vector<double> elements;
};

ValueData::ValueData() {
  static const auto& empty = *new std::shared_ptr<const Contents>(new Contents{{0, 0}, {}});
  contents_ = empty;
}

ValueData::ValueData(double value, const units2::core::ExprString& unit)
    : contents_(std::make_shared<Contents>(Contents{{}, {value}})), unit_(unit) {}

ValueData::ValueData(Dimensions dimensions, std::vector<double> elements, const units2::core::ExprString& unit)
    : unit_(unit) {
  while (dimensions.size() < 2) dimensions.push_back(1);
  const std::size_t count = count_of(dimensions);
  if (count != elements.size()) {
    kmf::throw_message("kinemo:data:core", "ShapeMismatch", text_of(dimensions), std::to_string(count),
                       std::to_string(elements.size()));
  }
  if (dimensions == scalar_dimensions()) dimensions = {};
  contents_ = std::make_shared<Contents>(Contents{std::move(dimensions), std::move(elements)});
}

const Dimensions& ValueData::dimensions() const {
  return contents_->dimensions.empty() ? scalar_dimensions() : contents_->dimensions;
}

const std::vector<double>& ValueData::elements() const {
  return contents_->elements;
}

bool operator==(const ValueData& a, const ValueData& b) {
  if (!(a.unit_ == b.unit_)) return false;
  if (a.contents_ == b.contents_) return true;
  const auto& x = a.elements();
  const auto& y = b.elements();
  return a.dimensions() == b.dimensions() && std::equal(x.begin(), x.end(), y.begin(), y.end(), same_number);
}

}  // namespace data2::core
