#include "common/gl/gti/export/block_type.hpp"

#include "platform/foundation/strings.hpp"

#include <array>
#include <istream>
#include <map>
#include <ostream>
#include <string>

namespace gl::gti {

namespace {

const std::array<std::string, BlockType::NUM>& texts() {
  static const std::array<std::string, BlockType::NUM> table{kmf::lower("OPAQUE"), kmf::lower("CORE")};
  return table;
}

const std::map<std::string, BlockType::Value>& values() {
  static std::map<std::string, BlockType::Value> inverse;
  if (inverse.empty()) {
    for (std::size_t i = 0; i < BlockType::NUM; ++i) inverse[texts()[i]] = static_cast<BlockType::Value>(i);
  }
  return inverse;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, BlockType::Value type) { return out << texts().at(type); }

std::istream& operator>>(std::istream& in, BlockType::Value& type) {
  std::string text;
  in >> text;  // no word is a word that names no type
  const auto found = values().find(kmf::lower(text));
  type = found == values().end() ? static_cast<BlockType::Value>(-1) : found->second;
  return in;
}

std::istream& operator>>(std::istream& in, BlockType& type) {
  BlockType::Value value = type;
  in >> value;
  type = value;
  return in;
}

}  // namespace gl::gti
