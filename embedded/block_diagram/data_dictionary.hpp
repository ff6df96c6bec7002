#pragma once

// Data dictionaries: files of variables that several models share. A model names one in its parameter "DataDictionary",
// scripts open one with "Gantrel.dd.open", and `evalin` takes the object as a scope.

#include "embedded/block_diagram/diagram.hpp"
#include "embedded/scripting_runtime/workspace.hpp"

#include <functional>
#include <memory>
#include <string>

namespace embedded::block_diagram {

using DictionaryVariables = std::shared_ptr<scripting_runtime::Workspace>;

/// Reads the file of a dictionary. The host knows no file format; whoever reads models gives it one.
/// Raises a kmf::Exception where the file can't be read.
using DictionaryReader = std::function<DictionaryVariables(const std::string& file)>;
void setDictionaryReader(DictionaryReader reader);

/// The variables of a dictionary: read when it is opened first, and again once the file has changed.
/// @throws "kinemo:host:dictionary" "NoReader" (file), and what the reader raises
DictionaryVariables openDictionary(const std::string& file);
/// Opens a dictionary whose file was read already.
void keepDictionary(const std::string& file, DictionaryVariables variables);
/// Forgets all dictionaries; objects that are still about keep theirs.
void closeDictionaries();

/// The dictionary of a diagram; null when it names none. @throws as `openDictionary`
DictionaryVariables dictionaryOf(const Diagram& diagram);

/// A variable as a workspace or a dictionary holds it: the value of an expression; with a unit, or when it is marked as
/// run-time, as a "Gantrel.Parameter". @throws whatever the evaluation raises
cvUniquePtr makeVariable(const ustring& expression, const scripting_runtime::Scope& scope, const std::string& unit,
                         bool runtime);

/// Where the top of a diagram finds names: the model workspace, its dictionary, the base workspace. Keeps the
/// dictionary; the diagram must outlive it. @throws as `openDictionary`
class VariableScope {
 public:
  explicit VariableScope(Diagram& diagram);
  const scripting_runtime::Scope& scope() const { return scope_; }
  /// The variable of the workspace or the dictionary; null when neither has it.
  const cvArray_tag* find(const std::string& name) const;
  /// Of all variables that `find` finds, each once.
  std::vector<std::string> names() const;

 private:
  const scripting_runtime::Workspace* workspace_;
  DictionaryVariables dictionary_;
  scripting_runtime::Scope scope_;
};

/// "Gantrel.dd.open": an object of class "Gantrel.dd.Dictionary".
void openDictionaryObject(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs);
/// Lets `evalin` take dictionaries as scopes.
void registerDictionaryClass();

}  // namespace embedded::block_diagram
