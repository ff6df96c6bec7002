#include "platform/scripting_array/scripting_array.hpp"

#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

#include <gmock/gmock.h>

#include <limits>

namespace {

using kinemo::test::error_of;
using testing::ElementsAre;

class ArrayContainers : public kinemo::test::NoLeaks {};

TEST_F(ArrayContainers, CellsLendTheirElements) {
  cvUniquePtr cell(cvCreateCellMatrix(2, 2));
  EXPECT_TRUE(cvIsEmpty(cvGetCell(cell.get(), 3))) << "an empty array where nothing was put";
  cvSetCell(cell.get(), 3, cvCreateDoubleScalar(1));
  cvSetCell(cell.get(), 3, cvCreateDoubleScalar(2));
  EXPECT_EQ(cvGetScalar(cvGetCell(cell.get(), 3)), 2);
  cvUniquePtr taken(cvDuplicateArray(cvGetCell(cell.get(), 3)));
  cell.reset();
  EXPECT_EQ(cvGetScalar(taken.get()), 2);
}

TEST_F(ArrayContainers, FieldsAreAddedInOrderForAllElements) {
  cvUniquePtr array(cvCreateStructMatrix(1, 2, {"b", "b", "a"}));
  EXPECT_THAT(cvGetFieldNames(array.get()), ElementsAre("b", "a"));
  cvSetField(array.get(), 1, "c", cvCreateString("x"));
  EXPECT_THAT(cvGetFieldNames(array.get()), ElementsAre("b", "a", "c"));
  EXPECT_EQ(cvGetFieldNumber(array.get(), "c"), 2);
  EXPECT_EQ(cvGetFieldNumber(array.get(), "d"), -1);
  EXPECT_TRUE(cvIsEmpty(cvGetField(array.get(), 0, "c")));
  EXPECT_EQ(cvGetCharacters(cvGetFieldByNumber(array.get(), 1, 2)), u"x");
  EXPECT_EQ(cvGetField(array.get(), 0, "d"), nullptr);
  cvUniquePtr none(cvCreateStructMatrix(0, 0, {"f"}));
  EXPECT_EQ(error_of([&] { cvGetField(none.get(), 0, "f"); }), "kinemo:scripting:array:NoElements(1)");
}

// Ends in time only where a field is found without a walk through the others.
TEST_F(ArrayContainers, AStructureMayHaveManyFields) {
  cvUniquePtr array(cvCreateStructMatrix(1, 1, {}));
  const auto name = [](int i) { return "f" + std::to_string(i); };
  for (int i = 0; i < 100000; ++i) cvSetField(array.get(), 0, name(i).c_str(), cvCreateDoubleScalar(i));
  cvUniquePtr copy(cvCreateSharedCopy(array.get()));
  cvSetField(copy.get(), 0, "f99999", cvCreateDoubleScalar(-1));
  for (int i = 0; i < 100000; i += 9999) EXPECT_EQ(cvGetScalar(cvGetField(array.get(), 0, name(i).c_str())), i);
  EXPECT_EQ(cvGetScalar(cvGetField(copy.get(), 0, "f99999")), -1);
}

TEST_F(ArrayContainers, PropertiesAreGivenOutAsCopies) {
  cvUniquePtr object(cvCreateObject("Box"));
  EXPECT_EQ(cvGetProperty(object.get(), 0, "Value"), nullptr);
  cvSetProperty(object.get(), 0, "Value", cvCreateDoubleScalar(1));
  cvSetProperty(object.get(), 0, "Unit", cvCreateString("V"));
  cvUniquePtr value(cvGetProperty(object.get(), 0, "Value"));
  cvSetElement(value.get(), 0, 2);
  cvUniquePtr again(cvGetProperty(object.get(), 0, "Value"));
  EXPECT_EQ(cvGetScalar(again.get()), 1);
  EXPECT_THAT(cvGetPropertyNames(object.get()), ElementsAre("Value", "Unit"));
  EXPECT_EQ(cvGetNumberOfElements(object.get()), 1U);
  EXPECT_EQ(error_of([&] { cvGetProperty(object.get(), 1, "Value"); }), "kinemo:scripting:array:IndexOutOfRange(2, 1)");
}

TEST_F(ArrayContainers, NativeDataLivesAsLongAsACopy) {
  auto native = std::make_shared<int>(7);
  cvUniquePtr object(cvCreateNativeObject("Box", native));
  cvUniquePtr copy(cvDuplicateArray(object.get()));
  cvSetProperty(copy.get(), 0, "p", cvCreateDoubleScalar(1));
  EXPECT_EQ(cvGetNative(copy.get()), native);
  object.reset();
  EXPECT_EQ(native.use_count(), 2);
  copy.reset();
  EXPECT_EQ(native.use_count(), 1);
  cvUniquePtr function(cvCreateFunctionHandle("@(x) x", native));
  EXPECT_EQ(cvGetFunctionText(function.get()), "@(x) x");
  EXPECT_EQ(cvGetNative(function.get()), native);
}

TEST_F(ArrayContainers, RaiseWhereTheClassIsAnother) {
  cvUniquePtr number(cvCreateDoubleScalar(1));
  cvUniquePtr cell(cvCreateCellMatrix(1, 1));
  cvUniquePtr structure(cvCreateStructMatrix(1, 1, {"f"}));
  const auto message = [](const char* text) { return std::string("kinemo:scripting:array:") + text; };
  EXPECT_EQ(error_of([&] { cvGetCell(number.get(), 0); }), message("NotCell(double)"));
  EXPECT_EQ(error_of([&] { cvGetCell(cell.get(), 1); }), message("IndexOutOfRange(2, 1)"));
  EXPECT_EQ(error_of([&] { cvGetField(cell.get(), 0, "f"); }), message("NotStruct(cell)"));
  EXPECT_EQ(error_of([&] { cvGetFieldNames(number.get()); }), message("NotStruct(double)"));
  EXPECT_EQ(error_of([&] { cvGetFieldByNumber(structure.get(), 0, 1); }), message("NoSuchFieldNumber(2, 1)"));
  EXPECT_EQ(error_of([&] { cvGetFieldByNumber(structure.get(), 0, -1); }), message("NoSuchFieldNumber(0, 1)"));
  EXPECT_EQ(error_of([&] { cvGetProperty(structure.get(), 0, "f"); }), message("NotObject(struct)"));
  EXPECT_EQ(error_of([&] { cvGetNative(structure.get()); }), message("NotObject(struct)"));
  EXPECT_EQ(error_of([&] { cvGetFunctionText(cell.get()); }), message("NotFunction(cell)"));
}

// One array of every class, changed by `change` in one respect at a time.
TEST_F(ArrayContainers, EqualityLooksAtClassShapeAndContents) {
  const auto make = [](int change) {
    cvUniquePtr array(cvCreateStructMatrix(1, change == 1 ? 2 : 1, {}));
    const auto put = [&](const char* name, cvArray_tag* value) { cvSetField(array.get(), 0, name, value); };
    put("text", cvCreateString(change == 2 ? "b" : "a"));
    put(change == 3 ? "m" : "n", change == 4 ? cvCreateLogicalScalar(true) : cvCreateDoubleScalar(1));
    cvArray_tag* const cell = cvCreateCellMatrix(change == 5 ? 1 : 2, change == 5 ? 2 : 1);
    cvSetCell(cell, 1, cvCreateDoubleScalar(change == 6 ? 2 : 1));
    put("cell", cell);
    cvArray_tag* const object = cvCreateObject(change == 7 ? "Other" : "Box");
    cvSetProperty(object, 0, "p", cvCreateDoubleMatrix(change == 8 ? 2 : 1, 1));
    put("object", object);
    put("function", cvCreateFunctionHandle(change == 9 ? "@g" : "@f", nullptr));
    cvArray_tag* const complex = cvCreateNumericArray({1, 2}, cvDOUBLE_CLASS, true);
    if (change == 10) cvSetElement(complex, 1, {0, 1});
    put("complex", complex);
    return array;
  };
  const cvUniquePtr first = make(0);
  EXPECT_TRUE(cvAreMatricesEqual(first.get(), make(0).get()));
  for (int change = 1; change <= 10; ++change) {
    EXPECT_FALSE(cvAreMatricesEqual(first.get(), make(change).get())) << change;
    EXPECT_FALSE(cvAreMatricesEqual(make(change).get(), first.get())) << change;
  }
}

TEST_F(ArrayContainers, NanEqualsNothingAtAnyDepth) {
  cvUniquePtr cell(cvCreateCellMatrix(1, 1));
  cvSetCell(cell.get(), 0, cvCreateDoubleScalar(std::numeric_limits<double>::quiet_NaN()));
  cvUniquePtr copy(cvCreateSharedCopy(cell.get()));
  EXPECT_FALSE(cvAreMatricesEqual(cell.get(), copy.get())) << "not even in shared contents";
  EXPECT_FALSE(cvAreMatricesEqual(cell.get(), cell.get()));
}

TEST_F(ArrayContainers, OrderOfFieldsDoesNotCount) {
  cvUniquePtr a(cvCreateStructMatrix(1, 1, {"x", "y"}));
  cvUniquePtr b(cvCreateStructMatrix(1, 1, {"y", "x"}));
  for (cvArray_tag* array : {a.get(), b.get()}) cvSetField(array, 0, "y", cvCreateDoubleScalar(1));
  EXPECT_TRUE(cvAreMatricesEqual(a.get(), b.get()));
}

// Each level holds the one below twice: 2 to the power of 60 paths, but 60 contents.
TEST_F(ArrayContainers, SharedContentsAreComparedOnce) {
  const auto make = [] {
    cvUniquePtr level(cvCreateDoubleScalar(1));
    for (int i = 0; i < 60; ++i) {
      cvUniquePtr outer(cvCreateCellMatrix(1, 2));
      cvSetCell(outer.get(), 0, cvCreateSharedCopy(level.get()));
      cvSetCell(outer.get(), 1, level.release());
      level = std::move(outer);
    }
    return level;
  };
  EXPECT_TRUE(cvAreMatricesEqual(make().get(), make().get()));
}

TEST_F(ArrayContainers, CellsAndStructuresPermute) {
  const double swapped[] = {2, 1};
  cvUniquePtr order(cvCreateDoubleMatrix(1, 2, swapped));
  cvUniquePtr cell(cvCreateCellMatrix(2, 2));
  cvSetCell(cell.get(), 1, cvCreateDoubleScalar(1));
  cvUniquePtr turned(cvPermute(cell.get(), order.get()));
  EXPECT_EQ(cvGetScalar(cvGetCell(turned.get(), 2)), 1);
  EXPECT_TRUE(cvIsEmpty(cvGetCell(turned.get(), 1)));

  cvUniquePtr structure(cvCreateStructMatrix(1, 2, {"f"}));
  cvSetField(structure.get(), 1, "f", cvCreateDoubleScalar(3));
  cvUniquePtr column(cvPermute(structure.get(), order.get()));
  EXPECT_THAT(cvGetDimensions(column.get()), ElementsAre(2, 1));
  EXPECT_EQ(cvGetScalar(cvGetField(column.get(), 1, "f")), 3);
}

}  // namespace
