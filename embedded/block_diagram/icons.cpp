// The icon service's memory: icons by key, and settings by name.

#include "embedded/block_diagram/icons.hpp"

#include "platform/block_diagram/icon.hpp"

namespace embedded::block_diagram {

namespace {

using Settings = std::map<std::string, ustring>;

const Settings& initialSettings() {
  static const Settings values{{"KMDVGLabel", u"on"}};
  return values;
}

Settings& settings() {
  static Settings values = initialSettings();
  return values;
}

std::map<ustring, GTIconResource>& icons() {
  static std::map<ustring, GTIconResource> registered;
  return registered;
}

}  // namespace

void setIconSetting(const std::string& name, const ustring& value) {
  settings()[name] = value;
}

void forgetIcons() {
  icons().clear();
  settings() = initialSettings();
}

}  // namespace embedded::block_diagram

using namespace embedded::block_diagram;

bool GTBlockIcon::isBlockIconRegistered(const ustring& key) {
  return findResource(key) != nullptr;
}

void GTBlockIcon::registerBlockIconFromResource(const ustring& key, const ustring& file,
                                                const std::map<ustring, ustring>& styles) {
  icons()[key] = {file, styles};
}

const GTIconResource* GTBlockIcon::findResource(const ustring& key) {
  const auto found = icons().find(key);
  return found == icons().end() ? nullptr : &found->second;
}

ustring kmdvg_setting(const std::string& name) {
  const auto found = settings().find(name);
  return found == settings().end() ? ustring() : found->second;
}
