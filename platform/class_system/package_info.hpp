#pragma once

#include "platform/class_system/method_info.hpp"
#include "platform/class_system/package.hpp"

#include <boost/shared_ptr.hpp>

#include <memory>

namespace kmf::ccos {

/// The info of a package that methods are added to while a library is loaded. `Tag` is an empty type that names the
/// package: `static const char* name()`. There is one info for each tag in the process, made on first use and never
/// released, since the class system keeps referring to it.
template <class Tag>
class PackageInfo : public ::ccos::COSPackageInfo {
 public:
  /// The package step: makes the one info, below `parent` unless that is null. Changes nothing where there is one.
  static void ensure(::ccos::COSPackage* parent) {
    if (!instance()) instance() = new PackageInfo(parent);
  }

  /// The method step: adds a method to the package, which becomes a package below its parent or at the top by that.
  static void add(const boost::shared_ptr<::ccos::COSMethodInfo>& method) {
    std::unique_ptr<MethodInfo> wrapped(new MethodInfo(method));
    ensure(nullptr);
    PackageInfo& info = *instance();
    if (info.parent_) {
      info.parent_->addSubPackage(&info);
    } else if (!info.package_) {
      ::ccos::COSPackage::addPackage(&info);
    }
    info.package_->addMethod(wrapped.release());
  }

  ~PackageInfo() override = default;
  const char* getName() const override { return Tag::name(); }
  void setPackage(::ccos::COSPackage* package) override { package_ = package; }

 private:
  explicit PackageInfo(::ccos::COSPackage* parent) : parent_(parent) {}

  static PackageInfo*& instance() {
    static PackageInfo* only = nullptr;
    return only;
  }

  ::ccos::COSPackage* package_ = nullptr;  ///< told by the class system
  ::ccos::COSPackage* parent_;
};

}  // namespace kmf::ccos
