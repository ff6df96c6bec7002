#include "embedded/scripting_array/classes.hpp"

#include "embedded/scripting_array/errors.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace kmf::embedded {
namespace {

template <class Integer>
double saturated(double value) {
  using Limits = std::numeric_limits<Integer>;
  if (std::isnan(value)) return 0;
  return std::clamp(std::round(value), static_cast<double>(Limits::min()), static_cast<double>(Limits::max()));
}

}  // namespace

const char* class_name(cvClassID class_id) noexcept {
  switch (class_id) {
    case cvCELL_CLASS:
      return "cell";
    case cvSTRUCT_CLASS:
      return "struct";
    case cvLOGICAL_CLASS:
      return "logical";
    case cvCHAR_CLASS:
      return "char";
    case cvDOUBLE_CLASS:
      return "double";
    case cvSINGLE_CLASS:
      return "single";
    case cvINT8_CLASS:
      return "int8";
    case cvUINT8_CLASS:
      return "uint8";
    case cvINT16_CLASS:
      return "int16";
    case cvUINT16_CLASS:
      return "uint16";
    case cvINT32_CLASS:
      return "int32";
    case cvUINT32_CLASS:
      return "uint32";
    case cvINT64_CLASS:
      return "int64";
    case cvUINT64_CLASS:
      return "uint64";
    case cvFUNCTION_CLASS:
      return "function_handle";
    case cvOBJECT_CLASS:
      return "object";
    case cvUNKNOWN_CLASS:
      break;
  }
  return "unknown";
}

bool is_integer_class(cvClassID class_id) noexcept {
  return class_id >= cvINT8_CLASS && class_id <= cvUINT64_CLASS;
}

bool is_number_class(cvClassID class_id) noexcept {
  return class_id >= cvDOUBLE_CLASS && class_id <= cvUINT64_CLASS;
}

double converted(double value, cvClassID class_id) {
  switch (class_id) {
    case cvSINGLE_CLASS:
      return static_cast<double>(static_cast<float>(value));
    case cvINT8_CLASS:
      return saturated<std::int8_t>(value);
    case cvUINT8_CLASS:
      return saturated<std::uint8_t>(value);
    case cvINT16_CLASS:
      return saturated<std::int16_t>(value);
    case cvUINT16_CLASS:
      return saturated<std::uint16_t>(value);
    case cvINT32_CLASS:
      return saturated<std::int32_t>(value);
    case cvUINT32_CLASS:
      return saturated<std::uint32_t>(value);
    case cvINT64_CLASS:
      return saturated<std::int64_t>(value);
    case cvUINT64_CLASS:
      return saturated<std::uint64_t>(value);
    case cvLOGICAL_CLASS:
      if (std::isnan(value)) throw_array_error("NanAsLogical");
      return value != 0 ? 1 : 0;
    default:
      return value;
  }
}

}  // namespace kmf::embedded
