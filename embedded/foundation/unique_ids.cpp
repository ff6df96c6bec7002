#include "embedded/foundation/unique_ids.hpp"

#include <stdexcept>

namespace kmf::embedded {

UniqueIds::UniqueIds(const std::vector<VnId>& taken, std::size_t max_length)
    : max_length_(max_length), taken_(taken.begin(), taken.end()) {}

bool UniqueIds::take(const VnId& id) {
  return id.size() <= max_length_ && taken_.insert(id).second;
}

VnId UniqueIds::near(const VnId& id) {
  if (max_length_ == 0) throw std::length_error("identifiers of no length were asked for");
  const std::string text(id.view().substr(0, max_length_));
  const VnId cut(text);
  return take(cut) ? cut : numbered(text);
}

VnId UniqueIds::numbered(const std::string& id) {
  std::size_t first = 1;  // the smallest number of this many digits
  for (std::size_t digits = 1; digits + 2 <= max_length_ && digits < 19; ++digits, first *= 10) {
    const std::string stem = id.substr(0, max_length_ - 1 - digits);
    std::size_t& next = next_.emplace(std::make_pair(stem, digits), first).first->second;
    while (next < 10 * first) {
      const VnId candidate(stem + '_' + std::to_string(next++));
      if (take(candidate)) return candidate;
    }
  }
  throw std::length_error("no identifier is left within the limit of length");
}

}  // namespace kmf::embedded
