#include "embedded/class_system/classes.hpp"

#include "embedded/class_system/errors.hpp"
#include "embedded/class_system/native_method.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/class_system/packages.hpp"

namespace embedded::class_system {

namespace {

using Table = std::map<ccos::COSNameID, std::unique_ptr<Class>>;

/// Never destroyed: objects may outlive everything else.
Table& table() {
  static auto* classes = new Table();
  return *classes;
}

}  // namespace

Class::Class(ClassDefinition definition) : name_(definition.name), definition_(std::move(definition)) {
  for (const MethodDefinition& method : definition_.methods) {
    methods_[method.name].reset(new NativeMethod(method, &definition_.name));
  }
}

void Class::createInstance(ccos::COSInterfacePtr& object) {
  object = std::make_shared<Object>(*this);
}

void Class::construct(ccos::COSInterfacePtr& object) {
  if (!definition_.construct) return;
  void* former = object->getNativePointer(name_);
  object->setNativePointer(name_, definition_.construct());
  if (former && definition_.destroy) definition_.destroy(former);
}

std::shared_ptr<const ccos::COSMethodInfo> Class::method(const std::string& name) const {
  const auto found = methods_.find(name);
  return found == methods_.end() ? nullptr : found->second;
}

std::vector<std::string> Class::method_names() const {
  std::vector<std::string> names;
  for (const auto& entry : methods_) names.push_back(entry.first);
  return names;
}

void add_class(ClassDefinition definition) {
  const ccos::COSNameID name(definition.name);
  if (table().count(name) != 0) throw_class_error("DuplicateClass", definition.name);
  auto made = std::make_unique<Class>(std::move(definition));
  scripting_runtime::set_help(name.text(), made->definition().help);
  for (const MethodDefinition& method : made->definition().methods) {
    scripting_runtime::set_help(std::string(name.text()) + '.' + method.name, method.help);
  }
  table().emplace(name, std::move(made));
}

Class* find_class(const ccos::COSNameID& name) {
  auto found = table().find(name);
  if (found == table().end() && attempt_to_load_class(name)) found = table().find(name);
  return found == table().end() ? nullptr : found->second.get();
}

std::vector<std::string> known_classes() {
  std::vector<std::string> names;
  for (const auto& entry : table()) names.emplace_back(entry.first.text());
  return names;
}

}  // namespace embedded::class_system

namespace ccos {

COSClass::~COSClass() = default;

COSClass* COSClass::getClass(const COSNameID& className) {
  if (COSClass* found = embedded::class_system::find_class(className)) return found;
  embedded::class_system::throw_class_error("ClassNotLoaded", std::string(className.text()));
}

}  // namespace ccos
