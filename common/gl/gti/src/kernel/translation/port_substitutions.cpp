#include "common/gl/gti/src/kernel/translation/port_substitutions.hpp"

#include <algorithm>

namespace gl::gti {

void PortSubstitutions::add(double handle, double substitute) {
  auto& rows = rows_[handle];
  if (rows.empty() || rows.back().time != now_) rows.push_back({now_, now_, substitute});
}

double PortSubstitutions::resolve(double handle, Time since) {
  boost::container::small_vector<Row*, 8> passed;
  for (Row* row = firstRowAfter(handle, since); row != nullptr; row = firstRowAfter(handle, since)) {
    handle = row->substitute;
    since = row->reached;
    passed.push_back(row);
  }
  // No table is added to once it has been looked up, so all rows on the way may lead straight to the end.
  for (Row* row : passed) {
    row->substitute = handle;
    row->reached = now_;
  }
  return handle;
}

PortSubstitutions::Row* PortSubstitutions::firstRowAfter(double handle, Time time) {
  const auto found = rows_.find(handle);
  if (found == rows_.end()) return nullptr;
  auto& rows = found->second;  // by rising time
  const auto row = std::upper_bound(rows.begin(), rows.end(), time, [](Time at, const Row& r) { return at < r.time; });
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace gl::gti
