#pragma once

#include <boost/container/small_vector.hpp>
#include <boost/unordered_map.hpp>

#include <cstdint>

namespace gl::gti {

/// What stands in for the ports of blocks that have become part of a subsystem: ports of that subsystem. Each folded
/// subsystem adds one table; a block that was pending at that time sees it, one that came later doesn't. Instead of
/// writing every table into every pending block, tables are numbered and looked up when a block's turn comes.
///
/// Each handle goes its own way here. Writing a table into a set of handles is the same unless a handle's substitute is
/// itself in the set and has a row of its own, leading elsewhere. A substitute is a port of the subsystem, though, and
/// rows are for ports of blocks inside; no port is both while handles belong to one block each.
class PortSubstitutions {
 public:
  /// Counts the tables; a block remembers how many there were when it became pending.
  using Time = std::uint32_t;

  Time now() const { return now_; }
  void beginTable() { ++now_; }
  /// Adds to the table begun last; the first addition for a handle stands.
  void add(double handle, double substitute);
  /// What a handle has become for a block that became pending at `since`: each later table is applied once, in order.
  double resolve(double handle, Time since);

 private:
  /// From table `time` on the handle is `substitute`, all tables up to `reached` taken into account.
  struct Row {
    Time time;
    Time reached;
    double substitute;
  };

  Row* firstRowAfter(double handle, Time time);

  boost::unordered_map<double, boost::container::small_vector<Row, 1>> rows_;
  Time now_ = 0;
};

}  // namespace gl::gti
