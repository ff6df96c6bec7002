#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <iosfwd>
#include <vector>

namespace gl::gti {

/// The path of a block of a host model, such as `model/subsystem/block`, as a list of block names. A value type: copies
/// share the list until one of them is changed. A name that holds a "/" keeps it doubled, as the host writes it.
class KINEMO_GTI_API BlockPath {
 public:
  using Components = std::vector<ustring>;
  using const_iterator = Components::const_iterator;

  /// The empty path.
  BlockPath();
  /// Splits at each "/" that isn't one of a pair. Linear in the length of `text`.
  BlockPath(const ustring& text);
  BlockPath(const BlockPath&) = default;
  BlockPath(BlockPath&& other);
  BlockPath& operator=(const BlockPath&) = default;
  BlockPath& operator=(BlockPath&& other) noexcept;
  ~BlockPath() = default;

  /// Appends the components of `tail`.
  BlockPath& operator+=(const BlockPath& tail);

  bool operator==(const BlockPath& other) const;
  bool operator!=(const BlockPath& other) const { return !(*this == other); }
  /// Lexicographic over the components; a proper prefix comes first.
  bool operator<(const BlockPath& other) const;
  /// Strict weak order that puts inner blocks before the blocks around them: by falling size, then by `operator<`.
  bool deepestFirst(const BlockPath& other) const;

  /// @throws kmf::MessageException "kinemo:common:gl:gti:block_path" "InvalidBlockPathAccess" on an empty path
  const ustring& front() const;
  /// @throws as `front`
  const ustring& back() const;
  const_iterator begin() const { return data().begin(); }
  const_iterator end() const { return data().end(); }
  bool empty() const { return data().empty(); }
  std::size_t size() const { return data().size(); }

  /// The first component that `other` doesn't share at the same position; `end()` when this is a prefix of `other`.
  const_iterator branch(const BlockPath& other) const;
  /// All components but the last; of an empty path the empty path.
  BlockPath chop() const;
  /// All components but the first; of an empty path the empty path.
  BlockPath rest() const;
  /// The components joined by "/".
  ustring string() const;

 protected:
  const Components& data() const { return *components_; }

 private:
  Components& data();

  boost::shared_ptr<Components> components_;
};

KINEMO_GTI_API BlockPath operator+(BlockPath path, const BlockPath& tail);
/// Writes `string()` in UTF-8.
KINEMO_GTI_API std::ostream& operator<<(std::ostream& out, const BlockPath& path);

}  // namespace gl::gti
