#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"

#include <string>

namespace gl::gti::detail {

/// One connection port of a block kind: a plain value of the descriptor that declares it.
class KINEMO_GTI_API PortInfo {
 public:
  PortInfo(const kmf::VnId& id, const std::string& type, const ustring& label, const ustring& unit);

  /// Identifier of the port within the block; also the text of its node's name.
  const kmf::VnId& id() const { return id_; }
  /// Port type within the domain, such as "electrical".
  const std::string& type() const { return type_; }
  /// Text drawn beside the port.
  const ustring& label() const { return label_; }
  const ustring& unit() const { return unit_; }

  bool operator==(const PortInfo& other) const;

 private:
  kmf::VnId id_;
  std::string type_;
  ustring label_;
  ustring unit_;
};

}  // namespace gl::gti::detail
