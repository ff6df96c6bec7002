#include "common/gl/gti/export/block_path.hpp"

#include "common/gl/gti/src/kernel/block_model/path_text.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <ostream>
#include <utility>

namespace gl::gti {

namespace {

using Components = BlockPath::Components;

/// The one list of all empty paths. It always has this owner as well, so nobody changes it.
const boost::shared_ptr<Components>& noComponents() {
  static const auto* empty = new boost::shared_ptr<Components>(boost::make_shared<Components>());
  return *empty;
}

[[noreturn]] void throwInvalidAccess() {
  kmf::throw_message("kinemo:common:gl:gti:block_path", "InvalidBlockPathAccess");
}

}  // namespace

BlockPath::BlockPath() : components_(noComponents()) {}

BlockPath::BlockPath(const ustring& text) : BlockPath() {
  if (text.empty()) return;
  const std::vector<std::u16string_view> parts = split_path_text(text);
  components_ = boost::make_shared<Components>(parts.begin(), parts.end());
}

BlockPath::BlockPath(BlockPath&& other) : BlockPath() { components_.swap(other.components_); }

BlockPath& BlockPath::operator=(BlockPath&& other) noexcept {
  components_.swap(other.components_);
  return *this;
}

BlockPath& BlockPath::operator+=(const BlockPath& tail) {
  const BlockPath held(tail);  // the tail may be this path
  Components& components = data();
  components.insert(components.end(), held.begin(), held.end());
  return *this;
}

bool BlockPath::operator==(const BlockPath& other) const {
  return components_ == other.components_ || *components_ == *other.components_;
}

bool BlockPath::operator<(const BlockPath& other) const { return *components_ < *other.components_; }

bool BlockPath::deepestFirst(const BlockPath& other) const {
  return size() != other.size() ? size() > other.size() : *this < other;
}

const ustring& BlockPath::front() const {
  if (empty()) throwInvalidAccess();
  return data().front();
}

const ustring& BlockPath::back() const {
  if (empty()) throwInvalidAccess();
  return data().back();
}

BlockPath::const_iterator BlockPath::branch(const BlockPath& other) const {
  return std::mismatch(begin(), end(), other.begin(), other.end()).first;
}

BlockPath BlockPath::chop() const {
  BlockPath path;
  if (size() > 1) path.components_ = boost::make_shared<Components>(begin(), end() - 1);
  return path;
}

BlockPath BlockPath::rest() const {
  BlockPath path;
  if (size() > 1) path.components_ = boost::make_shared<Components>(begin() + 1, end());
  return path;
}

ustring BlockPath::string() const {
  ustring text;
  for (const ustring& component : data()) {
    if (&component != &data().front()) text += u'/';
    text += component;
  }
  return text;
}

BlockPath::Components& BlockPath::data() {
  if (components_.use_count() != 1) components_ = boost::make_shared<Components>(*components_);
  return *components_;
}

BlockPath operator+(BlockPath path, const BlockPath& tail) {
  path += tail;
  return path;
}

std::ostream& operator<<(std::ostream& out, const BlockPath& path) {
  return out << kmf::ustring_to_utf8_string(path.string());
}

}  // namespace gl::gti
