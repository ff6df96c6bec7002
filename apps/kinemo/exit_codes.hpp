// How the program ends.
#pragma once

#include <stdexcept>
#include <string>

namespace kinemo::app {

namespace exit_code {
constexpr int clean = 0;
constexpr int model_has_errors = 1;
constexpr int usage = 2;      ///< also a file that can't be read or written
constexpr int internal = 70;  ///< a fault of ours
}  // namespace exit_code

/// Ends the program with `exit_code::usage` and a message.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace kinemo::app
