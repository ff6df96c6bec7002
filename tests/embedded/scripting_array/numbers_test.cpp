#include "platform/scripting_array/scripting_array.hpp"

#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>

namespace {

using kinemo::test::error_of;
using testing::ElementsAre;

class ArrayNumbers : public kinemo::test::NoLeaks {};

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

double stored(cvClassID class_id, double value) {
  cvUniquePtr array(cvCreateNumericArray({1, 2}, class_id));
  cvSetElement(array.get(), 1, value);
  cvUniquePtr scalar(cvCreateNumericArray({1, 1}, class_id));
  cvSetElement(scalar.get(), 0, value);
  EXPECT_EQ(cvGetScalar(scalar.get()), cvGetElement(array.get(), 1)) << "a lone number is as one of many";
  return cvGetElement(array.get(), 1);
}

TEST_F(ArrayNumbers, AreConvertedToTheClassOfTheArray) {
  const struct {
    cvClassID class_id;
    double value, held;
  } cases[] = {
      {cvDOUBLE_CLASS, 0.1, 0.1},
      {cvSINGLE_CLASS, 0.1, 0.1F},
      {cvINT8_CLASS, 127.5, 127},
      {cvINT8_CLASS, -1000, -128},
      {cvINT8_CLASS, -2.5, -3},
      {cvUINT8_CLASS, -0.4, 0},
      {cvUINT8_CLASS, 2.5, 3},
      {cvINT16_CLASS, kInf, 32767},
      {cvUINT16_CLASS, 70000, 65535},
      {cvINT32_CLASS, kNan, 0},
      {cvUINT32_CLASS, 4294967295.0, 4294967295.0},
      {cvINT64_CLASS, -kInf, -0x1p63},
      {cvUINT64_CLASS, 1e30, 0x1p64},
      {cvLOGICAL_CLASS, -3, 1},
      {cvCHAR_CLASS, 65.9, 65},
      {cvCHAR_CLASS, kNan, 0},
      {cvCHAR_CLASS, 1e9, 65535},
  };
  for (const auto& c : cases) EXPECT_EQ(stored(c.class_id, c.value), c.held) << c.class_id << ' ' << c.value;
  EXPECT_EQ(error_of([] { stored(cvLOGICAL_CLASS, kNan); }), "kinemo:scripting:array:NanAsLogical()");
}

TEST_F(ArrayNumbers, BecomeComplexWhenWrittenSo) {
  cvUniquePtr array(cvCreateDoubleMatrix(2, 1));
  cvSetElement(array.get(), 0, 3);
  EXPECT_FALSE(cvIsComplex(array.get()));
  cvSetElement(array.get(), 1, {1, 2});
  EXPECT_TRUE(cvIsComplex(array.get()));
  EXPECT_EQ(cvGetComplexElement(array.get(), 0), std::complex<double>(3, 0));
  EXPECT_EQ(cvGetElement(array.get(), 1), 1) << "the real part";
  EXPECT_EQ(cvGetDoubles(array.get()), nullptr);
  EXPECT_EQ(cvGetWritableDoubles(array.get()), nullptr);

  cvUniquePtr scalar(cvCreateDoubleScalar(4));
  cvUniquePtr copy(cvCreateSharedCopy(scalar.get()));
  cvSetElement(scalar.get(), 0, {4, 1});
  EXPECT_EQ(cvGetComplexElement(scalar.get(), 0), std::complex<double>(4, 1));
  EXPECT_EQ(cvGetComplexElement(copy.get(), 0), std::complex<double>(4, 0));
  cvUniquePtr logical(cvCreateLogicalScalar(true));
  EXPECT_EQ(error_of([&] {
              cvSetElement(logical.get(), 0, {0, 1});
            }),
            "kinemo:scripting:array:ComplexNotHeld(logical)");
}

TEST_F(ArrayNumbers, DoublesOfEveryShapeCanBeReachedDirectly) {
  const double values[] = {1, 2, 3, 4, 5, 6};
  cvUniquePtr matrix(cvCreateDoubleMatrix(2, 3, values));
  EXPECT_EQ(cvGetElement(matrix.get(), 2), 3) << "by columns";
  EXPECT_EQ(cvGetDoubles(matrix.get())[5], 6);
  cvUniquePtr scalar(cvCreateDoubleMatrix(1, 1, values));
  *cvGetWritableDoubles(scalar.get()) += 1;
  EXPECT_EQ(cvGetScalar(scalar.get()), 2);
  cvUniquePtr single(cvCreateNumericArray({1, 2}, cvSINGLE_CLASS));
  EXPECT_EQ(cvGetDoubles(single.get()), nullptr);
  cvUniquePtr empty(cvCreateDoubleMatrix(0, 5, nullptr));
  EXPECT_TRUE(cvIsEmpty(empty.get()));
}

TEST_F(ArrayNumbers, TellTheirClass) {
  const struct {
    cvUniquePtr array;
    std::string name;
    bool numeric;
  } cases[] = {
      {cvUniquePtr(cvCreateDoubleScalar(1)), "double", true},
      {cvUniquePtr(cvCreateNumericArray({2, 2}, cvUINT8_CLASS)), "uint8", true},
      {cvUniquePtr(cvCreateLogicalScalar(true)), "logical", false},
      {cvUniquePtr(cvCreateString("a")), "char", false},
      {cvUniquePtr(cvCreateCellMatrix(0, 0)), "cell", false},
      {cvUniquePtr(cvCreateStructMatrix(1, 1, {})), "struct", false},
      {cvUniquePtr(cvCreateFunctionHandle("@sin", nullptr)), "function_handle", false},
      {cvUniquePtr(cvCreateObject("Gantrel.Parameter")), "Gantrel.Parameter", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(cvGetClassName(c.array.get()), c.name);
    EXPECT_TRUE(cvIsA(c.array.get(), c.name.c_str()));
    EXPECT_FALSE(cvIsA(c.array.get(), "Gantrel"));
    EXPECT_EQ(cvIsNumeric(c.array.get()), c.numeric) << c.name;
    EXPECT_EQ(cvIsA(c.array.get(), "numeric"), c.numeric) << c.name;
    EXPECT_EQ(cvIsChar(c.array.get()), c.name == "char");
    EXPECT_EQ(cvIsLogical(c.array.get()), c.name == "logical");
    EXPECT_EQ(cvIsCell(c.array.get()), c.name == "cell");
    EXPECT_EQ(cvIsStruct(c.array.get()), c.name == "struct");
    EXPECT_FALSE(cvIsComplex(c.array.get()));
  }
  EXPECT_FALSE(cvIsA(cases[0].array.get(), nullptr));
  EXPECT_EQ(error_of([] {
              cvCreateNumericArray({1, 1}, cvCELL_CLASS);
            }),
            "kinemo:scripting:array:NotANumericClass(cell)");
  EXPECT_EQ(error_of([] {
              cvCreateNumericArray({1, 1}, cvLOGICAL_CLASS, true);
            }),
            "kinemo:scripting:array:ComplexNotHeld(logical)");
}

TEST_F(ArrayNumbers, RaiseWhereThereIsNoNumber) {
  cvUniquePtr number(cvCreateDoubleScalar(1));
  cvUniquePtr empty(cvCreateDoubleMatrix(0, 0));
  cvUniquePtr cell(cvCreateCellMatrix(1, 1));
  EXPECT_EQ(error_of([&] { cvGetElement(number.get(), 1); }), "kinemo:scripting:array:IndexOutOfRange(2, 1)");
  EXPECT_EQ(error_of([&] { cvSetElement(number.get(), 1, 0); }), "kinemo:scripting:array:IndexOutOfRange(2, 1)");
  EXPECT_EQ(error_of([&] { cvGetScalar(empty.get()); }), "kinemo:scripting:array:NoElements(1)");
  EXPECT_EQ(error_of([&] { cvGetScalar(cell.get()); }), "kinemo:scripting:array:NotNumeric(cell)");
  EXPECT_EQ(error_of([&] { cvSetElement(cell.get(), 0, 1); }), "kinemo:scripting:array:NotNumeric(cell)");
  EXPECT_EQ(error_of([] { cvGetScalar(nullptr); }), "kinemo:scripting:array:NoArray()");
  EXPECT_EQ(error_of([] { cvSetElement(nullptr, 0, 1); }), "kinemo:scripting:array:NoArray()");
}

TEST_F(ArrayNumbers, TextIsARowOfCodeUnits) {
  cvUniquePtr text(cvCreateString("a\xF0\x9F\x98\x80"));
  EXPECT_THAT(cvGetDimensions(text.get()), ElementsAre(1, 3));
  EXPECT_EQ(cvGetCharacters(text.get()), u"a\U0001F600");
  EXPECT_EQ(cvGetElement(text.get(), 0), 97);
  cvUniquePtr copy(cvCreateSharedCopy(text.get()));
  cvSetElement(copy.get(), 0, 'b');
  EXPECT_EQ(cvGetCharacters(text.get())[0], u'a');
  EXPECT_EQ(cvGetCharacters(copy.get())[0], u'b');
  cvUniquePtr empty(cvCreateUString(u""));
  EXPECT_THAT(cvGetDimensions(empty.get()), ElementsAre(0, 0));
  cvUniquePtr number(cvCreateDoubleScalar(1));
  EXPECT_EQ(error_of([&] { cvGetCharacters(number.get()); }), "kinemo:scripting:array:NotText(double)");
}

TEST_F(ArrayNumbers, ShapesAreNormalisedAndChecked) {
  const auto shape = [](std::vector<std::size_t> dimensions) {
    cvUniquePtr array(cvCreateNumericArray(dimensions, cvDOUBLE_CLASS));
    return cvGetDimensions(array.get());
  };
  EXPECT_THAT(shape({2, 3, 4, 1, 1}), ElementsAre(2, 3, 4));
  EXPECT_THAT(shape({5}), ElementsAre(5, 1));
  EXPECT_THAT(shape({}), ElementsAre(0, 0));
  EXPECT_THAT(shape({1, 1, 1}), ElementsAre(1, 1));
  EXPECT_THAT(shape({1, 1, 0}), ElementsAre(1, 1, 0));
  const std::size_t huge = static_cast<std::size_t>(1) << 40;
  EXPECT_NE(error_of([&] { shape({huge, huge}); }), "");
  EXPECT_NE(error_of([&] { cvCreateCellMatrix(huge, huge); }), "");
  EXPECT_THAT(shape({huge, 0, huge}), ElementsAre(huge, 0, huge));
}

TEST_F(ArrayNumbers, ShapeChangesKeepTheElements) {
  cvUniquePtr array(cvCreateNumericArray({2, 3}, cvINT8_CLASS));
  cvSetElement(array.get(), 4, 9);
  cvUniquePtr copy(cvCreateSharedCopy(array.get()));
  cvSetDimensions(copy.get(), {3, 1, 2});
  EXPECT_THAT(cvGetDimensions(copy.get()), ElementsAre(3, 1, 2));
  EXPECT_THAT(cvGetDimensions(array.get()), ElementsAre(2, 3));
  EXPECT_EQ(cvGetElement(copy.get(), 4), 9);
  EXPECT_EQ(error_of([&] { cvSetDimensions(array.get(), {7, 1}); }), "kinemo:scripting:array:OtherCount(2x3, 7x1)");

  cvUniquePtr empty(cvCreateDoubleMatrix(0, 0));
  cvSetDimensions(empty.get(), {0, 3});
  EXPECT_THAT(cvGetDimensions(empty.get()), ElementsAre(0, 3));
  cvUniquePtr scalar(cvCreateDoubleScalar(8));
  cvSetDimensions(scalar.get(), {1, 1, 1});
  EXPECT_EQ(cvGetScalar(scalar.get()), 8);
}

TEST_F(ArrayNumbers, PermuteMovesElementsWithTheirDimensions) {
  cvUniquePtr array(cvCreateNumericArray({2, 3, 4}, cvDOUBLE_CLASS, true));
  for (std::size_t i = 0; i < 24; ++i) cvSetElement(array.get(), i, {static_cast<double>(i), 1});
  const double order[] = {3, 1, 2};
  const double back[] = {2, 3, 1};
  cvUniquePtr order_array(cvCreateDoubleMatrix(1, 3, order));
  cvUniquePtr back_array(cvCreateDoubleMatrix(1, 3, back));
  cvUniquePtr turned(cvPermute(array.get(), order_array.get()));
  EXPECT_THAT(cvGetDimensions(turned.get()), ElementsAre(4, 2, 3));
  // Element (k, i, j) of the result is (i, j, k) of the array.
  EXPECT_EQ(cvGetElement(turned.get(), 3 + 4 * (1 + 2 * 2)), 1 + 2 * (2 + 3 * 3));
  cvUniquePtr again(cvPermute(turned.get(), back_array.get()));
  EXPECT_TRUE(cvAreMatricesEqual(array.get(), again.get()));

  cvUniquePtr text(cvCreateString("ab"));
  const double swapped[] = {2, 1};
  cvUniquePtr swap(cvCreateDoubleMatrix(1, 2, swapped));
  cvUniquePtr column(cvPermute(text.get(), swap.get()));
  EXPECT_THAT(cvGetDimensions(column.get()), ElementsAre(2, 1));
  EXPECT_EQ(cvGetCharacters(column.get()), u"ab");
  cvUniquePtr scalar(cvCreateDoubleScalar(5));
  cvUniquePtr same(cvPermute(scalar.get(), swap.get()));
  EXPECT_EQ(cvGetScalar(same.get()), 5);

  for (const std::vector<double>& bad : {std::vector<double>{1, 2}, {1, 1, 2}, {0, 1, 2}, {1, 2, 4}, {1, 2, 2.5}}) {
    cvUniquePtr wrong(cvCreateDoubleMatrix(1, bad.size(), bad.data()));
    EXPECT_EQ(error_of([&] { cvPermute(array.get(), wrong.get()); }), "kinemo:scripting:array:InvalidPermutation(3)");
  }
}

}  // namespace
