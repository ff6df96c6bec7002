// The keys of a diagram file: for each kind of object in it, what it may hold. The reader refuses every other key, and
// docs/diagram.schema.json says the same to editors.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace kinemo::formats::diagram {

enum class ObjectKind {
  model,           ///< the file that a program opens
  part,            ///< a file that a block's `type` names
  dictionary,      ///< a file that a model's `dictionary` names
  variable,        ///< one of `workspace`, or of a dictionary
  block,           ///< a block of the library
  subsystem,       ///< a block with contents or variants
  linked,          ///< a block whose contents stand in another file
  variant,         ///< what stands under `variant`
  mask_parameter,  ///< one of `mask`, in its long form
  ports,           ///< what stands under `ports`
  port,            ///< one of `ports`, in its long form
  line,            ///< a line in its long form
};

const std::vector<std::string>& keys_of(ObjectKind kind);
/// How messages call it, such as "a subsystem".
std::string_view object_name(ObjectKind kind);

}  // namespace kinemo::formats::diagram
