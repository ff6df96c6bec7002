#include "embedded/foundation/warnings.hpp"

#include "platform/foundation/warning.hpp"

#include <algorithm>
#include <iostream>
#include <mutex>

namespace kmf {
namespace {

struct Handlers {
  // Recursive, since a handler may issue a warning of its own.
  std::recursive_mutex mutex;
  std::vector<embedded::WarningHandler*> stack;

  static Handlers& get() {
    static Handlers* const handlers = new Handlers;
    return *handlers;
  }
};

}  // namespace

const Warning& Warning::get() {
  static const Warning warning;
  return warning;
}

void Warning::issueWarning(const Message& message) const {
  Handlers& handlers = Handlers::get();
  const std::lock_guard<std::recursive_mutex> lock(handlers.mutex);
  if (!handlers.stack.empty()) {
    handlers.stack.back()->handle(message);
    return;
  }
  const MessageId& id = message.identifier();
  std::cerr << "warning: " + message.text() + " [" + id.group + ':' + id.id + "]\n";
}

namespace embedded {

WarningHandler::WarningHandler() {
  Handlers& handlers = Handlers::get();
  const std::lock_guard<std::recursive_mutex> lock(handlers.mutex);
  handlers.stack.push_back(this);
}

WarningHandler::~WarningHandler() {
  Handlers& handlers = Handlers::get();
  const std::lock_guard<std::recursive_mutex> lock(handlers.mutex);
  auto& stack = handlers.stack;
  stack.erase(std::remove(stack.begin(), stack.end(), this), stack.end());
}

}  // namespace embedded
}  // namespace kmf
