#include "platform/scripting_array/scripting_array.hpp"

#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include <functional>

namespace {

using kinemo::test::error_of;

class ArrayLifetime : public kinemo::test::NoLeaks {
 protected:
  std::size_t alive() const { return cvLiveArrayCount() - before_; }

 private:
  std::size_t before_ = cvLiveArrayCount();
};

TEST_F(ArrayLifetime, CountIncludesInnerArraysAndCopies) {
  cvUniquePtr cell(cvCreateCellMatrix(1, 3));
  EXPECT_EQ(alive(), 1U) << "empty places are no arrays";
  cvSetCell(cell.get(), 0, cvCreateString("a"));
  EXPECT_EQ(alive(), 2U);
  cvUniquePtr copy(cvCreateSharedCopy(cell.get()));
  EXPECT_EQ(alive(), 3U) << "contents are shared";
  cvSetCell(copy.get(), 1, cvCreateDoubleScalar(1));
  EXPECT_EQ(alive(), 5U) << "the written copy has its own contents";
  cvSetCell(copy.get(), 0, nullptr);
  EXPECT_EQ(alive(), 4U);
  cvDestroyArray(nullptr);
}

TEST_F(ArrayLifetime, SharedCopySharesUntilWritten) {
  cvUniquePtr a(cvCreateDoubleMatrix(1000, 1000));
  cvUniquePtr b(cvCreateSharedCopy(a.get()));
  EXPECT_EQ(cvGetDoubles(a.get()), cvGetDoubles(b.get()));
  cvGetWritableDoubles(b.get())[0] = 1;
  EXPECT_NE(cvGetDoubles(a.get()), cvGetDoubles(b.get()));
  EXPECT_EQ(cvGetElement(a.get(), 0), 0);
  const double* const own = cvGetDoubles(b.get());
  EXPECT_EQ(cvGetWritableDoubles(b.get()), own) << "unshared contents are written in place";
}

TEST_F(ArrayLifetime, WritingToACopyLeavesTheOtherAtEveryDepth) {
  cvUniquePtr outer(cvCreateCellMatrix(1, 1));
  cvSetCell(outer.get(), 0, cvCreateStructMatrix(1, 1, {"f"}));
  cvUniquePtr copy(cvDuplicateArray(outer.get()));
  cvArray_tag* inner = cvDuplicateArray(cvGetCell(copy.get(), 0));
  cvSetField(inner, 0, "f", cvCreateDoubleScalar(7));
  cvSetCell(copy.get(), 0, inner);
  EXPECT_TRUE(cvIsEmpty(cvGetField(cvGetCell(outer.get(), 0), 0, "f")));
  EXPECT_EQ(cvGetScalar(cvGetField(cvGetCell(copy.get(), 0), 0, "f")), 7);
}

TEST_F(ArrayLifetime, ClosingAScopeEndsWhatIsLeftInIt) {
  const int outer = cvOpenScope();
  cvUniquePtr kept(cvCreateString("kept"));
  cvSetArrayScope(kept.get(), 0);
  const int inner = cvOpenScope();
  EXPECT_EQ(inner, outer + 1);
  cvArray_tag* const handed_out = cvCreateDoubleScalar(1);
  EXPECT_EQ(cvGetArrayScope(handed_out), inner);
  cvCreateSharedCopy(handed_out);
  cvDestroyArray(cvCreateDoubleScalar(2));
  cvUniquePtr cell(cvCreateCellMatrix(1, 1));
  cvSetArrayScope(cell.get(), 0);
  cvSetCell(cell.get(), 0, cvCreateDoubleScalar(3));  // leaves the scope by that
  cvSetArrayScope(handed_out, outer);
  cvCloseScope(inner);
  EXPECT_EQ(alive(), 4U) << "the handed out, the kept, the cell and its element";
  cvCloseScope(outer);
  EXPECT_EQ(alive(), 3U);
  EXPECT_EQ(cvGetArrayScope(kept.get()), 0);
  cvUniquePtr late(cvCreateDoubleScalar(0));
  EXPECT_EQ(cvGetArrayScope(late.get()), 0);
}

TEST_F(ArrayLifetime, LocalScopeIsTheInnermostOpenOne) {
  cvUniquePtr outside(cvCreateDoubleScalar(1));
  gtsvSetLocalScope(outside.get());
  EXPECT_EQ(cvGetArrayScope(outside.get()), 0);
  const int outer = cvOpenScope();
  gtsvSetLocalScope(outside.get());
  EXPECT_EQ(cvGetArrayScope(outside.get()), outer);
  const int inner = cvOpenScope();
  gtsvSetLocalScope(outside.release());
  cvCloseScope(inner);
  EXPECT_EQ(alive(), 0U);
  cvCloseScope(outer);
}

TEST_F(ArrayLifetime, ClosingAnOuterScopeClosesTheInnerOnes) {
  const int outer = cvOpenScope();
  const int inner = cvOpenScope();
  cvUniquePtr array(cvCreateDoubleScalar(1));
  cvSetArrayScope(array.get(), 0);
  cvCreateDoubleScalar(2);
  cvCloseScope(outer);
  cvCloseScope(inner);  // nothing any more
  cvCloseScope(0);
  EXPECT_EQ(alive(), 1U);
  EXPECT_EQ(error_of([&] { cvSetArrayScope(array.get(), inner); }), "kinemo:scripting:array:ScopeNotOpen(2, 0)");
  EXPECT_EQ(error_of([&] { cvSetArrayScope(array.get(), -1); }), "kinemo:scripting:array:ScopeNotOpen(-1, 0)");
}

TEST_F(ArrayLifetime, DeepNestingEndsWithoutRecursion) {
  cvUniquePtr chain(cvCreateDoubleScalar(1));
  for (int i = 0; i < 300000; ++i) {
    cvUniquePtr outer(i % 2 ? cvCreateCellMatrix(1, 1) : cvCreateObject("Box"));
    if (i % 2) {
      cvSetCell(outer.get(), 0, chain.release());
    } else {
      cvSetProperty(outer.get(), 0, "Inner", chain.release());
    }
    chain = std::move(outer);
  }
  EXPECT_EQ(alive(), 300001U);
  cvUniquePtr copy(cvDuplicateArray(chain.get()));
  EXPECT_TRUE(cvAreMatricesEqual(chain.get(), copy.get()));
}

// What stands behind an object may hold arrays itself, to any depth.
TEST_F(ArrayLifetime, NativeDataEndsItsOwnArrays) {
  struct Holder {
    cvUniquePtr array;
  };
  cvUniquePtr chain(cvCreateDoubleScalar(1));
  for (int i = 0; i < 100000; ++i) {
    auto holder = std::make_shared<Holder>();
    holder->array = std::move(chain);
    chain.reset(cvCreateFunctionHandle("@f", holder));
  }
  const std::weak_ptr<void> native = cvGetNative(chain.get());
  cvUniquePtr copy(cvCreateSharedCopy(chain.get()));
  chain.reset();
  EXPECT_FALSE(native.expired()) << "a copy keeps it";
  copy.reset();
  EXPECT_TRUE(native.expired());
}

TEST_F(ArrayLifetime, RefusedValuesEndAllTheSame) {
  cvUniquePtr cell(cvCreateCellMatrix(1, 1));
  cvUniquePtr number(cvCreateDoubleScalar(1));
  EXPECT_NE(error_of([&] { cvSetCell(cell.get(), 1, cvCreateDoubleScalar(1)); }), "");
  EXPECT_NE(error_of([&] { cvSetField(number.get(), 0, "f", cvCreateDoubleScalar(1)); }), "");
  EXPECT_NE(error_of([&] { cvSetProperty(cell.get(), 0, "p", cvCreateDoubleScalar(1)); }), "");
  EXPECT_EQ(error_of([&] { cvSetCell(cell.get(), 0, cell.get()); }), "kinemo:scripting:array:OwnElement(cell)");
  EXPECT_EQ(alive(), 2U);
}

// The fixture itself: what it must not overlook.
TEST(LeakGuard, FailsOnArraysAndWarningsLeftBehind) {
  static cvArray_tag* leaked = nullptr;
  EXPECT_NONFATAL_FAILURE(
      {
        kinemo::test::LeakGuard guard;
        leaked = cvCreateDoubleScalar(1);
      },
      "scripting arrays");
  cvDestroyArray(leaked);
  {
    kinemo::test::LeakGuard guard;
    guard.allow_kept_arrays(1);
    leaked = cvCreateDoubleScalar(1);
  }
  cvDestroyArray(leaked);
}

}  // namespace
