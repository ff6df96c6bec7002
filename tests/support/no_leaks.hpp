#pragma once

// The fixture of tests that work with scripting arrays: fails on an array that a test leaves alive and on a warning
// that it didn't expect.
//
//   class Evaluator : public kinemo::test::NoLeaks {};
//   TEST_F(Evaluator, WarnsOfOldName) {
//     ...
//     EXPECT_THAT(take_warnings(), testing::ElementsAre("kinemo:group:OldName"));
//   }
//
// `LeakGuard` is the same for a part of a test, or for a fixture with another base.

#include "platform/scripting_array/scripting_array.hpp"

#include "embedded/foundation/warnings.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <vector>

namespace kinemo::test {

/// Watches arrays and warnings from its construction to its end.
class LeakGuard {
 public:
  LeakGuard() : arrays_(cvLiveArrayCount()) {}
  LeakGuard(const LeakGuard&) = delete;
  LeakGuard& operator=(const LeakGuard&) = delete;

  ~LeakGuard() {
    const std::size_t now = cvLiveArrayCount();
    EXPECT_TRUE(now >= arrays_ && now - arrays_ <= kept_)
        << "scripting arrays: " << arrays_ << " alive before, " << now << " after; " << kept_ << " may stay";
    for (const kmf::Message& warning : warnings_.warnings()) {
      ADD_FAILURE() << "unexpected warning: " << warning.text() << " [" << key(warning) << "]";
    }
  }

  /// Up to `count` arrays may stay alive, since the code keeps them for the length of the process.
  void allow_kept_arrays(std::size_t count) { kept_ = count; }

  /// The warnings up to now as "group:id", which are expected by that.
  std::vector<std::string> take_warnings() {
    std::vector<std::string> keys;
    for (const kmf::Message& warning : warnings_.take()) keys.push_back(key(warning));
    return keys;
  }
  /// The same with their arguments.
  std::vector<kmf::Message> take_warning_messages() { return warnings_.take(); }

 private:
  static std::string key(const kmf::Message& warning) {
    return warning.identifier().group + ':' + warning.identifier().id;
  }

  kmf::embedded::WarningCapture warnings_;
  std::size_t arrays_;
  std::size_t kept_ = 0;
};

class NoLeaks : public ::testing::Test {
 protected:
  void allow_kept_arrays(std::size_t count) { guard_.allow_kept_arrays(count); }
  std::vector<std::string> take_warnings() { return guard_.take_warnings(); }
  std::vector<kmf::Message> take_warning_messages() { return guard_.take_warning_messages(); }

 private:
  LeakGuard guard_;
};

}  // namespace kinemo::test
