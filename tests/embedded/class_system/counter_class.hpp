#pragma once

// A small class for tests: "test.Counter", whose objects hold a number. It counts the natives that are alive.

#include "embedded/class_system/classes.hpp"
#include "embedded/class_system/dispatch.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "tests/embedded/scripting_runtime/runtime_fixture.hpp"
#include "tests/support/errors.hpp"

namespace embedded::class_system::test {

struct Counter {
  explicit Counter(double its_number = 0) : number(its_number) { ++alive(); }
  Counter(const Counter& other) : number(other.number) { ++alive(); }
  Counter& operator=(const Counter&) = delete;
  ~Counter() { --alive(); }
  friend bool operator==(const Counter& a, const Counter& b) { return a.number == b.number; }

  static int& alive() {
    static int count = 0;
    return count;
  }
  double number;
};

inline void add_counter_class() {
  if (find_class("test.Counter") != nullptr) return;
  auto definition = class_around<Counter>("test.Counter");
  definition.help = {"c = test.Counter()", "A number.", ""};
  definition.display = [](const void* counter) {
    return "Counter at " + std::to_string(static_cast<int>(static_cast<const Counter*>(counter)->number));
  };
  definition.methods = {
      {"number",
       {},
       {},
       "",
       {"n = c.number", "The number.", ""},
       [](scripting_runtime::Call& call) { call.give(single<Counter>(call[0]).number); }},
      {"plus",
       {"double"},
       {"double"},
       "",
       {"d = c.plus(n)", "A counter further on.", ""},
       [](scripting_runtime::Call& call) {
         const double further = call.number(1) + (call.size() > 2 ? call.number(2) : 0);
         call.give(array_of(object_around("test.Counter", Counter(single<Counter>(call[0]).number + further))));
       }},
      {"joined", {}, {}, "char", {"t = c.joined(...)", "All texts in one.", ""}, [](scripting_runtime::Call& call) {
         std::string text;
         for (std::size_t i = 1; i < call.size(); ++i) text += call.text(i);
         call.give(text);
       }}};
  add_class(std::move(definition));
  add_class(class_around<int>("test.Foreign"));
}

/// Every array, object and native that a test makes must be gone at its end.
class ClassTest : public scripting_runtime::RuntimeTest {
 protected:
  ClassTest() : objects_before_(omLiveObjectCount()), counters_before_(Counter::alive()) {
    install_dispatch();
    add_counter_class();
  }
  ~ClassTest() override {
    scripting_runtime::base_workspace().clear();
    EXPECT_EQ(omLiveObjectCount(), objects_before_) << "objects left alive";
    EXPECT_EQ(Counter::alive(), counters_before_) << "natives left alive";
    scripting_runtime::set_class_dispatch(nullptr);
  }

  /// "group:id(arguments)" of what an action raises; `error_of` is that of an expression.
  template <class Action>
  static std::string raised(const Action& action) {
    return kinemo::test::error_of(action);
  }
  static void set(const char* name, const std::string& text) {
    scripting_runtime::base_workspace().set(
        name, scripting_runtime::evaluate(text, scripting_runtime::Scope(scripting_runtime::base_workspace())));
  }
  /// Three counters in a row: 1, 2, 3.
  static cvUniquePtr three() {
    cvUniquePtr array(omCreateCCOSMatrix(1, 3, "test.Counter"));
    for (std::size_t i = 0; i < 3; ++i) {
      omSetArrayElement(array.get(), i, object_around("test.Counter", Counter(static_cast<double>(i + 1))));
    }
    return array;
  }

 private:
  std::size_t objects_before_;
  int counters_before_;
};

}  // namespace embedded::class_system::test
