#include "tests/embedded/class_system/counter_class.hpp"

namespace embedded::class_system::test {
namespace {

class Objects : public ClassTest {};

TEST_F(Objects, OwnTheirNativesAndEndThemWithTheLastPointer) {
  ccos::COSClass* counter = ccos::COSClass::getClass("test.Counter");
  ccos::COSInterfacePtr object;
  counter->createInstance(object);
  EXPECT_EQ(object->getClass(), counter);
  EXPECT_EQ(object->getNativePointer("test.Counter"), nullptr);
  for (int i = 0; i < 2; ++i) counter->construct(object);
  EXPECT_EQ(Counter::alive(), 1) << "the former native is ended";
  const cvUniquePtr array = array_of(object);
  const cvUniquePtr copy(cvCreateSharedCopy(array.get()));
  object.reset();
  EXPECT_EQ(Counter::alive(), 1);
  EXPECT_EQ(omLiveObjectCount(), 1U);
}

TEST_F(Objects, KeepOnePointerForEachClass) {
  if (!find_class("test.Other")) add_class(class_around<Counter>("test.Other"));
  const ccos::COSInterfacePtr object = object_around("test.Counter", Counter(1));
  object->setNativePointer("test.Other", new Counter(2));
  EXPECT_EQ(static_cast<Counter*>(object->getNativePointer("test.Counter"))->number, 1);
  EXPECT_EQ(static_cast<Counter*>(object->getNativePointer("test.Other"))->number, 2);
  EXPECT_EQ(raised([&] { object->setNativePointer("test.None", nullptr); }),
            "kinemo:scripting:classes:ClassNotLoaded(test.None)");
}

TEST_F(Objects, ClassesAreNamedOnce) {
  EXPECT_EQ(raised([] { add_class(class_around<Counter>("test.Counter")); }),
            "kinemo:scripting:classes:DuplicateClass(test.Counter)");
  EXPECT_EQ(raised([] { ccos::COSClass::getClass("nowhere.Thing"); }),
            "kinemo:scripting:classes:ClassNotLoaded(nowhere.Thing)");
}

TEST_F(Objects, ArraysShareUntilOneIsWritten) {
  const cvUniquePtr array = three();
  cvUniquePtr copy(cvCreateSharedCopy(array.get()));
  omSetArrayElement(copy.get(), 0, object_around("test.Counter", Counter(9)));
  EXPECT_EQ(static_cast<Counter*>(native_of(omGetArrayElement(array.get(), 0)))->number, 1);
  EXPECT_EQ(static_cast<Counter*>(native_of(omGetArrayElement(copy.get(), 0)))->number, 9);
  EXPECT_EQ(omGetArrayElement(array.get(), 2), omGetArrayElement(copy.get(), 2));
}

TEST_F(Objects, ArraysRefuseWhatDoesNotBelongThere) {
  if (!find_class("test.Other")) add_class(class_around<Counter>("test.Other"));
  const cvUniquePtr array(omCreateCCOSMatrix(2, 1, "test.Counter"));
  const ccos::COSInterfacePtr object = object_around("test.Counter", Counter());
  const cvUniquePtr plain(cvCreateObject("test.Counter"));
  const std::string group = "kinemo:scripting:classes:";
  EXPECT_EQ(raised([&] { omSetArrayElement(array.get(), 2, object); }), group + "NoSuchElement(3, 2)");
  EXPECT_EQ(raised([&] { omSetArrayElement(array.get(), 0, object_around("test.Other", Counter())); }),
            group + "WrongClass(test.Other, test.Counter)");
  EXPECT_EQ(raised([&] { omSetArrayElement(plain.get(), 0, object); }), group + "NotObjects(test.Counter)");
  EXPECT_EQ(raised([&] { single_native(plain.get()); }), group + "NotObjects(test.Counter)");
  EXPECT_EQ(raised([&] { single_native(array.get()); }), group + "NotOneObject(test.Counter, 2)");
  EXPECT_EQ(raised([] { omCreateCCOSMatrix(1, 1, "test.None"); }), group + "ClassNotLoaded(test.None)");
  EXPECT_FALSE(omIsCCOSArray(plain.get()));
}

TEST_F(Objects, AreEqualWhenTheirNativesAreAlsoInsideContainers) {
  set("a", "test.Counter().plus(2)");
  set("b", "test.Counter().plus(1, 1)");
  EXPECT_EQ(value_of("[isequal(a, b), isequal(a, b.plus(1)), isequal({a}, {b}), isequal(a, 2)]"), "logical([1 0 1 0])");
}

}  // namespace
}  // namespace embedded::class_system::test
