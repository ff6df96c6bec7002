// What the readers of model files do with a model that has errors.
#pragma once

namespace kinemo::formats {

enum class OnErrors {
  close,  ///< no diagram is left
  /// A diagram of all that could be read, to be shown to people: blocks with faults lack values, and boxes stand for
  /// those that couldn't be made. Null where not even a diagram could be begun.
  keep,
};

}  // namespace kinemo::formats
