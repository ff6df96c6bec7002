#include "platform/foundation/message.hpp"

#include "platform/foundation/strings.hpp"

#include "embedded/foundation/catalogue.hpp"

namespace kmf {
namespace {

struct ArgumentText : boost::static_visitor<std::string> {
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(const ustring& text) const { return ustring_to_utf8_string(text); }
};

// How a message without a text is shown: nothing of it may be lost.
std::string plain(const std::string& key, const std::vector<std::string>& arguments) {
  std::string text = key;
  if (arguments.empty()) return text;
  text += " (";
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i > 0) text += ", ";
    text += arguments[i];
  }
  return text += ')';
}

}  // namespace

std::string argument_text(const MessageArgument& argument) {
  return boost::apply_visitor(ArgumentText(), argument);
}

std::string Message::text() const {
  std::vector<std::string> arguments;
  arguments.reserve(identifier_.arguments.size());
  for (const MessageArgument& argument : identifier_.arguments) arguments.push_back(argument_text(argument));

  const std::string key = identifier_.group + ':' + identifier_.id;
  const char* const pattern = embedded::Catalogue::get().find(key);
  return pattern ? embedded::fill_placeholders(pattern, arguments) : plain(key, arguments);
}

}  // namespace kmf
