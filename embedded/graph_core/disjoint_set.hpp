#pragma once

// A disjoint set over numbers from 0. The representative of a class is its smallest member, so that whatever is
// numbered by representatives doesn't depend on the order of merging. Merging is commutative, associative and
// idempotent; a class of one member is its identity.

#include <cstdint>
#include <numeric>
#include <utility>
#include <vector>

namespace gl::core::detail {

class DisjointSet {
 public:
  using Member = std::uint32_t;

  /// Adds members as classes of their own and returns the first one's number.
  Member add(std::size_t count) {
    const Member first = static_cast<Member>(parents_.size());
    parents_.resize(parents_.size() + count);
    std::iota(parents_.begin() + first, parents_.end(), first);
    return first;
  }

  std::size_t size() const { return parents_.size(); }

  Member representative(Member member) {
    while (parents_[member] != member) {
      parents_[member] = parents_[parents_[member]];
      member = parents_[member];
    }
    return member;
  }

  void unite(Member a, Member b) {
    a = representative(a);
    b = representative(b);
    if (a == b) return;
    if (b < a) std::swap(a, b);
    parents_[b] = a;
  }

 private:
  std::vector<Member> parents_;  ///< never above the member itself
};

}  // namespace gl::core::detail
