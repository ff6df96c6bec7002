#pragma once

// How tests name an error: by group, id and arguments, not by its text.

#include "platform/foundation/exception.hpp"

#include <gtest/gtest.h>

#include <string>

namespace kinemo::test {

/// "group:id(argument, argument)"; the text where the error has no message.
inline std::string describe(const kmf::Exception& error) {
  const kmf::ErrorData data = error.data();
  if (data.id.empty()) return data.text;
  std::string text = data.group + ':' + data.id + '(';
  for (std::size_t i = 0; i < data.arguments.size(); ++i) text += (i == 0 ? "" : ", ") + data.arguments[i];
  return text + ')';
}

/// What `action` raises, as `describe` tells it; "" when it raises nothing.
template <class Action>
std::string error_of(const Action& action) {
  try {
    action();
  } catch (const kmf::Exception& error) {
    return describe(error);
  }
  return {};
}

}  // namespace kinemo::test
