#pragma once

#include "platform/foundation/table_string.hpp"

#include <string>

// The C library has a function ccos for complex numbers, which g++ knows by name. It isn't declared in C++.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wbuiltin-declaration-mismatch"
namespace ccos {}
#pragma GCC diagnostic pop
#endif

namespace ccos {

/// An interned name, such as "kinemo.gl.Graph" or "any". A pointer in size; equality is that of pointers.
class COSNameID {
 public:
  COSNameID(const char* name) : name_(name) {}
  explicit COSNameID(const std::string& name) : name_(name) {}

  /// Valid as long as the process lives.
  const char* text() const { return name_.data(); }

  friend bool operator==(const COSNameID& a, const COSNameID& b) { return a.name_ == b.name_; }
  friend bool operator!=(const COSNameID& a, const COSNameID& b) { return a.name_ != b.name_; }
  /// By text.
  friend bool operator<(const COSNameID& a, const COSNameID& b) { return a.name_ < b.name_; }

 private:
  kmf::TableString name_;
};

}  // namespace ccos
