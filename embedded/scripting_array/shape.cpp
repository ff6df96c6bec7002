#include "embedded/scripting_array/shape.hpp"

#include "embedded/scripting_array/errors.hpp"

namespace kmf::embedded {
namespace {

// Larger counts can't be memory of this machine; with room left for the size of an element.
constexpr std::size_t kMaxCount = static_cast<std::size_t>(-1) / 64;

void check_count(const std::vector<std::size_t>& dimensions) {
  for (const std::size_t dimension : dimensions) {
    if (dimension == 0) return;
  }
  std::size_t count = 1;
  for (const std::size_t dimension : dimensions) {
    if (dimension > kMaxCount / count) throw_array_error("TooLarge", dimensions_text(dimensions));
    count *= dimension;
  }
}

}  // namespace

Shape::Shape(std::vector<std::size_t> dimensions) {
  while (dimensions.size() > 2 && dimensions.back() == 1) dimensions.pop_back();
  if (dimensions.size() == 1) dimensions.push_back(1);
  if (dimensions.empty()) dimensions.assign(2, 0);
  check_count(dimensions);
  rows_ = dimensions[0];
  columns_ = dimensions[1];
  more_ = dimensions.size() > 2;
  if (more_) list_ = std::make_unique<std::vector<std::size_t>>(std::move(dimensions));
}

Shape Shape::matrix(std::size_t rows, std::size_t columns) {
  if (columns != 0 && rows > kMaxCount / columns) throw_array_error("TooLarge", dimensions_text({rows, columns}));
  return Shape(rows, columns);
}

Shape::Shape(const Shape& other) : rows_(other.rows_), columns_(other.columns_), more_(other.more_) {
  if (more_) list_ = std::make_unique<std::vector<std::size_t>>(*other.list_);
}

Shape& Shape::operator=(const Shape& other) {
  if (this != &other) *this = Shape(other);
  return *this;
}

std::size_t Shape::count() const noexcept {
  if (!more_) return rows_ * columns_;
  std::size_t count = 1;
  for (const std::size_t dimension : *list_) count *= dimension;
  return count;
}

const std::vector<std::size_t>& Shape::dimensions() const {
  if (!list_) list_ = std::make_unique<std::vector<std::size_t>>(std::vector<std::size_t>{rows_, columns_});
  return *list_;
}

bool operator==(const Shape& a, const Shape& b) {
  if (a.more_ != b.more_) return false;
  return a.more_ ? *a.list_ == *b.list_ : a.rows_ == b.rows_ && a.columns_ == b.columns_;
}

}  // namespace kmf::embedded
