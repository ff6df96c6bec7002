#include "platform/foundation/exception.hpp"
#include "platform/foundation/vn_id.hpp"

#include <boost/functional/hash.hpp>

namespace kmf {

VnIdPathBase::VnIdPathBase(std::string_view text) {
  if (text.empty()) return;
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find('.', start), text.size());
    const std::string id(text.substr(start, end - start));
    if (id.empty()) throw_message("kinemo:foundation:identifiers", "EmptyPathElement", std::string(text));
    ids_.emplace_back(id);
    start = end + 1;
  }
}

VnIdPathBase::operator std::string() const {
  std::string text;
  for (const VnId& id : ids_) {
    if (!text.empty()) text += '.';
    text += id.view();
  }
  return text;
}

VnIdPath::VnIdPath(const char* text) : VnIdPathBase(std::string_view(text)) {}

VnIdPath::VnIdPath(const TableString& id) {
  if (id.empty()) return;
  // Any interned text may come in. A legal one is taken over as it stands, without another look-up in the table.
  if (!VnId::isLegal(id.view())) throw_message("kinemo:foundation:identifiers", "InvalidIdentifier", std::string(id));
  ids_.emplace_back();
  static_cast<TableString&>(ids_.back()) = id;
}

void VnIdPath::chop(iterator from) {
  ids_.erase(from, ids_.end());
}

std::size_t hash_value(const VnIdPath& path) noexcept {
  std::size_t seed = 0;
  for (const VnId& id : path) boost::hash_combine(seed, id);
  return seed;
}

VnIdPath1::VnIdPath1(const char* text) : VnIdPathBase(std::string_view(text)) {}

VnIdPath1::VnIdPath1(const std::string& text) : VnIdPathBase(std::string_view(text)) {}

VnIdPathIterator::VnIdPathIterator(const char* text) : at_(nullptr), end_(nullptr), owned_(new VnIdPath(text)) {
  if (owned_->empty()) return;
  at_ = &owned_->front();
  end_ = at_ + owned_->size();
}

}  // namespace kmf
