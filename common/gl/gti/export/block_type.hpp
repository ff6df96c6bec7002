#pragma once

#include "common/gl/gti/export/api.hpp"

#include <cstddef>
#include <cstdint>
#include <iosfwd>

namespace gl::gti {

/// Tells which kind of factory turns a leaf block into a component. Text forms: "opaque" and "core".
class KINEMO_GTI_API BlockType {
 public:
  enum Value : std::int32_t {
    OPAQUE = 0,  ///< any block of the network that isn't of our own block class
    CORE = 1     ///< a block of our own block class
  };
  /// Count of the values: arrays indexed by `Value` have this many entries.
  static constexpr std::size_t NUM = 2;

  BlockType() = default;
  BlockType(Value value) : value_(value) {}
  operator Value() const { return value_; }

 private:
  Value value_ = OPAQUE;
};

/// Writes the text form.
KINEMO_GTI_API std::ostream& operator<<(std::ostream& out, BlockType::Value type);
/// Reads one word in any mixture of case. An unknown word stores -1 and is no error of the stream.
KINEMO_GTI_API std::istream& operator>>(std::istream& in, BlockType::Value& type);
KINEMO_GTI_API std::istream& operator>>(std::istream& in, BlockType& type);

}  // namespace gl::gti
