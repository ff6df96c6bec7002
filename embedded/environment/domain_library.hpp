#pragma once

// One domain module, opened. Its registrations are taken back and its code is let go when it ends: by then nothing may
// be alive that the module made.

#include <boost/dll/shared_library.hpp>

#include <memory>
#include <string>

struct KinemoDomainModule;

namespace embedded {

class DomainLibrary {
 public:
  /// @throws "kinemo:host:modules" "CannotOpenModule", "NotADomainModule", "ModuleDoesNotFit"
  explicit DomainLibrary(const std::string& file);
  ~DomainLibrary();
  DomainLibrary(const DomainLibrary&) = delete;
  DomainLibrary& operator=(const DomainLibrary&) = delete;

  const std::string& domain() const { return domain_; }
  /// Absolute, without links.
  const std::string& file() const { return file_; }
  /// Lets the module register what it brings. What it throws passes on, and nothing of it stays registered.
  void load();

 private:
  std::string file_;
  boost::dll::shared_library library_;
  const KinemoDomainModule* module_;
  std::string domain_;
  bool loaded_ = false;
};

}  // namespace embedded
