#pragma once

// Texts of parameters. A model of a million blocks has few different ones, so equal texts share one entry of a table;
// an entry lives as long as a text refers to it.

#include "platform/foundation/ustring.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>

namespace embedded::block_diagram {

/// Where kinds of things have names: block types, library names, port types. The entry lives as long as the process.
const std::string* internName(const std::string& name);

/// A pointer in size; equal texts have equal entries.
class SharedText {
 public:
  struct Entry {
    ustring text;
    std::size_t uses;
  };

  SharedText() noexcept = default;
  explicit SharedText(const ustring& text);
  SharedText(const SharedText& other) noexcept : entry_(other.entry_) {
    if (entry_) ++entry_->uses;
  }
  SharedText(SharedText&& other) noexcept : entry_(std::exchange(other.entry_, nullptr)) {}
  SharedText& operator=(SharedText other) noexcept {
    std::swap(entry_, other.entry_);
    return *this;
  }
  ~SharedText();

  const ustring& text() const;
  /// What names the text as long as it lives; null for the empty text.
  const Entry* entry() const { return entry_; }
  friend bool operator==(const SharedText& a, const SharedText& b) noexcept { return a.entry_ == b.entry_; }

 private:
  Entry* entry_ = nullptr;
};

}  // namespace embedded::block_diagram
