#pragma once

// Glossary
//   identifier    letters, digits and underscores of ASCII, beginning with a letter; `VnId`
//   path          a sequence of identifiers that addresses something in nested graphs; `VnIdPath`
//   type path     a path used as a type name, such as "physical.electrical"; `VnIdPath1`
//   cursor        a place on a path, by which graph operations take their addresses; `VnIdPathIterator`
// An implementation provides the operations that aren't defined here inline.

#include "platform/foundation/export.hpp"
#include "platform/foundation/table_string.hpp"
#include "platform/foundation/ustring.hpp"

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <iosfwd>
#include <map>
#include <string>
#include <vector>

namespace kmf {

/// One legal identifier, or the empty one that default construction gives. A pointer in size.
class KINEMO_PLATFORM_API VnId : public TableString {
 public:
  VnId() noexcept = default;
  /// @throws kmf::MessageException "kinemo:foundation:identifiers" "InvalidIdentifier" (text) for an illegal text; the
  /// empty text gives the empty identifier.
  VnId(const std::string& text);
  VnId(const char* text) : VnId(std::string(text)) {}
  VnId(const ustring& text);

  operator ustring() const;

  static bool isLegal(std::string_view text) noexcept;

  /// Replaces every mapped value by a legal identifier made from its key (UTF-8): no two equal, none among
  /// `reserved`, none over `maxLength` characters. Deterministic, and linear also where many keys clash.
  static void stringsToIds(std::map<std::string, VnId>& names, const std::vector<VnId>& reserved,
                           std::size_t maxLength);
  /// As `stringsToIds` for identifiers: one result for each of `wanted`, in order.
  static std::vector<VnId> unique(const std::vector<VnId>& wanted, const std::vector<VnId>& taken,
                                  std::size_t maxLength);
  /// A legal identifier from any text (UTF-8): illegal characters become underscores, a letter is put in front where
  /// none leads. A legal text comes back unchanged.
  static VnId make(const std::string& text);

  friend void swap(VnId& a, VnId& b) noexcept {
    const VnId c = a;
    a = b;
    b = c;
  }
};

KINEMO_PLATFORM_API std::ostream& operator<<(std::ostream& out, const TableString& text);

/// The common part of the two path types: a plain sequence of identifiers whose text form is joined by full stops.
class KINEMO_PLATFORM_API VnIdPathBase {
 public:
  const VnId& operator[](std::size_t i) const { return ids_[i]; }
  const VnId& front() const { return ids_.front(); }
  const VnId& back() const { return ids_.back(); }
  bool empty() const noexcept { return ids_.empty(); }
  std::size_t size() const noexcept { return ids_.size(); }
  std::vector<VnId>::const_iterator begin() const noexcept { return ids_.begin(); }
  std::vector<VnId>::const_iterator end() const noexcept { return ids_.end(); }
  operator std::string() const;

 protected:
  VnIdPathBase() = default;
  explicit VnIdPathBase(std::vector<VnId> ids) : ids_(std::move(ids)) {}
  /// @throws as `VnId` for an illegal element.
  explicit VnIdPathBase(std::string_view text);

  std::vector<VnId> ids_;
};

class KINEMO_PLATFORM_API VnIdPath : public VnIdPathBase {
 public:
  VnIdPath() = default;
  /// From the text form; "" is the empty path.
  VnIdPath(const char* text);
  VnIdPath(const TableString& id);
  explicit VnIdPath(std::vector<VnId> ids) : VnIdPathBase(std::move(ids)) {}

  using iterator = std::vector<VnId>::const_iterator;
  /// Drops everything from `from` on.
  void chop(iterator from);
  void append(const VnId& id) { ids_.push_back(id); }

  friend bool operator==(const VnIdPath& a, const VnIdPath& b) noexcept { return a.ids_ == b.ids_; }
  friend bool operator!=(const VnIdPath& a, const VnIdPath& b) noexcept { return a.ids_ != b.ids_; }
  friend bool operator<(const VnIdPath& a, const VnIdPath& b) noexcept { return a.ids_ < b.ids_; }
  /// `boost::hash_combine` over the identifiers.
  friend KINEMO_PLATFORM_API std::size_t hash_value(const VnIdPath& path) noexcept;
};

class KINEMO_PLATFORM_API VnIdPath1 : public VnIdPathBase {
 public:
  VnIdPath1() = default;
  /// From the text form, such as "physical.electrical".
  VnIdPath1(const char* text);
  VnIdPath1(const std::string& text);
  VnIdPath1(const VnId& id) : VnIdPathBase(std::vector<VnId>{id}) {}

  friend bool operator==(const VnIdPath1& a, const VnIdPath1& b) noexcept { return a.ids_ == b.ids_; }
  friend bool operator!=(const VnIdPath1& a, const VnIdPath1& b) noexcept { return a.ids_ != b.ids_; }
  friend bool operator<(const VnIdPath1& a, const VnIdPath1& b) noexcept { return a.ids_ < b.ids_; }
};

/// A cursor on a path. It refers to the path or identifier that it was made from, which must outlive it; one made from
/// characters owns its path. A cursor at the empty path addresses the graph itself.
class KINEMO_PLATFORM_API VnIdPathIterator {
 public:
  VnIdPathIterator() noexcept : at_(nullptr), end_(nullptr) {}
  VnIdPathIterator(const VnIdPath& path) noexcept
      : at_(path.empty() ? nullptr : &path[0]), end_(path.empty() ? nullptr : &path[0] + path.size()) {}
  VnIdPathIterator(const VnId& id) noexcept : at_(&id), end_(&id + 1) {}
  VnIdPathIterator(const char* text);

  bool atEnd() const noexcept { return at_ == end_; }
  std::size_t remaining() const noexcept { return static_cast<std::size_t>(end_ - at_); }
  const VnId& operator*() const noexcept { return *at_; }
  VnIdPathIterator& operator++() noexcept {
    ++at_;
    return *this;
  }
  /// What is left, as a path of its own.
  VnIdPath rest() const { return VnIdPath(std::vector<VnId>(at_, end_)); }

 private:
  const VnId* at_;
  const VnId* end_;
  boost::shared_ptr<const VnIdPath> owned_;
};

}  // namespace kmf

template <>
struct std::hash<kmf::VnId> {
  std::size_t operator()(const kmf::VnId& id) const noexcept { return hash_value(id); }
};
