#pragma once

// Edits of a diagram beyond placing blocks and lines: parameters in lists that apply all or not at all, and the ends of
// blocks and lines. What the host keeps of a system's nets is worked out anew after each.

#include "embedded/block_diagram/diagram.hpp"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace embedded::block_diagram {

/// Names with texts, in the order in which they are set.
using ParameterTexts = std::vector<std::pair<std::string, ustring>>;

/// Whether `setParameter` would take the texts, one after another; changes nothing. An opaque subsystem takes any
/// identifier, as a property of its component, and the empty text takes a property away.
/// @throws "kinemo:host:diagram" "UnknownParameter" (name, block path, nearest or ""), "InvalidValue" (name, block
/// path, text, what is valid)
void checkParameters(const GTBlock& block, const ParameterTexts& parameters);

/// What the parameters of a list that was checked have for texts at this moment; a property that an opaque subsystem
/// doesn't have is empty.
ParameterTexts textsNow(const GTBlock& block, const ParameterTexts& parameters);

/// Sets the parameters and lets the block check itself. After an error every parameter is as it was.
/// @throws as `checkParameters`, and what the block's own check raises
void setParameters(GTBlock& block, const ParameterTexts& parameters);

/// Whether a diagram can have a setting of the name. @throws "InvalidSetting" (name, diagram)
void checkSettingName(const Diagram& diagram, const std::string& name);
/// Takes a setting out of a diagram; a standing one becomes what it is in a new diagram. False when there is none.
bool clearSetting(Diagram& diagram, const std::string& name);

/// The free properties of a block, by name.
const std::map<std::string, ustring>& properties(const GTBlock& block);
void removeProperty(GTBlock& block, const std::string& name);

/// Ends a block with all that lies in it. Lines lose their ends at its ports, and end where they join nothing any more;
/// an I/O port block takes its port on the subsystem along.
void removeBlock(GTBlock& block);

/// Ends a line of the system.
void removeLine(System& system, const Line& line);
/// Gives a line of the system another name, or none. Without one, a line of a single port ends.
void renameLine(System& system, const Line& line, const ustring& name);

}  // namespace embedded::block_diagram
