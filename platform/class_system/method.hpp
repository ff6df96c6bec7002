#pragma once

// Methods: their signatures, and what their authors tell of them.

#include "platform/class_system/name_id.hpp"
#include "platform/foundation/export.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <cstddef>
#include <vector>

namespace ccos {

/// Who calls a method. Only the class system makes clients; one may be null where nobody in particular calls.
class COSClient;

/// An input or output of a method. Inputs are borrowed, outputs belong to who called.
using COSValue = cvArray_tag*;

enum class COSMemberAccess { Public, Protected, Private };

/// The types that a method takes and gives. The caller's inputs are held against it before the method runs. What it
/// holds is the class system's own memory, whoever fills and ends it.
class KINEMO_PLATFORM_API COSMethodSignature {
 public:
  COSMethodSignature();
  COSMethodSignature(const COSMethodSignature&) = delete;
  COSMethodSignature& operator=(const COSMethodSignature&) = delete;
  ~COSMethodSignature();
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) noexcept;

  /// An empty one, which the caller owns. Ended by `delete`.
  static COSMethodSignature* createMethodSignature();

  void addInputType(const COSNameID& type);
  /// An input that may be left out, behind all that must be given.
  void addOptionalInputType(const COSNameID& type);
  /// Any number of further inputs of this type.
  void setFurtherInputType(const COSNameID& type);
  void addOutputType(const COSNameID& type);

  std::size_t leastInputs() const { return required_; }
  bool takesFurtherInputs() const { return !further_.empty(); }
  /// Without the further ones.
  std::size_t numInputs() const { return inputs_.size(); }
  /// Of an input that the signature takes.
  const COSNameID& inputType(std::size_t i) const { return i < inputs_.size() ? inputs_[i] : further_.front(); }
  std::size_t numOutputs() const { return outputs_.size(); }
  const COSNameID& outputType(std::size_t i) const { return outputs_[i]; }

 private:
  std::vector<COSNameID> inputs_;
  std::vector<COSNameID> outputs_;
  std::vector<COSNameID> further_;  ///< none or one
  std::size_t required_ = 0;
};

/// What its author tells of a method. Made with `new` in the class system's own memory; a package or class that takes
/// one over ends it where `isDestructible` says so. Texts live as long as the info.
class KINEMO_PLATFORM_API COSMethodInfo {
 public:
  COSMethodInfo() = default;
  COSMethodInfo(const COSMethodInfo&) = delete;
  COSMethodInfo& operator=(const COSMethodInfo&) = delete;
  static void* operator new(std::size_t size);
  static void operator delete(void* memory) noexcept;

  virtual ~COSMethodInfo();
  virtual const char* getName() const = 0;
  virtual const char* getDescription() const;          ///< one sentence; the base gives none
  virtual const char* getDetailedDescription() const;  ///< part of its help; the base gives none
  virtual COSMemberAccess getMemberAccess() const;     ///< the base: public
  virtual const COSNameID* getExtendedAccess() const;  ///< a class that may call it besides; the base: null
  /// Never null; lives as long as the info.
  virtual const COSMethodSignature* getMethodSignature() const = 0;
  /// Runs the method on inputs that fit the signature. `nOut` says how many outputs are wanted (there is room for one
  /// where it is 0), and on return how many were written. Errors pass as kmf::Exception; outputs that were written
  /// before are released by the caller.
  virtual void invoke(const COSClient* client, int& nOut, COSValue* outputs, int nIn, const COSValue* inputs) const = 0;
  virtual bool isFirstArgDispatch() const;               ///< whether the first input's class chooses it; base: false
  virtual bool isStatic() const;                         ///< callable without an object; base: true
  virtual bool isAbstract() const;                       ///< base: false
  virtual bool isSealed() const;                         ///< base: false
  virtual bool isVisible() const;                        ///< listed for users; base: true
  virtual bool isDestructible() const;                   ///< whether who takes it over ends it; base: true
  virtual bool isLocked() const;                         ///< whether it can't be replaced; base: false
  virtual bool isExplicit() const;                       ///< base: false
  virtual bool doesMethodOverrideAllSignatures() const;  ///< base: false
};

}  // namespace ccos
