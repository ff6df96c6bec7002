#include "common/gl/gti/src/kernel/block_model/port_record.hpp"

#include "platform/foundation/strings.hpp"

#include <ostream>
#include <utility>
#include <vector>

namespace gl::gti {

void PortRecord::applySubstitutions(const std::map<double, double>& table) {
  std::vector<std::pair<double, double>> picked;
  for (const double handle : connected_) {
    const auto row = table.find(handle);
    if (row != table.end()) picked.push_back(*row);
  }
  for (const auto& [handle, substitute] : picked) {
    connected_.erase(handle);
    connected_.insert(substitute);
  }
}

void PortRecord::print(std::ostream& out, const std::string& indent) const {
  out << indent << kmf::ustring_to_utf8_string(name_) << '\n';
  for (const double handle : connected_) out << indent << ' ' << handle << '\n';
}

}  // namespace gl::gti
