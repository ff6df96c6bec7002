#pragma once

// Arrays of the scripting runtime.
//
// Glossary
//   array          a value of the scripting language: numbers, characters, cells, structures, objects of a named class,
//                  function handles; always N-dimensional with at least two dimensions, stored by columns
//   element        one entry, counted from 0 through all dimensions
//   owner          every array that a `cvCreate…`, `cvDuplicate…` or `cvGetProperty` call returns belongs to the caller
//                  until `cvDestroyArray`, or until an operation takes it over; arrays inside cells, structures and
//                  objects belong to their container and are lent ("borrowed") by the read operations
//   shared copy    a new array whose contents are shared until one of the two is written; O(1)
//   scope          a number; arrays made while a scope is open belong to it and are destroyed when it closes, unless
//                  they were destroyed before or were set to scope 0, which outlives every call
//
// An implementation provides every operation declared here. Reading an element that isn't there, or as a class that it
// isn't, raises kmf::MessageException of the group "kinemo:scripting:array".

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"

#include <complex>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

struct cvArray_tag;

/// Class numbers of arrays.
enum cvClassID {
  cvUNKNOWN_CLASS = 0,
  cvCELL_CLASS = 1,
  cvSTRUCT_CLASS = 2,
  cvLOGICAL_CLASS = 3,
  cvCHAR_CLASS = 4,
  cvDOUBLE_CLASS = 6,
  cvSINGLE_CLASS = 7,
  cvINT8_CLASS = 8,
  cvUINT8_CLASS = 9,
  cvINT16_CLASS = 10,
  cvUINT16_CLASS = 11,
  cvINT32_CLASS = 12,
  cvUINT32_CLASS = 13,
  cvINT64_CLASS = 14,
  cvUINT64_CLASS = 15,
  cvFUNCTION_CLASS = 16,
  cvOBJECT_CLASS = 18
};

// --- making and ending

KINEMO_PLATFORM_API cvArray_tag* cvCreateDoubleMatrix(std::size_t rows, std::size_t columns);
KINEMO_PLATFORM_API cvArray_tag* cvCreateDoubleScalar(double value);
/// A row of the values when `columns` is more than 1 or `rows` is 1; by columns otherwise.
KINEMO_PLATFORM_API cvArray_tag* cvCreateDoubleMatrix(std::size_t rows, std::size_t columns, const double* values);
/// Zeros of a numeric, logical or character class.
KINEMO_PLATFORM_API cvArray_tag* cvCreateNumericArray(const std::vector<std::size_t>& dimensions, cvClassID classId,
                                                      bool isComplex = false);
KINEMO_PLATFORM_API cvArray_tag* cvCreateLogicalScalar(bool value);
KINEMO_PLATFORM_API cvArray_tag* cvCreateString(const std::string& utf8);  ///< 1 by N characters; 0 by 0 when empty
KINEMO_PLATFORM_API cvArray_tag* cvCreateUString(const ustring& text);
KINEMO_PLATFORM_API cvArray_tag* cvCreateCellMatrix(std::size_t rows, std::size_t columns);
KINEMO_PLATFORM_API cvArray_tag* cvCreateStructMatrix(std::size_t rows, std::size_t columns,
                                                      const std::vector<std::string>& fields);
/// One object of a named class with no properties.
KINEMO_PLATFORM_API cvArray_tag* cvCreateObject(const std::string& className);
/// One object of a named class around native data that lives as long as any copy of the array.
KINEMO_PLATFORM_API cvArray_tag* cvCreateNativeObject(const std::string& className, std::shared_ptr<void> native);
/// A function handle: its text and what the runtime calls for it.
KINEMO_PLATFORM_API cvArray_tag* cvCreateFunctionHandle(const std::string& text, std::shared_ptr<void> callable);

KINEMO_PLATFORM_API cvArray_tag* cvDuplicateArray(const cvArray_tag* array);  ///< a deep copy by meaning
KINEMO_PLATFORM_API cvArray_tag* cvCreateSharedCopy(const cvArray_tag* array);
KINEMO_PLATFORM_API void cvDestroyArray(cvArray_tag* array) noexcept;  ///< null is ignored

struct cvArrayDeleter {
  void operator()(cvArray_tag* array) const noexcept { cvDestroyArray(array); }
};
using cvUniquePtr = std::unique_ptr<cvArray_tag, cvArrayDeleter>;

// --- scopes

KINEMO_PLATFORM_API void cvSetArrayScope(cvArray_tag* array, int scope);
/// Puts the array into the scope that is open innermost; to 0 when none is open.
KINEMO_PLATFORM_API void gtsvSetLocalScope(cvArray_tag* array);
KINEMO_PLATFORM_API int cvGetArrayScope(const cvArray_tag* array);
KINEMO_PLATFORM_API int cvOpenScope();  ///< returns the number of the new scope, 1 or more
KINEMO_PLATFORM_API void cvCloseScope(int scope) noexcept;
/// Arrays that are alive, those inside containers included.
KINEMO_PLATFORM_API std::size_t cvLiveArrayCount() noexcept;

// --- shape and class

KINEMO_PLATFORM_API cvClassID cvGetClassID(const cvArray_tag* array);
/// "double", "char", "struct", … or the name of the object's class.
KINEMO_PLATFORM_API std::string cvGetClassName(const cvArray_tag* array);
KINEMO_PLATFORM_API bool cvIsA(const cvArray_tag* array, const char* className);
KINEMO_PLATFORM_API bool cvIsChar(const cvArray_tag* array);
KINEMO_PLATFORM_API bool cvIsNumeric(const cvArray_tag* array);  ///< double, single or integer
KINEMO_PLATFORM_API bool cvIsLogical(const cvArray_tag* array);
KINEMO_PLATFORM_API bool cvIsComplex(const cvArray_tag* array);
KINEMO_PLATFORM_API bool cvIsCell(const cvArray_tag* array);
KINEMO_PLATFORM_API bool cvIsStruct(const cvArray_tag* array);
KINEMO_PLATFORM_API bool cvIsEmpty(const cvArray_tag* array);
KINEMO_PLATFORM_API std::size_t cvGetNumberOfElements(const cvArray_tag* array);
KINEMO_PLATFORM_API const std::vector<std::size_t>& cvGetDimensions(const cvArray_tag* array);
/// The same elements in another shape; the product must stay.
KINEMO_PLATFORM_API void cvSetDimensions(cvArray_tag* array, const std::vector<std::size_t>& dimensions);
/// Same class, shape and contents, to any depth; NaN equals nothing.
KINEMO_PLATFORM_API bool cvAreMatricesEqual(const cvArray_tag* a, const cvArray_tag* b);

// --- numbers and text

KINEMO_PLATFORM_API double cvGetScalar(const cvArray_tag* array);  ///< the first element as a double
KINEMO_PLATFORM_API double cvGetElement(const cvArray_tag* array, std::size_t index);
KINEMO_PLATFORM_API std::complex<double> cvGetComplexElement(const cvArray_tag* array, std::size_t index);
/// Converts to the array's class: integers are rounded and saturated.
KINEMO_PLATFORM_API void cvSetElement(cvArray_tag* array, std::size_t index, std::complex<double> value);
/// The numbers of a real double array; null for any other class.
KINEMO_PLATFORM_API const double* cvGetDoubles(const cvArray_tag* array);
KINEMO_PLATFORM_API double* cvGetWritableDoubles(cvArray_tag* array);
KINEMO_PLATFORM_API const ustring& cvGetCharacters(const cvArray_tag* array);  ///< by columns, as stored
KINEMO_PLATFORM_API cvArray_tag* cvPermute(const cvArray_tag* array, const cvArray_tag* order);

// --- cells, structures, objects

KINEMO_PLATFORM_API const cvArray_tag* cvGetCell(const cvArray_tag* array, std::size_t index);  ///< borrowed, never null
KINEMO_PLATFORM_API void cvSetCell(cvArray_tag* array, std::size_t index, cvArray_tag* value);  ///< takes over `value`
KINEMO_PLATFORM_API std::vector<std::string> cvGetFieldNames(const cvArray_tag* array);
KINEMO_PLATFORM_API int cvGetFieldNumber(const cvArray_tag* array, const char* field);  ///< -1 when absent
KINEMO_PLATFORM_API const cvArray_tag* cvGetFieldByNumber(const cvArray_tag* array, std::size_t index, int field);
/// Borrowed; null when the structure has no such field.
KINEMO_PLATFORM_API const cvArray_tag* cvGetField(const cvArray_tag* array, std::size_t index, const char* field);
/// Adds the field where it is missing; takes over `value`.
KINEMO_PLATFORM_API void cvSetField(cvArray_tag* array, std::size_t index, const char* field, cvArray_tag* value);
/// A new array that the caller owns; null when the object has no such property.
KINEMO_PLATFORM_API cvArray_tag* cvGetProperty(const cvArray_tag* array, std::size_t index, const char* name);
KINEMO_PLATFORM_API void cvSetProperty(cvArray_tag* array, std::size_t index, const char* name, cvArray_tag* value);
KINEMO_PLATFORM_API std::vector<std::string> cvGetPropertyNames(const cvArray_tag* array);
KINEMO_PLATFORM_API std::shared_ptr<void> cvGetNative(const cvArray_tag* array);  ///< of objects and function handles
KINEMO_PLATFORM_API std::string cvGetFunctionText(const cvArray_tag* array);
