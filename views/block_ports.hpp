// Names and order of the ports of any block. The host itself names only the ports of subsystems; those of the network's
// own blocks are named by their kind. Nothing is owned here.
#pragma once

#include "platform/foundation/ustring.hpp"

#include <string>
#include <string_view>
#include <vector>

class GTBlock;
class gtPort;

namespace kinemo::views {

/// The name by which lines refer to a port (UTF-8): of a subsystem's port the name of its I/O port block, of a core
/// block's port its identifier, of an I/O port block's own port the block's name. Empty where a port has no name.
std::string port_name(const gtPort& port);

/// The ports of a block in the order in which its kind lists them: left ones first, numbered ones (n1, n2, ...) by
/// number.
std::vector<gtPort*> ports_in_kind_order(const GTBlock& block);

/// The port of that name; null when there is none.
gtPort* find_port(const GTBlock& block, std::string_view name);
std::vector<std::string> port_names(const GTBlock& block);
/// "no port 'q'; did you mean 'p'?" and the like, for a name that `find_port` doesn't know.
std::string describe_unknown_port(const GTBlock& block, std::string_view name);

/// Path of a block without the name of its diagram (UTF-8).
std::string relative_path(const GTBlock& block);
/// A full path less its first element (UTF-8).
std::string relative_path(const ustring& full_path);

}  // namespace kinemo::views
