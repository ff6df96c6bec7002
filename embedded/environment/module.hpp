#pragma once

#include "platform/block_diagram/library.hpp"

#include <memory>
#include <string>

namespace boost::dll {
class shared_library;
}

namespace embedded {

/// An open domain module. At its end it takes back what it registered, and is closed: by then nothing may be alive that
/// the module made.
class Module {
 public:
  /// Opens the file; nothing is registered yet. @throws "kinemo:host:modules" "CannotOpenModule" (file, system's text),
  /// "NotADomainModule" (file), "ModuleDoesNotFit" (file, its interface number, ours)
  explicit Module(const std::string& file);
  ~Module();
  Module(const Module&) = delete;
  Module& operator=(const Module&) = delete;

  /// Lets the module register what it brings. What its `load` raises passes on.
  void load(GtBlockContext* context);

  /// A function that the module, or a library that it stands on, exports; null where there is none.
  template <class Function>
  Function* exported(const char* symbol) const {
    return reinterpret_cast<Function*>(address(symbol));
  }

  const std::string& name() const { return name_; }
  /// Absolute and without links, so that two spellings of one file are the same.
  const std::string& file() const { return file_; }

 private:
  void (*address(const char* symbol) const)();

  std::string file_;
  std::unique_ptr<boost::dll::shared_library> library_;
  const KinemoDomainModule* description_;
  std::string name_;
  bool loading_ = false;
};

}  // namespace embedded
