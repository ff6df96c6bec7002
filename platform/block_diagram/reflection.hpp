#pragma once

// The typed properties of a host object, by name.

#include "platform/foundation/export.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <memory>
#include <string>

namespace reflection {

/// A property type; one object for each name, so types compare by address.
struct Type {
  std::string name;
};

/// The repository's type of a name such as "string", "ustring" or "gtbool".
KINEMO_PLATFORM_API const Type* getType(const char* name, int version);

class Property {
 public:
  virtual ~Property() = default;
  virtual const Type* type() const = 0;
  /// The value: a `std::string` for "string", a `ustring` for "ustring", one byte for "gtbool". May be null. The caller
  /// gives it back by `release`.
  virtual const void* value() const = 0;
  virtual void release(const void* value) const = 0;
};

class Object {
 public:
  virtual ~Object() = default;
  /// Null where there is none.
  virtual std::shared_ptr<const Property> getProperty(const std::string& name) const = 0;
};

}  // namespace reflection

namespace kmf {
/// The reflected object behind an array of the given class, as "get_param" with "Object" returns it.
/// @throws "kinemo:host:reflection" "NotAnObject" (class name)
KINEMO_PLATFORM_API std::shared_ptr<const reflection::Object> cvarray_to_object(const cvArray_tag* array,
                                                                                const std::string& className);
}  // namespace kmf
