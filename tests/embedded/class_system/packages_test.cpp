#include "embedded/class_system/packages.hpp"

#include "embedded/scripting_runtime/help_pages.hpp"
#include "platform/class_system/package_info.hpp"
#include "tests/embedded/class_system/counter_class.hpp"

#include <gmock/gmock.h>

namespace embedded::class_system::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

/// Gives back the sum of two numbers; counts its objects.
class Sum : public ccos::COSMethodInfo {
 public:
  explicit Sum(const char* name, bool locked = false)
      : name_(name), locked_(locked), signature_(ccos::COSMethodSignature::createMethodSignature()) {
    signature_->addOptionalInputType("double");
    signature_->addInputType("double");  // given inputs come first, in whichever order they are told
    signature_->addOutputType("any");
    ++alive;
  }
  ~Sum() override { --alive; }
  const char* getName() const override { return name_; }
  const char* getDetailedDescription() const override { return "Adds numbers."; }
  bool isLocked() const override { return locked_; }
  const ccos::COSMethodSignature* getMethodSignature() const override { return signature_.get(); }
  void invoke(const ccos::COSClient*, int& nOut, ccos::COSValue* outputs, int nIn,
              const ccos::COSValue* inputs) const override {
    outputs[0] = cvCreateDoubleScalar(cvGetScalar(inputs[0]) + (nIn > 1 ? cvGetScalar(inputs[1]) : 0));
    nOut = 1;
  }

  static inline int alive = 0;

 private:
  const char* name_;
  bool locked_;
  std::unique_ptr<ccos::COSMethodSignature> signature_;
};

struct TopTag {
  static const char* name() { return "packages_top"; }
};
struct TimesTag {
  static const char* name() {
    ++asked;
    return "packages_times";
  }
  static inline int asked = 0;
};
struct CountedTag {
  static const char* name() { return "packages_counted"; }
};
struct InnerTag {
  static const char* name() { return "packages_inner"; }
};

/// A package that can load things when they are asked for: the method late and the class OnDemand.
class LoadingInfo : public ccos::COSPackageInfo {
 public:
  explicit LoadingInfo(const char* name) : name_(name) {}
  const char* getName() const override { return name_; }
  void setPackage(ccos::COSPackage* its_package) override { package = its_package; }
  bool attemptToLoadFunction(const ccos::COSNameID& name) override {
    asked.emplace_back(name.text());
    if (name != "late") return false;
    package->addMethod(new Sum("late"));
    return true;
  }
  bool attemptToLoadClass(const ccos::COSNameID& name) override {
    if (name != "OnDemand") return false;
    add_class(class_around<Counter>(std::string(name_) + ".OnDemand"));
    return true;
  }
  bool isLocked() const override { return locked; }

  ccos::COSPackage* package = nullptr;
  bool locked = false;
  std::vector<std::string> asked;

 private:
  const char* name_;
};

class Packages : public ClassTest {
 protected:
  /// A new top-level package, which stays; so each test has one of its own.
  static LoadingInfo& added(const char* name) {
    auto* info = new LoadingInfo(name);
    static std::vector<LoadingInfo*> all;
    all.push_back(info);
    ccos::COSPackage::addPackage(info);
    return *info;
  }
};

TEST_F(Packages, AreTopLevelOnlyWithoutAParent) {
  using Top = kmf::ccos::PackageInfo<TopTag>;
  using Inner = kmf::ccos::PackageInfo<InnerTag>;
  const int before = Sum::alive;
  Top::add(boost::shared_ptr<ccos::COSMethodInfo>(new Sum("sum")));
  Inner::ensure(find_package("packages_top"));
  Inner::ensure(nullptr);  // there is one, which keeps its parent
  for (int i = 0; i < 2; ++i) Inner::add(boost::shared_ptr<ccos::COSMethodInfo>(new Sum("sum")));
  EXPECT_EQ(find_package("packages_top.packages_inner")->getPath(), "packages_top.packages_inner");
  EXPECT_EQ(find_package("packages_inner"), nullptr);
  EXPECT_THAT(scripting_runtime::package_contents("packages_top"), ElementsAre("packages_inner", "sum"));
  EXPECT_THAT(scripting_runtime::package_contents(""), Contains("packages_top"));
  EXPECT_THAT(scripting_runtime::package_contents(""), Not(Contains("packages_inner")));
  EXPECT_EQ(Sum::alive, before + 2) << "a method that was replaced is ended";
  EXPECT_EQ(value_of("packages_top.packages_inner.sum(2, 3) + packages_top.sum(1)"), "6");
}

/// A parent that counts what is added to it.
class CountingParent : public ccos::COSPackage {
 public:
  explicit CountingParent(ccos::COSPackage& child) : child_(&child) {}
  void addSubPackage(ccos::COSPackageInfo* info) override {
    ++added;
    info->setPackage(child_);
  }
  void addMethod(ccos::COSMethodInfo*) override { ADD_FAILURE() << "methods belong into the package"; }
  std::string getPath() const override { return "counting"; }

  int added = 0;

 private:
  ccos::COSPackage* child_;
};

TEST_F(Packages, AreAddedToTheirParentWithEachMethodButOnceAtTheTop) {
  using Counted = kmf::ccos::PackageInfo<CountedTag>;
  using Times = kmf::ccos::PackageInfo<TimesTag>;
  static CountingParent parent(*added("packages_child").package);
  Counted::ensure(&parent);
  EXPECT_EQ(parent.added, 0);
  for (const char* name : {"a", "b"}) Counted::add(boost::shared_ptr<ccos::COSMethodInfo>(new Sum(name)));
  EXPECT_EQ(parent.added, 2);
  EXPECT_EQ(value_of("packages_child.a(1) + packages_child.b(2)"), "3");
  Times::add(boost::shared_ptr<ccos::COSMethodInfo>(new Sum("a")));
  const int asked = TimesTag::asked;
  Times::add(boost::shared_ptr<ccos::COSMethodInfo>(new Sum("b")));
  EXPECT_EQ(TimesTag::asked, asked) << "the class system has no reason to ask for the name again";
  EXPECT_EQ(value_of("packages_times.a(1) + packages_times.b(2)"), "3");
}

TEST_F(Packages, LoadWhatIsAskedFor) {
  const LoadingInfo& info = added("packages_loading");
  EXPECT_EQ(value_of("packages_loading.late(4)"), "4");
  EXPECT_EQ(value_of("packages_loading.late(4)"), "4");
  EXPECT_THAT(info.asked, ElementsAre("late"));
  EXPECT_EQ(value_of("class(packages_loading.OnDemand())"), "'packages_loading.OnDemand'");
  EXPECT_EQ(raised([] { ccos::COSClass::getClass("packages_loading.Never"); }),
            "kinemo:scripting:classes:ClassNotLoaded(packages_loading.Never)");
}

TEST_F(Packages, CanBeLockedAsCanTheirMethods) {
  LoadingInfo& info = added("packages_locked");
  const int before = Sum::alive;
  info.package->addMethod(new Sum("fixed", true));
  EXPECT_EQ(raised([&] { info.package->addMethod(new Sum("fixed")); }),
            "kinemo:scripting:classes:MethodLocked(fixed, packages_locked)");
  info.locked = true;
  EXPECT_EQ(raised([&] { info.package->addMethod(new Sum("more")); }),
            "kinemo:scripting:classes:PackageLocked(packages_locked)");
  info.locked = false;
  EXPECT_EQ(Sum::alive, before + 1);
}

/// As Sum, but its author keeps it: in tests for the length of the process, since packages stay.
class KeptSum : public Sum {
 public:
  using Sum::Sum;
  bool isDestructible() const override { return false; }
};

TEST_F(Packages, MethodsThatTheirAuthorsKeepAreNeverEnded) {
  LoadingInfo& info = added("packages_keeping");
  const int before = Sum::alive;
  static KeptSum locked("fixed", true);
  static KeptSum replaced("free");
  static KeptSum refused("fixed");
  info.package->addMethod(&locked);
  info.package->addMethod(&replaced);
  info.package->addMethod(new Sum("free"));
  EXPECT_EQ(raised([&] { info.package->addMethod(&refused); }),
            "kinemo:scripting:classes:MethodLocked(fixed, packages_keeping)");
  info.locked = true;
  EXPECT_EQ(raised([&] { info.package->addMethod(&refused); }),
            "kinemo:scripting:classes:PackageLocked(packages_keeping)");
  EXPECT_EQ(Sum::alive, before + 4);
  EXPECT_EQ(value_of("packages_keeping.fixed(1, 2)"), "3");
  info.locked = false;
}

/// Puts another method in its own place while it runs.
class SelfReplacing : public Sum {
 public:
  SelfReplacing(const char* name, ccos::COSPackage& its_package) : Sum(name), package_(&its_package) {}
  void invoke(const ccos::COSClient* client, int& nOut, ccos::COSValue* outputs, int nIn,
              const ccos::COSValue* inputs) const override {
    const int before = alive;
    package_->addMethod(new Sum(getName()));
    EXPECT_EQ(alive, before + 1);
    Sum::invoke(client, nOut, outputs, nIn, inputs);
  }

 private:
  ccos::COSPackage* package_;
};

TEST_F(Packages, AMethodMayReplaceItselfWhileItRuns) {
  ccos::COSPackage& own = *added("packages_replacing").package;
  const int before = Sum::alive;
  own.addMethod(new SelfReplacing("f", own));
  EXPECT_EQ(value_of("packages_replacing.f(1) + packages_replacing.f(2)"), "3");
  EXPECT_EQ(Sum::alive, before + 1);
}

TEST_F(Packages, UnknownNamesTellTheNearest) {
  added("packages_known");
  EXPECT_EQ(value_of("packages_known.late(1)"), "1");
  EXPECT_EQ(error_of("packages_known.lata(1)"), "NotInPackage(lata, packages_known) NearestName(late)");
  EXPECT_EQ(error_of("packages_known.zzz"), "NotInPackage(zzz, packages_known)");
  EXPECT_EQ(error_of("packages_known.zzz.late(1)"), "NotInPackage(zzz, packages_known)");
  EXPECT_EQ(error_of("packages_known.late.more(1)"), "classes:TooFewInputs(packages_known.late, 0, 1)");
  EXPECT_EQ(value_of("class(packages_known.OnDemand)"), "'packages_known.OnDemand'");
  EXPECT_EQ(error_of("packages_known.OnDemand.none(1)"), "NoSuchMethod(none, packages_known.OnDemand)");
  EXPECT_EQ(error_of("packages_known + 1"), "PackageIsNoValue(packages_known, OnDemand, late)");
}

TEST_F(Packages, AVariableHidesThem) {
  added("packages_hidden");
  set("packages_hidden", "struct('late', 7)");
  EXPECT_EQ(value_of("packages_hidden.late"), "7");
}

TEST_F(Packages, HelpHasWhatTheAuthorOfAMethodTells) {
  added("packages_helped");
  const std::string sum = "packages_helped.late";
  EXPECT_EQ(scripting_runtime::help_text(sum), sum + ": Adds numbers.");
  scripting_runtime::set_help(sum, {"s = late(x)", "A sum.", "Of doubles."});
  EXPECT_EQ(scripting_runtime::help_text(sum), sum + ": A sum.\n  s = late(x)\nAdds numbers.\nOf doubles.");
  EXPECT_THAT(raised([] { scripting_runtime::help_text("packages_helped.none"); }), testing::HasSubstr(":NoHelp("));
  EXPECT_EQ(scripting_runtime::help_text("packages_helped"), "packages_helped: A package.\nIn it:\n  late  A sum.");
  EXPECT_THAT(scripting_runtime::methods_in("packages_helped"), ElementsAre("late"));
  EXPECT_THAT(raised([] { scripting_runtime::methods_in("packages_helpd"); }), testing::HasSubstr(":NoMethods("));
}

TEST_F(Packages, CallsAreHeldAgainstTheSignature) {
  added("packages_called");
  const std::string sum = "packages_called.late";
  EXPECT_EQ(error_of(sum + "()"), "classes:TooFewInputs(packages_called.late, 0, 1)");
  EXPECT_EQ(error_of(sum + "(1, 2, 3)"), "classes:TooManyInputs(packages_called.late, 3, 2)");
  EXPECT_EQ(error_of(sum + "(1, 'a')"), "classes:InputType(packages_called.late, 2, double, char)");
}

}  // namespace
}  // namespace embedded::class_system::test
