#pragma once

// How a library offers plain functions to the scripting runtime: it exports a function named "QueryCVFcnTable_" and the
// library's name, without arguments, which returns the address of its table. The library gives no names to the
// functions: who loads the table knows them by their order.

#include "platform/scripting_array/scripting_array.hpp"

#include <cstdint>

/// As `kmf::CvFunction`.
using cvEntryFunction = void (*)(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs);

struct cvFunctionTable {
  const cvEntryFunction* entries;  ///< closed by a null
  std::uintptr_t firstMark;        ///< 0x3defa4fb
  std::uintptr_t secondMark;       ///< 0x5a7a3667
  std::uintptr_t version;          ///< 3
};
