#include "common/gl/gti/src/kernel/connectivity/port_location.hpp"

#include "platform/foundation/checked.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/functional/hash.hpp>

#include <array>
#include <istream>
#include <map>
#include <ostream>

namespace gl::gti {

namespace {

constexpr std::array<port_side::Value, 2> sides{port_side::LEFT, port_side::RIGHT};
constexpr std::array<const char*, 2> names{"LEFT", "RIGHT"};

const std::map<std::string, port_side::Value>& sidesByText() {
  static const auto table = [] {
    std::map<std::string, port_side::Value> made;
    for (const port_side::Value side : sides) {
      made[kmf::lower(names[side])] = side;
      made[kmf::lower(connector_name(side))] = side;
    }
    return made;
  }();
  return table;
}

}  // namespace

const std::string& connector_name(port_side::Value side) {
  static const std::array<std::string, 2> table{"LConn", "RConn"};
  return table.at(side);
}

std::ostream& operator<<(std::ostream& out, port_side::Value side) {
  return out << kmf::lower(names.at(side));
}

std::istream& operator>>(std::istream& in, port_side::Value& side) {
  std::string word;
  if (!(in >> word)) return in;
  const auto found = sidesByText().find(kmf::lower(word));
  side = found == sidesByText().end() ? port_side::NONE : found->second;
  return in;
}

std::size_t hash_value(const PortLocation& location) {
  std::size_t seed = 0;
  boost::hash_combine(seed, location.index);
  boost::hash_combine(seed, static_cast<std::int32_t>(location.side));
  return seed;
}

std::ostream& operator<<(std::ostream& out, const PortLocation& location) {
  return out << '{' << location.side << ", " << location.index << '}';
}

std::istream& operator>>(std::istream& in, PortLocation& location) {
  std::string word;
  if (!(in >> word)) return in;
  const std::size_t split = std::min(word.find_first_of("0123456789"), word.size());
  const std::string letters = word.substr(0, split);
  const std::string rest = word.substr(split);
  PortLocation read;
  read.side = letters.empty() ? port_side::NONE : kmf::lexical_cast<port_side::Value>(letters);
  if (read.side != port_side::NONE && !rest.empty()) read.index = kmf::lexical_cast<std::int64_t>(rest) - 1;
  location = read;
  return in;
}

}  // namespace gl::gti
