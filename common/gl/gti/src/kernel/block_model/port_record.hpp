#pragma once

#include "platform/foundation/ustring.hpp"

#include <iosfwd>
#include <map>
#include <set>
#include <string>

namespace gl::gti {

/// One port of a block during a translation: its name, and the far-end ports that it is joined to. A plain value.
class PortRecord {
 public:
  void setName(const ustring& name) { name_ = name; }
  const ustring& name() const { return name_; }

  void addConnected(double portHandle) { connected_.insert(portHandle); }
  const std::set<double>& connected() const { return connected_; }

  /// Replaces every connected handle that has a row in the table by the row's value. The rows are picked first, so that
  /// a value put in isn't replaced in turn.
  void applySubstitutions(const std::map<double, double>& table);

  void print(std::ostream& out, const std::string& indent) const;

 private:
  ustring name_;
  std::set<double> connected_;
};

}  // namespace gl::gti
