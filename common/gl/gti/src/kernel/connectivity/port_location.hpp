#pragma once

// Where on a subsystem's icon a physical port stands: a side, and a position among the ports of that side. The host
// writes such places as text ("LConn1", "RConn2").

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>

namespace gl::gti {

struct port_side {
  enum Value : std::int32_t {
    NONE = -1,  ///< a text that names no physical side; it has no name and no text form
    LEFT = 0,
    RIGHT = 1
  };
};

/// "LConn" or "RConn", which also names the side's field in the host's "PortHandles". Not for `NONE`.
const std::string& connector_name(port_side::Value side);
/// Writes "left" or "right". Not for `NONE`.
std::ostream& operator<<(std::ostream& out, port_side::Value side);
/// Reads one word: a side's name or connector name in any mixture of case; any other word gives `NONE`.
std::istream& operator>>(std::istream& in, port_side::Value& side);

struct PortLocation {
  port_side::Value side = port_side::LEFT;
  std::int64_t index = 0;  ///< from 0

  friend bool operator==(const PortLocation& a, const PortLocation& b) {
    return a.side == b.side && a.index == b.index;
  }
  friend bool operator<(const PortLocation& a, const PortLocation& b) {
    return a.side != b.side ? a.side < b.side : a.index < b.index;
  }
};

std::size_t hash_value(const PortLocation& location);
/// Writes "{left, 0}".
std::ostream& operator<<(std::ostream& out, const PortLocation& location);
/// Reads one word such as "LConn1", whose numbers begin with 1. A word without a side gives the side `NONE`.
/// @throws boost::bad_lexical_cast "bad cast" when a side isn't followed by a number alone
std::istream& operator>>(std::istream& in, PortLocation& location);

}  // namespace gl::gti
