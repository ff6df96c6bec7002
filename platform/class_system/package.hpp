#pragma once

// Packages, and what their authors tell of them.

#include "platform/class_system/name_id.hpp"
#include "platform/foundation/export.hpp"

#include <cstddef>
#include <string>

namespace ccos {

class COSMethodInfo;
class COSMethodSelector;
class COSPackageInfo;

/// A room in the tree of packages. The class system owns it, and it stays.
class KINEMO_PLATFORM_API COSPackage {
 public:
  /// Makes a top-level package and hands it to `info->setPackage`. Where there is one of that name, that one is handed
  /// over: several libraries may bring parts of one package, and each info is asked for what the package doesn't hold
  /// yet. The info must live as long as the process.
  static void addPackage(COSPackageInfo* info);

  /// The same below this package. Adding an info again changes nothing.
  virtual void addSubPackage(COSPackageInfo* info) = 0;
  /// Takes over `method`, in place of one of the same name. Where it fails, `method` is ended as well, if its
  /// `isDestructible` says so. Calls that are running keep the method that they run. @throws "MethodLocked" (method,
  /// package) when that one, or "PackageLocked" (package) when the package can't be changed
  virtual void addMethod(COSMethodInfo* method) = 0;
  /// From the top, joined by full stops: "kinemo.gl".
  virtual std::string getPath() const = 0;

 protected:
  COSPackage() = default;
  COSPackage(const COSPackage&) = delete;
  COSPackage& operator=(const COSPackage&) = delete;
  virtual ~COSPackage();
};

/// What its author tells of a package. The four "attempt" operations are asked for a name that the package doesn't
/// hold; they make it known and return true, or return false.
class KINEMO_PLATFORM_API COSPackageInfo {
 public:
  COSPackageInfo() = default;
  COSPackageInfo(const COSPackageInfo&) = delete;
  COSPackageInfo& operator=(const COSPackageInfo&) = delete;
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) noexcept;

  virtual ~COSPackageInfo();
  virtual const char* getName() const = 0;  ///< without those of the packages around it
  virtual const char* getDescription() const;
  virtual const char* getDetailedDescription() const;
  virtual bool attemptToLoadSubPackage(const COSNameID& name);
  virtual bool attemptToLoadClass(const COSNameID& name);
  virtual bool attemptToLoadFunction(const COSNameID& name);
  virtual bool attemptToLoadType(const COSNameID& name);
  virtual const COSMethodSelector* getMethodSelector() const;  ///< the base: null, the class system's own choice
  /// Told the package that this info stands for.
  virtual void setPackage(COSPackage* package);
  virtual bool isDestructible() const;  ///< base: false, its author keeps it
  virtual bool isLocked() const;        ///< whether nothing may be added; base: false
  virtual const char* getH1Line() const;
  virtual const char* getHelpText() const;
};

}  // namespace ccos
