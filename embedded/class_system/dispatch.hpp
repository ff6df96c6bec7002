#pragma once

namespace embedded::class_system {

/// Makes the class system known to the scripting runtime. May be called again.
void install_dispatch();

}  // namespace embedded::class_system
