#include "platform/foundation/exception.hpp"

#include "platform/foundation/strings.hpp"

#include <utility>

namespace kmf {
namespace {

// An error tree as data ends at this depth, since the destruction of nested data takes the stack.
constexpr int kMaxDepth = 400;
thread_local int depth = 0;

struct DeeperLevel {
  DeeperLevel() { ++depth; }
  DeeperLevel(const DeeperLevel&) = delete;
  ~DeeperLevel() { --depth; }
};

ErrorData left_out() {
  ErrorData data;
  data.text = "...";
  return data;
}

// Takes the causes out of errors that nobody else holds before they die, so that a chain of any length ends without
// recursion.
void release(std::vector<std::shared_ptr<const Exception>>& causes,
             std::vector<std::shared_ptr<const Exception>>& (*inner)(AttributedException&)) {
  std::vector<std::shared_ptr<const Exception>> open = std::move(causes);
  while (!open.empty()) {
    const std::shared_ptr<const Exception> error = std::move(open.back());
    open.pop_back();
    const auto* attributed = dynamic_cast<const AttributedException*>(error.get());
    if (!attributed || error.use_count() != 1) continue;
    auto& further = inner(const_cast<AttributedException&>(*attributed));
    open.insert(open.end(), std::make_move_iterator(further.begin()), std::make_move_iterator(further.end()));
    further.clear();
  }
}

}  // namespace

Exception::~Exception() = default;

const char* Exception::what() const noexcept {
  return "unspecified error";
}

std::shared_ptr<const Exception> Exception::clone() const {
  return std::make_shared<Exception>(*this);
}

void Exception::raise() const {
  throw *this;
}

ErrorData Exception::data() const {
  ErrorData data;
  data.text = what();
  return data;
}

AttributedException::~AttributedException() {
  release(
      causes_, [](AttributedException & error) -> auto& { return error.causes_; });
}

void AttributedException::addCause(const Exception& cause) {
  causes_.push_back(cause.clone());
}

void AttributedException::addObject(const ustring& path) {
  objects_.push_back(path);
}

std::shared_ptr<const Exception> AttributedException::clone() const {
  return std::make_shared<AttributedException>(*this);
}

void AttributedException::raise() const {
  throw *this;
}

ErrorData AttributedException::data() const {
  ErrorData data = Exception::data();
  for (const ustring& path : objects_) data.objects.push_back(ustring_to_utf8_string(path));
  if (causes_.empty()) return data;
  if (depth >= kMaxDepth) {
    data.causes.push_back(left_out());
    return data;
  }
  const DeeperLevel deeper;
  data.causes.reserve(causes_.size());
  for (const auto& cause : causes_) data.causes.push_back(cause->data());
  return data;
}

MessageException::MessageException(const Message& message) : message_(message) {}

const char* MessageException::what() const noexcept {
  try {
    if (text_.empty()) text_ = message_.text();
    return text_.c_str();
  } catch (...) {
    return message_.identifier().id.c_str();  // no memory for the text
  }
}

std::shared_ptr<const Exception> MessageException::clone() const {
  return std::make_shared<MessageException>(*this);
}

void MessageException::raise() const {
  throw *this;
}

ErrorData MessageException::data() const {
  ErrorData data = AttributedException::data();
  const MessageId& identifier = message_.identifier();
  data.group = identifier.group;
  data.id = identifier.id;
  for (const MessageArgument& argument : identifier.arguments) data.arguments.push_back(argument_text(argument));
  return data;
}

void ExceptionSupport::rethrow(const Exception& error) {
  // The error that is being handled goes on as it is, also where its class has no copying of its own.
  if (const std::exception_ptr current = std::current_exception()) {
    try {
      std::rethrow_exception(current);
    } catch (const Exception& handled) {
      if (&handled == &error) throw;
    } catch (...) {
    }
  }
  error.raise();
  std::terminate();  // not reached; compilers lose sight of that through the virtual call
}

}  // namespace kmf
