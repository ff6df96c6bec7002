#include "platform/foundation/table_string.hpp"

#include "embedded/foundation/text_table.hpp"

#include <ostream>

namespace kmf {
namespace {

// Stands outside the table, so that default construction neither locks nor depends on the order of static objects.
constexpr TableString::Entry kEmptyEntry{embedded::text_hash({}), 0, ""};

}  // namespace

TableString::TableString() noexcept : entry_(&kEmptyEntry) {}

TableString::TableString(std::string_view text)
    : entry_(text.empty() ? &kEmptyEntry : embedded::TextTable::get().intern(text)) {}

std::ostream& operator<<(std::ostream& out, const TableString& text) {
  return out << text.view();
}

}  // namespace kmf
