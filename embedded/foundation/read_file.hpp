#pragma once

#include <boost/optional.hpp>

#include <cstddef>
#include <string>

namespace kmf::embedded {

/// The bytes of a regular file; none for a file that is missing, can't be read, is larger than `limit`, or isn't a
/// regular file. Never waits, as reading from a pipe would.
boost::optional<std::string> read_regular_file(const std::string& path, std::size_t limit);

}  // namespace kmf::embedded
