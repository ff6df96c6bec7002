#pragma once

#include "platform/scripting_array/scripting_array.hpp"

class GantrelObject;

namespace embedded::block_diagram {

/// Class of the arrays that stand for blocks, and for diagrams.
extern const char* const block_class;
extern const char* const diagram_class;

/// A new array around the reflected object, which looks the handle up again at each question: it may outlive the block.
cvUniquePtr reflectedObject(const GantrelObject& object);

}  // namespace embedded::block_diagram
