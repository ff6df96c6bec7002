#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace embedded::block_diagram {

/// A disjoint set over the numbers from 0. Merging is commutative, associative and idempotent; which member stands for
/// a class is the smallest number in it, whatever the order of merges.
class DisjointSet {
 public:
  explicit DisjointSet(std::size_t count) : parents_(count) {
    std::iota(parents_.begin(), parents_.end(), std::uint32_t{0});
  }

  std::uint32_t find(std::uint32_t x) {
    while (parents_[x] != x) {
      parents_[x] = parents_[parents_[x]];
      x = parents_[x];
    }
    return x;
  }

  void unite(std::uint32_t a, std::uint32_t b) {
    a = find(a);
    b = find(b);
    if (a > b) std::swap(a, b);
    parents_[b] = a;
  }

  std::size_t size() const { return parents_.size(); }

 private:
  std::vector<std::uint32_t> parents_;
};

}  // namespace embedded::block_diagram
