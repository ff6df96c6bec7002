#pragma once

/// Marks classes and functions that the library implementing the platform exports. Everything else stays hidden.
#define KINEMO_PLATFORM_API __attribute__((visibility("default")))
