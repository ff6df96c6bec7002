#pragma once

// The process-wide table behind `kmf::TableString`. It is never taken down, since identifiers in static objects
// outlive every order of destruction.

#include "platform/foundation/table_string.hpp"

#include <array>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <string_view>
#include <vector>

namespace kmf::embedded {

/// FNV-1a, 64 bits: depends on the text alone, so that orders of hashed containers repeat from run to run.
constexpr std::uint64_t text_hash(std::string_view text) noexcept {
  std::uint64_t hash = 14695981039346656037ULL;
  for (const char c : text) {
    hash ^= static_cast<unsigned char>(c);
    hash *= 1099511628211ULL;
  }
  return hash;
}

/// Memory for texts, given out in order and never taken back.
class TextArena {
 public:
  /// A copy of `text`, closed by a zero.
  const char* store(std::string_view text);

 private:
  std::vector<std::unique_ptr<char[]>> chunks_;
  char* free_ = nullptr;
  std::size_t left_ = 0;
};

/// An open hash of entries, cut into shards with a lock each.
class TextTable {
 public:
  static TextTable& get();

  const TableString::Entry* intern(std::string_view text);

 private:
  struct Shard {
    std::mutex mutex;
    std::vector<const TableString::Entry*> slots;  ///< a power of two; at most half are taken
    std::deque<TableString::Entry> entries;        ///< addresses stay
    TextArena texts;

    const TableString::Entry* intern(std::string_view text, std::uint64_t hash);
    void grow();
  };

  static constexpr unsigned kShardBits = 4;
  std::array<Shard, 1U << kShardBits> shards_;
};

}  // namespace kmf::embedded
