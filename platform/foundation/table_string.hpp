#pragma once

#include "platform/foundation/export.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace kmf {

/// An interned text. Equal texts share one entry of a process-wide table, so that equality is the equality of
/// pointers; the order is that of the texts, byte by byte. Entries live as long as the process.
class KINEMO_PLATFORM_API TableString {
 public:
  /// One row of the table; `hash` depends on the text alone, so that orders of hashed containers repeat.
  struct Entry {
    std::size_t hash;
    std::size_t size;
    const char* text;
  };

  TableString() noexcept;
  explicit TableString(std::string_view text);

  /// The characters, closed by a zero.
  const char* data() const noexcept { return entry_->text; }
  std::size_t size() const noexcept { return entry_->size; }
  bool empty() const noexcept { return entry_->size == 0; }
  std::string_view view() const noexcept { return {entry_->text, entry_->size}; }
  operator std::string() const { return std::string(view()); }

  friend bool operator==(const TableString& a, const TableString& b) noexcept { return a.entry_ == b.entry_; }
  friend bool operator!=(const TableString& a, const TableString& b) noexcept { return a.entry_ != b.entry_; }
  friend bool operator<(const TableString& a, const TableString& b) noexcept {
    return a.entry_ != b.entry_ && a.view() < b.view();
  }
  friend std::size_t hash_value(const TableString& text) noexcept { return text.entry_->hash; }

 private:
  const Entry* entry_;
};

}  // namespace kmf
