#include "embedded/foundation/catalogue.hpp"

#include "embedded/foundation/catalogue_file.hpp"

#include <boost/locale/gnu_gettext.hpp>

#include <algorithm>
#include <clocale>
#include <locale>

namespace kmf::embedded {
namespace {

namespace gettext = boost::locale::gnu_gettext;
using Facet = boost::locale::message_format<char>;

constexpr const char* kDomain = "kinemo";
constexpr const char* kDefaultLanguage = "en";

// The language of the process's locale: "de" of "de_AT.UTF-8"; the default one where it has no texts.
std::string chosen_language(const std::string& folder) {
  const char* const locale = std::setlocale(LC_MESSAGES, nullptr);
  const std::string language = locale ? std::string(locale).substr(0, std::string(locale).find_first_of("_.@")) : "";
  const bool is_name =
      !language.empty() && std::all_of(language.begin(), language.end(), [](char c) { return c >= 'a' && c <= 'z'; });
  return is_name && catalogue_file_exists(folder, language) ? language : kDefaultLanguage;
}

std::locale load(const std::string& folder, const std::string& language) {
  gettext::messages_info info;
  info.language = language;
  info.encoding = "UTF-8";
  info.domains.emplace_back(kDomain);
  info.paths.push_back(folder);
  return std::locale(std::locale::classic(), gettext::create_messages_facet<char>(info));
}

}  // namespace

// Texts that the chosen language lacks are taken from the default one.
struct Catalogue::Texts {
  std::locale chosen;
  std::locale fallback;

  const char* find(const std::string& key) const {
    const char* const text = std::use_facet<Facet>(chosen).get(0, nullptr, key.c_str());
    return text ? text : std::use_facet<Facet>(fallback).get(0, nullptr, key.c_str());
  }
};

const Catalogue& Catalogue::get() {
  static const Catalogue* const catalogue = new Catalogue;
  return *catalogue;
}

Catalogue::Catalogue() : folder_(find_catalogue_folder(kDefaultLanguage)) {
  if (folder_.empty()) return;
  try {
    texts_ = std::make_unique<Texts>(Texts{load(folder_, chosen_language(folder_)), load(folder_, kDefaultLanguage)});
  } catch (const std::exception&) {
    // A damaged file must not hide the messages themselves: they are shown by identifier and arguments.
    folder_.clear();
  }
}

const char* Catalogue::find(const std::string& key) const {
  // The empty key is that of the file's head.
  return texts_ && !key.empty() ? texts_->find(key) : nullptr;
}

std::vector<CatalogueEntry> Catalogue::entries() const {
  std::vector<CatalogueEntry> result;
  if (!texts_) return result;
  for (std::string& key : catalogue_keys(folder_, kDefaultLanguage)) {
    const char* const text = find(key);
    if (text) result.push_back({std::move(key), text});
  }
  std::sort(result.begin(), result.end(), [](const auto& a, const auto& b) { return a.key < b.key; });
  return result;
}

}  // namespace kmf::embedded
