#pragma once

// Parameters that the host keeps for blocks of a kind, beside those of masks and dialogs.

#include "platform/block_diagram/block.hpp"

#include <string>
#include <vector>

namespace embedded::block_diagram {

/// "on" or "off".
const char* onOff(bool value);
/// Names of the host's own parameters of the block.
std::vector<std::string> hostParameterNames(const GTBlock& block);
/// Text of one of them. False when the block has none of that name.
bool hostParameter(const GTBlock& block, const std::string& name, ustring& text);
/// Whether the block has one of them that would take the text. False when it has none of that name.
/// @throws as `setHostParameter`
bool checkHostParameter(const GTBlock& block, const std::string& name, const ustring& text);
/// Sets one of them. False when the block has none of that name.
/// @throws "kinemo:host:diagram" "InvalidValue" (name, block path, text, what is valid)
bool setHostParameter(GTBlock& block, const std::string& name, const ustring& text);

// Properties that tell a domain what component an opaque subsystem is: any identifier but those of the block's place.

/// Whether the block, being `opaque` or not, can be asked to have the property. What it has it may always lose.
bool canBeComponentProperty(const GTBlock& block, const std::string& name, bool opaque);
/// Empty where the block doesn't have it.
ustring componentProperty(const GTBlock& block, const std::string& name);

/// @throws "kinemo:host:diagram" "UnknownParameter" (name, block path, nearest or "")
[[noreturn]] void throwUnknownParameter(const GTBlock& block, const std::string& name, std::vector<std::string> known);
/// @throws "kinemo:host:diagram" "NoActiveChoice" (block path, the text of "ActiveVariant", nearest or "")
[[noreturn]] void throwNoActiveChoice(const GTBlock& variant);

}  // namespace embedded::block_diagram
