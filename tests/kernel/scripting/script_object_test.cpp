#include "common/gl/gti/src/kernel/scripting/script_object.hpp"

#include "embedded/class_system/classes.hpp"
#include "platform/foundation/exception.hpp"
#include "tests/support/errors.hpp"
#include "tests/support/no_leaks.hpp"

namespace gl::gti {
namespace {

using embedded::class_system::add_class;
using embedded::class_system::class_around;
using embedded::class_system::find_class;
using kinemo::test::error_of;

/// A value that counts itself, and can refuse to be copied.
struct Counted {
  Counted() { ++alive; }
  Counted(const Counted& other) : refuses(other.refuses) {
    if (refuses) kmf::throw_message("kinemo:test", "NoCopy");
    ++alive;
  }
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --alive; }
  friend bool operator==(const Counted&, const Counted&) { return true; }

  bool refuses = false;
  static inline int alive = 0;
};

class ScriptObjects : public kinemo::test::NoLeaks {
 protected:
  ScriptObjects() {
    if (find_class("test.WithDefault")) return;
    add_class(class_around<Counted>("test.WithDefault"));
    auto bare = class_around<Counted>("test.WithoutDefault");
    bare.construct = nullptr;
    add_class(std::move(bare));
    auto failing = class_around<Counted>("test.Failing");
    failing.construct = []() -> void* { kmf::throw_message("kinemo:test", "NoConstruction"); };
    add_class(std::move(failing));
  }
  ~ScriptObjects() override {
    EXPECT_EQ(omLiveObjectCount(), 0U);
    EXPECT_EQ(Counted::alive, 0);
  }
};

TEST_F(ScriptObjects, HoldACopyInPlaceOfWhatTheConstructorGave) {
  const Counted value;
  for (const char* name : {"test.WithDefault", "test.WithoutDefault"}) {
    const ccos::COSInterfacePtr object = object_around(name, value);
    EXPECT_EQ(Counted::alive, 2) << name;
    EXPECT_NE(object->getNativePointer(name), &value) << name;
  }
}

TEST_F(ScriptObjects, AreReleasedWhenTheyAreMadeHalf) {
  Counted value;
  EXPECT_EQ(error_of([&] { object_around("test.Failing", value); }), "kinemo:test:NoConstruction()");
  value.refuses = true;
  EXPECT_EQ(error_of([&] { object_around("test.WithDefault", value); }), "kinemo:test:NoCopy()");
  EXPECT_EQ(error_of([&] { object_around("test.NotLoaded", value); }),
            "kinemo:scripting:classes:ClassNotLoaded(test.NotLoaded)");
  EXPECT_EQ(Counted::alive, 1);
}

TEST_F(ScriptObjects, ArraysKeepThemAlive) {
  ccos::COSInterfacePtr object = object_around("test.WithDefault", Counted());
  const cvUniquePtr array(array_around(object));
  EXPECT_EQ(cvGetClassID(array.get()), 18);
  EXPECT_EQ(cvGetClassName(array.get()), "test.WithDefault");
  EXPECT_EQ(omGetArrayElement(array.get(), 0), object);
  object.reset();
  EXPECT_EQ(Counted::alive, 1);
}

}  // namespace
}  // namespace gl::gti
