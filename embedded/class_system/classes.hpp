#pragma once

// How classes of the scripting language are declared, and the table of those that are known.
//
// A class is told by a `ClassDefinition`: how its objects come to be and end, compare and display, and its methods,
// which are rows of name, types, help and body. `class_around<T>` fills in the first part for a C++ value.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/help.hpp"
#include "platform/class_system/class_system.hpp"

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace embedded::class_system {

/// One method. The first input of a class's method is the object, and isn't listed.
struct MethodDefinition {
  std::string name;
  std::vector<std::string> inputs;    ///< types of inputs that must be given
  std::vector<std::string> optional;  ///< types of inputs that may follow
  std::string further;                ///< type of any number of inputs behind those; empty for none
  scripting_runtime::Help help;
  std::function<void(scripting_runtime::Call&)> body;
};

struct ClassDefinition {
  std::string name;  ///< with its packages: "kinemo.gl.Graph"
  scripting_runtime::Help help;
  /// A new native pointer for an object that is constructed; may be empty, and then an object has none.
  std::function<void*()> construct;
  /// Ends what is behind a native pointer of this class.
  std::function<void(void*)> destroy;
  /// Both take native pointers that aren't null. Without one, objects are equal when they are the same, or are
  /// displayed by class and size.
  std::function<bool(const void*, const void*)> equal;
  std::function<std::string(const void*)> display;
  std::vector<MethodDefinition> methods;
};

/// Objects around a default-constructed T, equal as T is.
template <class T>
ClassDefinition class_around(const std::string& name) {
  ClassDefinition definition;
  definition.name = name;
  definition.construct = [] { return new T(); };
  definition.destroy = [](void* native) { delete static_cast<T*>(native); };
  definition.equal = [](const void* a, const void* b) {
    return *static_cast<const T*>(a) == *static_cast<const T*>(b);
  };
  return definition;
}

/// A known class.
class Class : public ccos::COSClass {
 public:
  explicit Class(ClassDefinition definition);

  void createInstance(ccos::COSInterfacePtr& object) override;
  void construct(ccos::COSInterfacePtr& object) override;
  const ccos::COSNameID& getNameID() const override { return name_; }

  const ClassDefinition& definition() const { return definition_; }
  /// Null where there is none.
  std::shared_ptr<const ccos::COSMethodInfo> method(const std::string& name) const;
  /// Sorted.
  std::vector<std::string> method_names() const;

 private:
  ccos::COSNameID name_;
  ClassDefinition definition_;
  std::map<std::string, std::shared_ptr<const ccos::COSMethodInfo>> methods_;
};

/// Makes a class and the help of its methods known. @throws "DuplicateClass" (name)
void add_class(ClassDefinition definition);
/// Null where nobody knows the class, nor any package can load it.
Class* find_class(const ccos::COSNameID& name);
/// Sorted.
std::vector<std::string> known_classes();

}  // namespace embedded::class_system
