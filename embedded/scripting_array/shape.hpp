#pragma once

// The dimensions of an array. Two numbers for a matrix; the list of dimensions is made when somebody asks for it or
// when there are more than two.

#include <cstddef>
#include <memory>
#include <vector>

namespace kmf::embedded {

class Shape {
 public:
  Shape() = default;
  /// For numbers whose product is known to be a count.
  Shape(std::size_t rows, std::size_t columns) : rows_(rows), columns_(columns) {}
  /// No dimension gives 0 by 0, one gives a column; trailing dimensions of 1 beyond the second are dropped.
  /// @throws "kinemo:scripting:array" "TooLarge" when the number of elements can't be counted.
  explicit Shape(std::vector<std::size_t> dimensions);
  /// As above for two dimensions.
  static Shape matrix(std::size_t rows, std::size_t columns);
  Shape(const Shape& other);
  Shape& operator=(const Shape& other);
  Shape(Shape&&) noexcept = default;
  Shape& operator=(Shape&&) noexcept = default;

  std::size_t count() const noexcept;
  const std::vector<std::size_t>& dimensions() const;
  bool is_matrix() const noexcept { return !more_; }

  friend bool operator==(const Shape& a, const Shape& b);
  friend bool operator!=(const Shape& a, const Shape& b) { return !(a == b); }

 private:
  std::size_t rows_ = 0;
  std::size_t columns_ = 0;
  bool more_ = false;  ///< more than two dimensions: `list_` is what counts
  mutable std::unique_ptr<std::vector<std::size_t>> list_;
};

}  // namespace kmf::embedded
