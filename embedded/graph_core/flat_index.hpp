#pragma once

// A hashed index over entries that live elsewhere: open addressing with linear probing, one word for an entry, nothing
// ever removed. It is owned by the value whose entries it finds and is copied or built anew with it.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace gl::core::detail {

template <class Slot, Slot Free>
class FlatIndex {
 public:
  bool empty() const { return used_ == 0; }

  /// The entry of that hash for which `matches` holds; `Free` when there is none.
  template <class Matches>
  Slot find(std::size_t hash, const Matches& matches) const {
    if (slots_.empty()) return Free;
    for (std::size_t at = home(hash);; at = (at + 1) & (slots_.size() - 1)) {
      if (slots_[at] == Free || matches(slots_[at])) return slots_[at];
    }
  }

  /// Adds an entry that isn't there yet; `hash_of` tells the hash of any entry.
  template <class HashOf>
  void insert(Slot slot, const HashOf& hash_of) {
    if (4 * (used_ + 1) > 3 * slots_.size()) resize(hash_of);
    put(slot, hash_of(slot));
    ++used_;
  }

  void clear() {
    slots_.clear();
    used_ = 0;
  }

 private:
  /// Spreads the hash over the upper bits, which then number the slot: equal low bits don't meet.
  std::size_t home(std::size_t hash) const {
    const std::uint64_t spread = static_cast<std::uint64_t>(hash) * 0x9E3779B97F4A7C15u;
    return static_cast<std::size_t>(spread >> 20) & (slots_.size() - 1);
  }

  void put(Slot slot, std::size_t hash) {
    std::size_t at = home(hash);
    while (slots_[at] != Free) at = (at + 1) & (slots_.size() - 1);
    slots_[at] = slot;
  }

  template <class HashOf>
  void resize(const HashOf& hash_of) {
    std::vector<Slot> old(slots_.empty() ? 8 : 2 * slots_.size(), Free);
    old.swap(slots_);
    for (const Slot slot : old) {
      if (slot != Free) put(slot, hash_of(slot));
    }
  }

  std::vector<Slot> slots_;  ///< a power of two of them, at most three quarters used
  std::size_t used_ = 0;
};

}  // namespace gl::core::detail
