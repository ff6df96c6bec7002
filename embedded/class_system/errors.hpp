#pragma once

#include "platform/foundation/exception.hpp"

#include <utility>

namespace embedded::class_system {

template <class... Arguments>
[[noreturn]] void throw_class_error(const char* id, Arguments&&... arguments) {
  kmf::throw_message("kinemo:scripting:classes", id, std::forward<Arguments>(arguments)...);
}

}  // namespace embedded::class_system
