#include "platform/data/data.hpp"
#include "platform/foundation/exception.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace data2 {
namespace {

using core::ValueData;
using testing::ElementsAre;

units2::core::ExprString unit(const char* text) {
  return units2::core::parse(text);
}

/// The id of the error that a call ends in; empty when it ends in none.
template <class Call>
std::string error_of(Call call) {
  try {
    call();
    return {};
  } catch (const kmf::MessageException& error) {
    return error.message().identifier().id;
  }
}

TEST(ValueData, ShapesAndElementsMustAgree) {
  EXPECT_THAT(ValueData(5).dimensions(), ElementsAre(1, 1));
  EXPECT_THAT(ValueData({3}, {1, 2, 3}).dimensions(), ElementsAre(3, 1));
  EXPECT_THAT(ValueData().dimensions(), ElementsAre(0, 0));
  EXPECT_EQ(error_of([] { ValueData({2, 3}, {1, 2, 3, 4, 5}); }), "ShapeMismatch");
  const std::size_t huge = std::size_t{1} << 33;
  EXPECT_EQ(error_of([&] { ValueData({huge, huge}, {}); }), "ShapeMismatch");
  EXPECT_EQ(error_of([&] { ValueData({huge, 0, huge}, {}); }), "");
}

TEST(ValueData, CopiesShareTheElements) {
  const ValueData value({2, 2}, {1, 2, 3, 4}, unit("V"));
  const ValueData copy = value;
  EXPECT_EQ(&copy.elements(), &value.elements());
}

TEST(ValueData, EqualityLooksAtShapeUnitAndNumbers) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_TRUE(ValueData(nan) == ValueData(nan));
  EXPECT_TRUE(ValueData(2) == ValueData({1, 1}, {2}));
  EXPECT_FALSE(ValueData({1, 4}, {1, 2, 3, 4}) == ValueData({2, 2}, {1, 2, 3, 4}));
  EXPECT_FALSE(ValueData(1, unit("V")) == ValueData(1));
  EXPECT_FALSE(ValueData(1, unit("V")) == ValueData(1, unit("A")));
  EXPECT_FALSE(ValueData(1) == ValueData(nan));
}

/// An object of the class of values; what is null is left out.
cvUniquePtr value_object(cvArray_tag* value, cvArray_tag* unitText, const char* className = "kinemo.Value") {
  cvUniquePtr object(cvCreateObject(className));
  if (value != nullptr) cvSetProperty(object.get(), 0, "value", value);
  if (unitText != nullptr) cvSetProperty(object.get(), 0, "unit", unitText);
  return object;
}

class ArrayConverter : public testing::Test {
 protected:
  ~ArrayConverter() override { EXPECT_EQ(cvLiveArrayCount(), before_); }

  cvi::CvArrayValueConverter convert{unit_manager::get_cv_context()};

 private:
  std::size_t before_ = cvLiveArrayCount();
};

TEST_F(ArrayConverter, KeepsTheShapeOfNumericAndLogicalArrays) {
  const double numbers[] = {1, 2, 3, 4, 5, 6};
  const cvUniquePtr matrix(cvCreateDoubleMatrix(3, 2, numbers));
  EXPECT_TRUE(convert(matrix.get()).data() == ValueData({3, 2}, {1, 2, 3, 4, 5, 6}));

  const cvUniquePtr integers(cvCreateNumericArray({1, 2, 2}, cvINT16_CLASS));
  cvSetElement(integers.get(), 3, -7.0);
  EXPECT_TRUE(convert(integers.get()).data() == ValueData({1, 2, 2}, {0, 0, 0, -7}));

  const cvUniquePtr logical(cvCreateLogicalScalar(true));
  EXPECT_TRUE(convert(logical.get()).data() == ValueData(1));
  const cvUniquePtr empty(cvCreateDoubleMatrix(0, 3));
  EXPECT_TRUE(convert(empty.get()).data() == ValueData({0, 3}, {}));
}

TEST_F(ArrayConverter, ObjectsOfTheValueClassCarryAUnit) {
  const auto object = value_object(cvCreateDoubleScalar(4.7), cvCreateString("kOhm"));
  ASSERT_TRUE(convert.canConvert(object.get()));
  EXPECT_TRUE(convert(object.get()).data() == ValueData(4.7, unit("kOhm")));
  const double numbers[] = {1, 2, 3, 4, 5, 6};
  const auto matrix = value_object(cvCreateDoubleMatrix(2, 3, numbers), cvCreateString("m/s"));
  EXPECT_TRUE(convert(matrix.get()).data() == ValueData({2, 3}, {1, 2, 3, 4, 5, 6}, unit("m/s")));
  const auto made = value_object(
      cvCreateDoubleScalar(2),
      cvCreateString(
          units2::core::ExprString(units2::core::product(units2::core::parse("kOhm"), units2::core::parse("uF")))
              .text()));
  EXPECT_TRUE(convert(made.get()).data() == ValueData(2, unit("kOhm*uF")));
  const auto withoutUnit = value_object(cvCreateDoubleScalar(4.7), cvCreateString(""));
  EXPECT_TRUE(convert(withoutUnit.get()).data() == ValueData(4.7));
}

TEST_F(ArrayConverter, RefusesWhatIsNoRealNumber) {
  std::vector<cvUniquePtr> refused;
  refused.emplace_back(cvCreateString("4"));
  refused.emplace_back(cvCreateCellMatrix(1, 1));
  refused.emplace_back(cvCreateStructMatrix(1, 1, {"value", "unit"}));
  refused.emplace_back(cvCreateNumericArray({1, 1}, cvDOUBLE_CLASS, true));
  refused.emplace_back(value_object(nullptr, cvCreateString("V")));
  refused.emplace_back(value_object(cvCreateString("1"), cvCreateString("V")));
  refused.emplace_back(value_object(cvCreateDoubleScalar(1), cvCreateDoubleScalar(1)));
  refused.emplace_back(value_object(cvCreateDoubleScalar(1), cvCreateString("V"), "kinemo.Other"));
  for (const cvUniquePtr& array : refused) {
    SCOPED_TRACE(cvGetClassName(array.get()));
    EXPECT_FALSE(convert.canConvert(array.get()));
    EXPECT_EQ(error_of([&] { convert(array.get()); }), "CannotConvert");
  }
  EXPECT_FALSE(convert.canConvert(nullptr));
  EXPECT_EQ(error_of([&] { convert(nullptr); }), "CannotConvert");
}

TEST_F(ArrayConverter, AWrongUnitIsAnErrorAndNotAMissingOne) {
  const auto object = value_object(cvCreateDoubleScalar(1), cvCreateString("quark"));
  EXPECT_TRUE(convert.canConvert(object.get()));
  EXPECT_EQ(error_of([&] { convert(object.get()); }), "InvalidUnit");
}

}  // namespace
}  // namespace data2
