// Variables as files write them: those of a model's workspace, and those of data dictionaries.
#pragma once

#include "embedded/block_diagram/data_dictionary.hpp"
#include "formats/diagram/scope.hpp"

#include <functional>
#include <string>

namespace kinemo::formats::diagram {

/// Whether expressions can name a variable so.
bool is_variable_name(const std::string& name);

/// Takes one variable: its expression, the unit or nothing, and whether it is a run-time parameter. What it raises is
/// told as an error at the value.
using DefineVariable =
    std::function<void(const std::string& name, const ustring& value, const std::string& unit, bool runtime)>;

/// Variables in the order of the file; `what` names the mapping in messages.
void read_variables(const Scope& scope, const YamlNode& variables, const std::string& what,
                    const DefineVariable& define);

/// A data dictionary; null when it has faults. A variable may use those before it, and nothing from outside.
host::DictionaryVariables read_dictionary(Report& report, const ModelFile& file);

/// Lets the host open dictionaries by their paths.
/// What it can't read raises "kinemo:host:dictionary" "InvalidDictionary" (file, what is wrong with it).
void install_dictionary_reader();

}  // namespace kinemo::formats::diagram
