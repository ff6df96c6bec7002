#pragma once

#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"

#include <map>
#include <set>
#include <string>

namespace kinemo::physical {

/// The connector types of an opaque subsystem's ports, as its block parameter "PortTypes" tells them.
class PortTypes {
 public:
  /// @throws "kinemo:physical:opaque" "InvalidPortType" (entry)
  explicit PortTypes(const std::string& text);

  const kmf::VnIdPath1& operator()(const std::string& port) const;

 private:
  void add(const std::string& entry);

  kmf::VnIdPath1 others_;
  std::map<std::string, kmf::VnIdPath1> named_;
};

}  // namespace kinemo::physical
