#pragma once

#include "common/gl/gti/export/api.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/scripting_array/scripting_array.hpp"

#include <boost/shared_ptr.hpp>

namespace gl::gti {

/// One parameter of a block: its evaluated value and the text that the user typed. A value type: copies share the
/// array, which never changes after construction and lives as long as any of them.
class KINEMO_GTI_API ParameterValue {
 public:
  /// An empty numeric array (0 by 0) and an empty text.
  ParameterValue();
  /// Takes a private copy of `value`; of a "Gantrel.Parameter" object, of the value inside. `value` stays the caller's.
  ParameterValue(const cvArray_tag* value, const ustring& expression);

  /// Borrowed: the array stays here.
  const cvArray_tag* value() const { return value_.get(); }
  const ustring& expression() const { return expression_; }

  /// Equal expressions and equal arrays.
  bool operator==(const ParameterValue& other) const;
  bool operator!=(const ParameterValue& other) const { return !(*this == other); }

 private:
  boost::shared_ptr<cvArray_tag> value_;
  ustring expression_;
};

}  // namespace gl::gti
