#include "embedded/block_diagram/shared_text.hpp"

#include <memory>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace embedded::block_diagram {

namespace {

using Table = std::unordered_map<std::u16string_view, std::unique_ptr<SharedText::Entry>>;

/// Never destroyed: blocks of static objects may end late.
Table& table() {
  static Table* const instance = new Table;
  return *instance;
}

}  // namespace

const std::string* internName(const std::string& name) {
  static auto* const names = new std::unordered_set<std::string>;
  return &*names->insert(name).first;
}

SharedText::SharedText(const ustring& text) {
  if (text.empty()) return;
  const auto found = table().find(text);
  if (found != table().end()) {
    entry_ = found->second.get();
  } else {
    auto entry = std::make_unique<Entry>(Entry{text, 0});
    entry_ = entry.get();
    table().emplace(std::u16string_view(entry_->text), std::move(entry));
  }
  ++entry_->uses;
}

SharedText::~SharedText() {
  if (!entry_ || --entry_->uses != 0) return;
  // The key is a view into the entry: take the node out first.
  const auto node = table().extract(std::u16string_view(entry_->text));
}

const ustring& SharedText::text() const {
  static const ustring empty;
  return entry_ ? entry_->text : empty;
}

}  // namespace embedded::block_diagram
