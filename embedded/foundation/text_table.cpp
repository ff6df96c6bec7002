#include "embedded/foundation/text_table.hpp"

#include <algorithm>
#include <cstring>

namespace kmf::embedded {

const char* TextArena::store(std::string_view text) {
  constexpr std::size_t kChunk = 16 * 1024;
  const std::size_t needed = text.size() + 1;
  if (needed > left_) {
    const std::size_t size = std::max(needed, kChunk);
    chunks_.push_back(std::make_unique<char[]>(size));
    free_ = chunks_.back().get();
    left_ = size;
  }
  char* const place = free_;
  std::memcpy(place, text.data(), text.size());
  place[text.size()] = '\0';
  free_ += needed;
  left_ -= needed;
  return place;
}

TextTable& TextTable::get() {
  static TextTable* const table = new TextTable;
  return *table;
}

const TableString::Entry* TextTable::intern(std::string_view text) {
  const std::uint64_t hash = text_hash(text);
  Shard& shard = shards_[hash >> (64 - kShardBits)];
  const std::lock_guard<std::mutex> lock(shard.mutex);
  return shard.intern(text, hash);
}

const TableString::Entry* TextTable::Shard::intern(std::string_view text, std::uint64_t hash) {
  if (2 * (entries.size() + 1) > slots.size()) grow();
  const std::size_t mask = slots.size() - 1;
  std::size_t at = hash & mask;
  while (slots[at]) {
    const TableString::Entry& entry = *slots[at];
    if (entry.hash == hash && std::string_view(entry.text, entry.size) == text) return &entry;
    at = (at + 1) & mask;
  }
  entries.push_back({static_cast<std::size_t>(hash), text.size(), texts.store(text)});
  slots[at] = &entries.back();
  return slots[at];
}

void TextTable::Shard::grow() {
  std::vector<const TableString::Entry*> larger(std::max<std::size_t>(64, 2 * slots.size()));
  const std::size_t mask = larger.size() - 1;
  for (const TableString::Entry* entry : slots) {
    if (!entry) continue;
    std::size_t at = entry->hash & mask;
    while (larger[at]) at = (at + 1) & mask;
    larger[at] = entry;
  }
  slots.swap(larger);
}

}  // namespace kmf::embedded
