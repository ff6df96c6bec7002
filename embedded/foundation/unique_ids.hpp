#pragma once

// Hands out identifiers no two of which are equal. Lives for one call of `VnId::stringsToIds` or `VnId::unique`.

#include "platform/foundation/vn_id.hpp"

#include <boost/unordered_map.hpp>
#include <boost/unordered_set.hpp>

#include <string>
#include <utility>
#include <vector>

namespace kmf::embedded {

class UniqueIds {
 public:
  UniqueIds(const std::vector<VnId>& taken, std::size_t max_length);

  /// Takes `id` as it is; false when it is too long or taken.
  bool take(const VnId& id);

  /// Takes an identifier like `id`: cut to the limit, then with the first free of "_1", "_2", ... behind it.
  /// @throws std::length_error when the limit leaves no room for that.
  VnId near(const VnId& id);

 private:
  VnId numbered(const std::string& id);

  std::size_t max_length_;
  boost::unordered_set<VnId> taken_;
  /// The next number for a stem and a count of digits. Never steps back, so that all calls together are linear even
  /// where many identifiers share one stem.
  boost::unordered_map<std::pair<std::string, std::size_t>, std::size_t> next_;
};

}  // namespace kmf::embedded
