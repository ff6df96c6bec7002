#pragma once

#include "common/gl/gti/export/api.hpp"
#include "common/gl/gti/export/parameter_value.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"

#include <map>
#include <set>

namespace gl::gti {

/// What a block factory receives: the parameters and the port names that were read from one block.
class KINEMO_GTI_API BlockData {
 public:
  /// Adds a parameter, in place of an earlier one of that identifier.
  void addParameter(const kmf::VnId& id, const ParameterValue& value);
  void removeParameter(const kmf::VnId& id) { parameters_.erase(id); }
  const std::map<kmf::VnId, ParameterValue>& parameters() const { return parameters_; }

  void addPort(const ustring& name) { ports_.insert(name); }
  void removePort(const ustring& name) { ports_.erase(name); }
  const std::set<ustring>& ports() const { return ports_; }

  /// Equal parameters, in identifier and value, and equal port names.
  bool operator==(const BlockData& other) const;
  bool operator!=(const BlockData& other) const { return !(*this == other); }

 private:
  std::map<kmf::VnId, ParameterValue> parameters_;
  std::set<ustring> ports_;
};

}  // namespace gl::gti
