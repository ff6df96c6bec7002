#pragma once

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

#include <boost/variant.hpp>

#include <string>
#include <utility>
#include <vector>

namespace kmf {

/// One argument of a message: narrow (UTF-8) or UTF-16.
using MessageArgument = boost::variant<std::string, ustring>;

/// What names a message: its group, its id in the group, and its arguments in order. The text is no part of it.
struct MessageId {
  template <class... Arguments>
  MessageId(std::string messageGroup, std::string messageId, Arguments&&... args)
      : group(std::move(messageGroup)), id(std::move(messageId)) {
    (arguments.emplace_back(std::forward<Arguments>(args)), ...);
  }

  std::string group;
  std::string id;
  std::vector<MessageArgument> arguments;
};

/// A message to a user: an identifier record whose text comes from the catalogue when it is asked for.
class KINEMO_PLATFORM_API Message {
 public:
  explicit Message(const MessageId& identifier) : identifier_(identifier) {}

  const MessageId& identifier() const { return identifier_; }
  /// The catalogue's text with the arguments filled in (UTF-8). An id without a text prints id and arguments.
  std::string text() const;

 private:
  MessageId identifier_;
};

/// The argument as UTF-8.
KINEMO_PLATFORM_API std::string argument_text(const MessageArgument& argument);

}  // namespace kmf
