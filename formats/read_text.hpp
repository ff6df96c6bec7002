// The bytes of a file, or why they can't be had.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>

namespace kinemo::formats {

/// A model file is not larger than this; what is isn't read to its end.
constexpr std::size_t largest_model_file = std::size_t{1} << 30;

/// The whole of a regular file. `reason` says in the system's words why there is none. Never waits: pipes and devices,
/// which may not end, are refused.
std::optional<std::string> read_text(const std::string& path, std::string& reason);
/// The same for a path that a user gave, who may mean a pipe; then it waits for the other end.
std::optional<std::string> read_given_text(const std::string& path, std::string& reason);
/// All that is left of a stream.
std::optional<std::string> read_text(std::istream& stream, std::string& reason);

}  // namespace kinemo::formats
