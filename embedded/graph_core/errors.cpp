#include "embedded/graph_core/errors.hpp"

#include "platform/foundation/exception.hpp"

namespace gl::core::detail {

namespace {

constexpr const char* group = "kinemo:graph:core";

std::string text_of(const kmf::VnIdPathIterator& address) {
  return std::string(address.rest());
}

}  // namespace

void throw_entry_name_not_found(const kmf::VnIdPathIterator& address) {
  kmf::throw_message(group, "EntryNameNotFound", text_of(address));
}

void throw_type_mismatch(const kmf::VnIdPathIterator& address) {
  kmf::throw_message(group, "EntryTypeMismatch", text_of(address));
}

void throw_no_such_tag(const kmf::VnId& key) {
  kmf::throw_message(group, "NoSuchTag", std::string(key));
}

void throw_duplicate_entry(const kmf::VnId& id) {
  kmf::throw_message(group, "DuplicateEntry", std::string(id));
}

void throw_already_connected(const ConnectorSpec& connector, const kmf::VnId& node) {
  kmf::throw_message(group, "AlreadyConnected", std::string(connector.path()), std::string(node));
}

void throw_parameter_type_mismatch(const kmf::VnIdPathIterator& address) {
  kmf::throw_message(group, "ParameterTypeMismatch", text_of(address));
}

const GraphEntryRef& found_or_throw(const FindResult& result, const kmf::VnIdPathIterator& address) {
  if (boost::get<NotFound>(&result) != nullptr) throw_entry_name_not_found(address);
  if (boost::get<TypeMismatch>(&result) != nullptr) throw_type_mismatch(address);
  return boost::get<GraphEntryRef>(result);
}

}  // namespace gl::core::detail
