#pragma once

#include "embedded/class_system/classes.hpp"

namespace embedded::class_system {

/// A method of a class whose body is a function of ours.
class NativeMethod : public ccos::COSMethodInfo {
 public:
  /// Both must outlive the method. Its inputs are an object of the class, and those of the definition.
  NativeMethod(const MethodDefinition& definition, const std::string* class_name);

  const char* getName() const override { return definition_->name.c_str(); }
  const char* getDescription() const override { return definition_->help.summary.c_str(); }
  const char* getDetailedDescription() const override { return definition_->help.details.c_str(); }
  const ccos::COSMethodSignature* getMethodSignature() const override { return signature_.get(); }
  void invoke(const ccos::COSClient* client, int& nOut, ccos::COSValue* outputs, int nIn,
              const ccos::COSValue* inputs) const override;
  bool isFirstArgDispatch() const override { return true; }
  bool isStatic() const override { return false; }

 private:
  const MethodDefinition* definition_;
  std::unique_ptr<ccos::COSMethodSignature> signature_;
};

}  // namespace embedded::class_system
