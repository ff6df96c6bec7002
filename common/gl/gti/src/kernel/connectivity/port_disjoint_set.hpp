#pragma once

#include <boost/unordered_map.hpp>

#include <cstddef>
#include <vector>

namespace gl::gti {

/// Port handles of one subsystem, merged into nets.
///
/// The algebra: a merge makes the smallest handle of both sides the representative of the whole. The minimum is
/// commutative, associative and idempotent, and a handle on its own is its identity; so the representative doesn't
/// depend on the order of merges, and paths to it may be shortened at any time.
class PortDisjointSet {
 public:
  /// Makes a net of the handle alone; nothing for a handle that is there.
  void makeSet(double value) { indexOf(value); }
  /// Merges the nets of two handles. @throws std::out_of_range for a handle without a net
  void unite(double a, double b);
  /// The smallest handle of the net. @throws std::out_of_range for a handle without a net
  double find(double value);
  /// Null for a handle without a net; otherwise its representative, valid until the next `makeSet`.
  const double* findIfKnown(double value);

  /// One handle of each net, ascending.
  std::vector<double> representatives() const;
  /// All handles, ascending.
  std::vector<double> values() const;

 private:
  struct Node {
    double value;
    std::size_t parent;
  };

  std::size_t indexOf(double value);
  std::size_t root(std::size_t node);

  std::vector<Node> nodes_;
  boost::unordered_map<double, std::size_t> index_;
};

}  // namespace gl::gti
