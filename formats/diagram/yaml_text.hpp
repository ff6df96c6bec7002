// Texts as scalars of YAML: plain where every reader takes them for the text that they are, in quotes otherwise.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kinemo::formats::diagram {

/// A value, UTF-8. What looks like a number stands plain.
std::string yaml_value(std::string_view text);
/// A name: in quotes, too, where it looks like a number.
std::string yaml_name(std::string_view text);

/// A text in double quotes, which is one of JSON, too.
std::string yaml_quoted(std::string_view text);

/// "[a, b]" of texts that are YAML already.
std::string yaml_list(const std::vector<std::string>& items);

/// Keys and values that are YAML already.
using YamlEntries = std::vector<std::pair<std::string, std::string>>;
/// "{a: 1, b: 2}"
std::string yaml_mapping(const YamlEntries& entries);

/// A key of a mapping in block style with what stands behind it, such as ": {}" or ":"; `indent` blanks stand in front.
/// A key that is longer than readers look ahead has its own line.
std::string yaml_key(std::size_t indent, const std::string& key, const std::string& behind);

}  // namespace kinemo::formats::diagram
