#include "embedded/class_system/packages.hpp"

#include "embedded/class_system/errors.hpp"

#include <algorithm>

namespace embedded::class_system {

namespace {

MethodPtr taken_over(const ccos::COSMethodInfo* method) {
  if (method->isDestructible()) return MethodPtr(method);
  return {method, [](const ccos::COSMethodInfo*) {}};  // its author keeps it
}

}  // namespace

void Package::addSubPackage(ccos::COSPackageInfo* info) {
  std::unique_ptr<Package>& place = packages_[info->getName()];
  if (!place) place = std::make_unique<Package>(info->getName(), this);
  std::vector<ccos::COSPackageInfo*>& infos = place->infos_;
  if (std::find(infos.begin(), infos.end(), info) == infos.end()) infos.push_back(info);
  info->setPackage(place.get());
}

void Package::addMethod(ccos::COSMethodInfo* method) {
  MethodPtr owned = taken_over(method);
  const auto locked = [](const ccos::COSPackageInfo* info) { return info->isLocked(); };
  if (std::any_of(infos_.begin(), infos_.end(), locked)) throw_class_error("PackageLocked", getPath());
  MethodPtr& place = methods_[method->getName()];
  if (place && place->isLocked()) throw_class_error("MethodLocked", std::string(method->getName()), getPath());
  place.swap(owned);  // the former one ends when the table is right again
}

std::string Package::getPath() const {
  std::string path = name_;
  for (const Package* at = outer_; at && at->outer_; at = at->outer_) path = at->name_ + '.' + path;
  return path;
}

Package* Package::package(const std::string& name) {
  auto found = packages_.find(name);
  for (std::size_t i = 0; found == packages_.end() && i < infos_.size(); ++i) {
    if (infos_[i]->attemptToLoadSubPackage(ccos::COSNameID(name))) found = packages_.find(name);
  }
  return found == packages_.end() ? nullptr : found->second.get();
}

MethodPtr Package::method(const std::string& name) {
  auto found = methods_.find(name);
  for (std::size_t i = 0; found == methods_.end() && i < infos_.size(); ++i) {
    if (infos_[i]->attemptToLoadFunction(ccos::COSNameID(name))) found = methods_.find(name);
  }
  return found == methods_.end() ? nullptr : found->second;
}

bool Package::load_class(const ccos::COSNameID& name) {
  return std::any_of(infos_.begin(), infos_.end(),
                     [&](ccos::COSPackageInfo* info) { return info->attemptToLoadClass(name); });
}

std::string Package::description() const {
  for (const ccos::COSPackageInfo* info : infos_) {
    if (const std::string text = info->getDescription(); !text.empty()) return text;
  }
  return {};
}

std::vector<std::string> Package::contents() const {
  std::vector<std::string> names;
  for (const auto& entry : packages_) names.push_back(entry.first);
  for (const auto& entry : methods_) {
    if (entry.second->isVisible()) names.push_back(entry.first);
  }
  std::sort(names.begin(), names.end());
  return names;
}

Package& top_package() {
  static auto* top = new Package("", nullptr);  // never destroyed, as libraries refer to what is in it
  return *top;
}

Package* find_package(std::string_view path) {
  Package* at = &top_package();
  while (at && !path.empty()) {
    const std::size_t end = std::min(path.find('.'), path.size());
    at = at->package(std::string(path.substr(0, end)));
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return at;
}

std::pair<std::string_view, std::string_view> split_path(std::string_view path) {
  const std::size_t dot = path.rfind('.');
  if (dot == std::string_view::npos) return {{}, path};
  return {path.substr(0, dot), path.substr(dot + 1)};
}

bool attempt_to_load_class(const ccos::COSNameID& name) {
  const auto [path, last] = split_path(name.text());
  Package* package = path.empty() ? nullptr : find_package(path);
  return package && package->load_class(ccos::COSNameID(std::string(last)));
}

}  // namespace embedded::class_system

namespace ccos {

COSPackage::~COSPackage() = default;

void COSPackage::addPackage(COSPackageInfo* info) {
  embedded::class_system::top_package().addSubPackage(info);
}

}  // namespace ccos
