#include "domains/physical/port_types.hpp"

#include "domains/physical/prepared_kind.hpp"
#include "platform/foundation/exception.hpp"

namespace kinemo::physical {

namespace {

constexpr char separators[] = " ,;\t\r\n";

/// "thermal" is physical.thermal; a type with full stops is taken as it stands.
kmf::VnIdPath1 parse_type(const std::string& text, const std::string& entry) {
  try {
    if (text.empty()) throw kmf::Exception();
    return text.find('.') == std::string::npos ? connector_type(text) : kmf::VnIdPath1(text);
  } catch (const kmf::Exception&) {
    kmf::throw_message("kinemo:physical:opaque", "InvalidPortType", entry);
  }
}

}  // namespace

PortTypes::PortTypes(const std::string& text) : others_(connector_type("electrical")) {
  std::size_t begin = text.find_first_not_of(separators);
  while (begin != std::string::npos) {
    const std::size_t end = text.find_first_of(separators, begin);
    add(text.substr(begin, end - begin));
    begin = text.find_first_not_of(separators, end);
  }
}

void PortTypes::add(const std::string& entry) {
  const std::size_t equals = entry.rfind('=');
  if (equals == std::string::npos)
    others_ = parse_type(entry, entry);
  else
    named_[entry.substr(0, equals)] = parse_type(entry.substr(equals + 1), entry);
}

const kmf::VnIdPath1& PortTypes::operator()(const std::string& port) const {
  const auto found = named_.find(port);
  return found == named_.end() ? others_ : found->second;
}

}  // namespace kinemo::physical
