#pragma once

// The foundation's errors. All are copyable values that are thrown by value and caught by reference.
// An implementation provides the rendering and the copying of causes.

#include "platform/foundation/export.hpp"
#include "platform/foundation/message.hpp"

#include <cstddef>
#include <exception>
#include <memory>
#include <string>
#include <vector>

namespace kmf {

class Exception;

/// An error tree as plain data, for programs that print or count errors.
struct ErrorData {
  std::string group;                   ///< empty where the error has no message
  std::string id;                      ///< empty where the error has no message
  std::vector<std::string> arguments;  ///< UTF-8
  std::string text;                    ///< UTF-8
  std::vector<std::string> objects;    ///< paths of the model objects concerned, UTF-8
  std::vector<ErrorData> causes;
};

/// Base of all errors of the system.
class KINEMO_PLATFORM_API Exception : public std::exception {
 public:
  Exception() = default;
  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  ~Exception() override;

  /// UTF-8 text of this error alone.
  const char* what() const noexcept override;
  virtual std::shared_ptr<const Exception> clone() const;
  /// Throws a copy with the dynamic type of this error.
  [[noreturn]] virtual void raise() const;
  virtual ErrorData data() const;
};

/// An error that can hold further errors as causes, and the model objects that it concerns.
class KINEMO_PLATFORM_API AttributedException : public Exception {
 public:
  AttributedException() = default;
  AttributedException(const AttributedException&) = default;
  AttributedException& operator=(const AttributedException&) = default;
  /// Ends chains of causes of any length without recursion.
  ~AttributedException() override;

  void addCause(const Exception& cause);
  std::size_t numCauses() const { return causes_.size(); }
  const Exception& cause(std::size_t i) const { return *causes_.at(i); }

  /// Names a model object that the error concerns: a block path.
  void addObject(const ustring& path);
  const std::vector<ustring>& objects() const { return objects_; }

  std::shared_ptr<const Exception> clone() const override;
  [[noreturn]] void raise() const override;
  ErrorData data() const override;

 private:
  std::vector<std::shared_ptr<const Exception>> causes_;
  std::vector<ustring> objects_;
};

/// An error made from a message of the catalogue.
class KINEMO_PLATFORM_API MessageException : public AttributedException {
 public:
  explicit MessageException(const Message& message);

  const Message& message() const { return message_; }
  const char* what() const noexcept override;

  std::shared_ptr<const Exception> clone() const override;
  [[noreturn]] void raise() const override;
  ErrorData data() const override;

 private:
  Message message_;
  mutable std::string text_;
};

/// Hands an error on with its dynamic type kept.
class KINEMO_PLATFORM_API ExceptionSupport {
 public:
  [[noreturn]] static void rethrow(const Exception& error);
};

/// Throws a `MessageException` for a group, an id and its arguments.
template <class... Arguments>
[[noreturn]] void throw_message(const char* group, const char* id, Arguments&&... arguments) {
  throw MessageException(Message(MessageId(group, id, std::forward<Arguments>(arguments)...)));
}

/// The error tree for people: one line for each error, causes and objects indented below it. UTF-8, ends in a newline.
KINEMO_PLATFORM_API std::string render_error(const Exception& error);

}  // namespace kmf
