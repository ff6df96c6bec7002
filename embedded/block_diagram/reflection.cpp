#include "platform/block_diagram/reflection.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/diagram_object.hpp"
#include "embedded/block_diagram/reflected_object.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"

#include <map>
#include <memory>
#include <optional>
#include <variant>

namespace embedded::block_diagram {

const char* const block_class = "Gantrel.Block";
const char* const diagram_class = "Gantrel.BlockDiagram";

namespace {

using reflection::Property;

/// A "ustring", a "string" or a "gtbool".
using Value = std::variant<ustring, std::string, bool>;

class PropertyValue : public Property {
 public:
  explicit PropertyValue(Value value) : value_(std::move(value)) {}

  const reflection::Type* type() const override {
    static const reflection::Type* const types[] = {reflection::getType("ustring", 1), reflection::getType("string", 1),
                                                    reflection::getType("gtbool", 1)};
    return types[value_.index()];
  }
  const void* value() const override {
    return std::visit([](const auto& value) -> const void* { return &value; }, value_);
  }
  void release(const void*) const override {}  // the value is the property's own

 private:
  Value value_;
};

Value booleanValue(const ustring& text) {
  return kmf::lower(kmf::ustring_to_utf8_string(text)) == "on";
}

std::optional<Value> maskProperty(const GTMask& mask, const std::string& name) {
  const int i = mask.kind->find(name);
  if (i < 0) return std::nullopt;
  const auto number = static_cast<std::size_t>(i);
  const ustring& text = mask.text(number).text();
  if (mask.kind->parameters()[number].type == GTPrmDesc::BOOLEAN) return booleanValue(text);
  return text;
}

std::optional<Value> dialogProperty(const GTBlock& block, const std::string& name) {
  const int i = block.host().dialog.find(name);
  if (i < 0) return std::nullopt;
  const ustring text = kmf::utf8_string_to_ustring(dialogText(block, i));
  if (block.host().dialog.descriptor(i)->type() == GTPrmDesc::BOOLEAN) return booleanValue(text);
  return text;
}

std::optional<Value> freeProperty(const GTBlock& block, const std::string& name) {
  if (!block.host().extras) return std::nullopt;
  const auto& properties = block.host().extras->properties;
  const auto found = properties.find(name);
  if (found == properties.end()) return std::nullopt;
  return found->second;
}

/// A parameter that the user gave comes before what the host says of every block.
std::optional<Value> blockProperty(const GTBlock& block, const std::string& name) {
  std::optional<Value> value;
  if (block.host().mask) value = maskProperty(*block.host().mask, name);
  if (!value) value = dialogProperty(block, name);
  if (!value) value = freeProperty(block, name);
  if (!value && name == "Name") value = block.getGrName();
  if (!value && name == "BlockType") value = blockType(block);
  return value;
}

std::optional<Value> diagramProperty(const Diagram& diagram, const std::string& name) {
  if (name == "Name") return kmf::utf8_string_to_ustring(diagram.name());
  const auto found = diagram.parameters().find(name);
  if (found == diagram.parameters().end()) return std::nullopt;
  return found->second;
}

class ReflectedObject : public reflection::Object {
 public:
  explicit ReflectedObject(double handle) : handle_(handle) {}

  std::shared_ptr<const Property> getProperty(const std::string& name) const override {
    const GantrelObject* object = Handle2GantrelObject(handle_);
    std::optional<Value> value;
    if (const auto* block = dynamic_cast<const GTBlock*>(object)) {
      value = blockProperty(*block, name);
    } else if (const auto* diagram = dynamic_cast<const GTBlockDiagram*>(object)) {
      value = diagramProperty(diagram->diagram(), name);
    }
    if (!value) return nullptr;
    return std::make_shared<PropertyValue>(std::move(*value));
  }

 private:
  double handle_;
};

}  // namespace

cvUniquePtr reflectedObject(const GantrelObject& object) {
  const bool isBlock = object.getGantrelObjectType() == block_object_type;
  const std::shared_ptr<reflection::Object> reflected = std::make_shared<ReflectedObject>(object.getHandle());
  return cvUniquePtr(cvCreateNativeObject(isBlock ? block_class : diagram_class, reflected));
}

}  // namespace embedded::block_diagram

const reflection::Type* reflection::getType(const char* name, int) {
  // Never destroyed; map nodes stay where they are.
  static auto* const types = new std::map<std::string, Type>;
  return &types->try_emplace(name, Type{name}).first->second;
}

std::shared_ptr<const reflection::Object> kmf::cvarray_to_object(const cvArray_tag* array,
                                                                 const std::string& className) {
  using namespace embedded::block_diagram;
  const std::string actual = cvGetClassName(array);
  const bool ours = actual == className && (actual == block_class || actual == diagram_class);
  const std::shared_ptr<void> native = ours ? cvGetNative(array) : nullptr;
  if (!native) throw_message("kinemo:host:reflection", "NotAnObject", actual);
  return std::static_pointer_cast<const reflection::Object>(native);
}
