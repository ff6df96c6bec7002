#pragma once

// The catalogue of message texts: `kinemo.mo`, which the build compiles from the .po files below `messages/`. One for
// the process, read when the first message is shown, never taken down.

#include "platform/foundation/export.hpp"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace kmf::embedded {

/// A text of the catalogue with the identifier that it belongs to.
struct CatalogueEntry {
  std::string key;   ///< group and id, joined by a colon
  std::string text;  ///< UTF-8, with {1} and so on where the arguments go
};

class KINEMO_PLATFORM_API Catalogue {
 public:
  static const Catalogue& get();

  Catalogue(const Catalogue&) = delete;
  Catalogue& operator=(const Catalogue&) = delete;

  /// The text for `group:id`; null where there is none. Lives as long as the process.
  const char* find(const std::string& key) const;
  /// All texts, sorted by key.
  std::vector<CatalogueEntry> entries() const;
  /// The folder of languages that was found; empty where there is none.
  const std::string& folder() const { return folder_; }

 private:
  struct Texts;

  Catalogue();

  std::string folder_;
  std::unique_ptr<const Texts> texts_;
};

/// `pattern` with every {n} replaced by argument number n. A placeholder beyond the arguments stays as it is. What stands
/// in "{n? ... ?}" is left out where argument n is empty.
KINEMO_PLATFORM_API std::string fill_placeholders(std::string_view pattern, const std::vector<std::string>& arguments);

/// The largest n of the placeholders {n} in `pattern`; 0 when there are none.
KINEMO_PLATFORM_API std::size_t highest_placeholder(std::string_view pattern);

}  // namespace kmf::embedded
