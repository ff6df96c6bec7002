#pragma once

#include "platform/block_diagram/reflection.hpp"

#include <boost/optional.hpp>

#include <memory>
#include <string>

namespace gl::gti {

/// Reads properties of one host block as text, through its reflected object. Lives for one reading.
class PropertyReader {
 public:
  explicit PropertyReader(double handle);

  /// UTF-8; a flag reads "on" or "off". None for a property that is absent, has no value, or isn't text or a flag.
  boost::optional<std::string> read(const std::string& name) const;

 private:
  std::shared_ptr<const reflection::Object> object_;
  const reflection::Type* string_;
  const reflection::Type* ustring_;
  const reflection::Type* gtbool_;
};

}  // namespace gl::gti
