#include "platform/class_system/class_system.hpp"
#include "platform/class_system/method_info.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace ccos {
namespace {

/// The answers of a method info, flags in the order of their slots.
struct Answers {
  std::string texts;
  COSMemberAccess access;
  const COSNameID* extended;
  const COSMethodSignature* signature;
  std::vector<bool> flags;
};

Answers answers_of(const COSMethodInfo& info) {
  return {std::string(info.getName()) + '|' + info.getDescription() + '|' + info.getDetailedDescription(),
          info.getMemberAccess(),
          info.getExtendedAccess(),
          info.getMethodSignature(),
          {info.isFirstArgDispatch(), info.isStatic(), info.isAbstract(), info.isSealed(), info.isVisible(),
           info.isDestructible(), info.isLocked(), info.isExplicit(), info.doesMethodOverrideAllSignatures()}};
}

/// Answers nothing as the base does, but for one flag; counts its calls and its objects.
class Odd : public COSMethodInfo {
 public:
  explicit Odd(std::size_t plain) : plain_(plain) { ++alive; }
  ~Odd() override { --alive; }
  const char* getName() const override { return "odd"; }
  const char* getDescription() const override { return "one"; }
  const char* getDetailedDescription() const override { return "more"; }
  COSMemberAccess getMemberAccess() const override { return COSMemberAccess::Private; }
  const COSNameID* getExtendedAccess() const override { return &friend_; }
  const COSMethodSignature* getMethodSignature() const override { return &signature_; }
  void invoke(const COSClient*, int& nOut, COSValue*, int nIn, const COSValue*) const override { nOut += 10 * nIn; }
  bool isFirstArgDispatch() const override { return flag(0, COSMethodInfo::isFirstArgDispatch()); }
  bool isStatic() const override { return flag(1, COSMethodInfo::isStatic()); }
  bool isAbstract() const override { return flag(2, COSMethodInfo::isAbstract()); }
  bool isSealed() const override { return flag(3, COSMethodInfo::isSealed()); }
  bool isVisible() const override { return flag(4, COSMethodInfo::isVisible()); }
  bool isDestructible() const override { return flag(5, COSMethodInfo::isDestructible()); }
  bool isLocked() const override { return flag(6, COSMethodInfo::isLocked()); }
  bool isExplicit() const override { return flag(7, COSMethodInfo::isExplicit()); }
  bool doesMethodOverrideAllSignatures() const override {
    return flag(8, COSMethodInfo::doesMethodOverrideAllSignatures());
  }

  static inline int alive = 0;

 private:
  bool flag(std::size_t i, bool of_base) const { return i == plain_ ? of_base : !of_base; }

  std::size_t plain_;
  COSMethodSignature signature_;
  COSNameID friend_{"test.Friend"};
};

TEST(MethodInfos, WrappersForwardEveryOperation) {
  for (std::size_t plain = 0; plain < 9; ++plain) {
    const boost::shared_ptr<COSMethodInfo> odd(new Odd(plain));
    const kmf::ccos::MethodInfo wrapper(odd);
    const Answers own = answers_of(*odd);
    const Answers forwarded = answers_of(wrapper);
    EXPECT_EQ(forwarded.texts, "odd|one|more");
    EXPECT_EQ(forwarded.access, own.access);
    EXPECT_EQ(forwarded.extended, own.extended);
    EXPECT_EQ(forwarded.signature, own.signature);
    EXPECT_EQ(forwarded.flags, own.flags) << plain;
    int outputs = 1;
    wrapper.invoke(nullptr, outputs, nullptr, 2, nullptr);
    EXPECT_EQ(outputs, 21);
  }
  EXPECT_EQ(Odd::alive, 0);
}

TEST(MethodInfos, WrappersShareWhatTheyForwardTo) {
  boost::shared_ptr<COSMethodInfo> odd(new Odd(0));
  auto wrapper = std::make_unique<kmf::ccos::MethodInfo>(odd);
  odd.reset();
  EXPECT_STREQ(wrapper->getName(), "odd");
  wrapper.reset();
  EXPECT_EQ(Odd::alive, 0);
}

TEST(MethodSignatures, KeepWhatMustBeGivenInFront) {
  const std::unique_ptr<COSMethodSignature> signature(COSMethodSignature::createMethodSignature());
  EXPECT_EQ(signature->leastInputs() + signature->numInputs() + signature->numOutputs(), 0U);
  signature->addInputType("char");
  signature->addOptionalInputType("double");
  signature->addInputType("cell");
  signature->setFurtherInputType("logical");
  EXPECT_EQ(signature->leastInputs(), 2U);
  EXPECT_EQ(signature->numInputs(), 3U);
  const std::vector<const char*> types{"char", "cell", "double", "logical", "logical"};
  for (std::size_t i = 0; i < types.size(); ++i) EXPECT_EQ(signature->inputType(i), types[i]) << i;
}

}  // namespace
}  // namespace ccos
