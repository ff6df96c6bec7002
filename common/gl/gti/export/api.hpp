#pragma once

/// Marks the classes and functions that the kernel's shared library exports.
#define KINEMO_GTI_API __attribute__((visibility("default")))
