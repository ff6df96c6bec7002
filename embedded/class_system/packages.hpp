#pragma once

// The tree of packages.

#include "platform/class_system/class_system.hpp"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::class_system {

/// Shared with the calls that are running, so that a method may replace itself.
using MethodPtr = std::shared_ptr<const ccos::COSMethodInfo>;

class Package : public ccos::COSPackage {
 public:
  /// `outer` is null for the room around all top-level packages.
  Package(std::string name, Package* outer) : name_(std::move(name)), outer_(outer) {}

  void addSubPackage(ccos::COSPackageInfo* info) override;
  void addMethod(ccos::COSMethodInfo* method) override;
  std::string getPath() const override;

  /// Null where there is none and no info can load it.
  Package* package(const std::string& name);
  MethodPtr method(const std::string& name);
  /// Whether an info made the class known just now.
  bool load_class(const ccos::COSNameID& name);
  /// What the authors of the package tell of it; empty where they tell nothing.
  std::string description() const;
  /// Names of sub-packages and visible methods, sorted.
  std::vector<std::string> contents() const;

 private:
  std::string name_;
  Package* outer_;
  std::vector<ccos::COSPackageInfo*> infos_;
  std::map<std::string, std::unique_ptr<Package>> packages_;
  std::map<std::string, MethodPtr> methods_;
};

/// The room around all top-level packages.
Package& top_package();
/// The package at a path such as "kinemo.gl"; the empty path is the top. Null where there is none.
Package* find_package(std::string_view path);
/// Asks the package that a class's name says for the class.
bool attempt_to_load_class(const ccos::COSNameID& name);
/// A path without its last name, and that name.
std::pair<std::string_view, std::string_view> split_path(std::string_view path);

}  // namespace embedded::class_system
