#include "common/gl/gti/src/kernel/block_model/property_reader.hpp"

#include "common/gl/gti/src/kernel/parameters/host_queries.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/foundation/ustring.hpp"

namespace gl::gti {

namespace {

/// What a property handed out, given back at the end of the scope.
class HeldValue {
 public:
  explicit HeldValue(const reflection::Property& property) : property_(property), value_(property.value()) {}
  HeldValue(const HeldValue&) = delete;
  HeldValue& operator=(const HeldValue&) = delete;
  ~HeldValue() {
    if (value_ != nullptr) property_.release(value_);
  }

  const void* get() const { return value_; }

 private:
  const reflection::Property& property_;
  const void* value_;
};

std::shared_ptr<const reflection::Object> reflectedObject(double handle) {
  const cvUniquePtr array = getParam(handle, "Object");
  return kmf::cvarray_to_object(array.get(), cvGetClassName(array.get()));
}

}  // namespace

PropertyReader::PropertyReader(double handle)
    : object_(reflectedObject(handle)),
      string_(reflection::getType("string", 1)),
      ustring_(reflection::getType("ustring", 1)),
      gtbool_(reflection::getType("gtbool", 1)) {}

boost::optional<std::string> PropertyReader::read(const std::string& name) const {
  const std::shared_ptr<const reflection::Property> property = object_->getProperty(name);
  if (!property) return boost::none;
  const reflection::Type* type = property->type();
  if (type != string_ && type != ustring_ && type != gtbool_) return boost::none;

  const HeldValue value(*property);
  if (value.get() == nullptr) return boost::none;
  if (type == string_) return *static_cast<const std::string*>(value.get());
  if (type == ustring_) return kmf::ustring_to_utf8_string(*static_cast<const ustring*>(value.get()));
  return std::string(*static_cast<const unsigned char*>(value.get()) != 0 ? "on" : "off");
}

}  // namespace gl::gti
