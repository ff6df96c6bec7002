#pragma once

#include <string>

/// Text of 16-bit code units (UTF-16). Block paths, port names, expressions and model names in messages use it.
using ustring = std::u16string;
