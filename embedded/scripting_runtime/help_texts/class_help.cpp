#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea class_help() {
  return {"Classes and conversions",
          {
              {"class", "name = class(x)", "The name of a value's class."},
              {"isa", "t = isa(x, name)",
               "Whether a value is of a class, or of the kinds 'numeric', 'float' or 'integer'."},
              {"isequal", "t = isequal(a, b, ...)",
               "Whether values are equal in shape and contents; numbers of any classes are compared by value."},
              {"double", "y = double(x)", "Numbers of double precision; of characters their codes."},
              {"single", "y = single(x)", "Numbers of single precision."},
              {"int8", "y = int8(x)", "Signed whole numbers of 8 bits, rounded and limited to their range."},
              {"uint8", "y = uint8(x)", "Unsigned whole numbers of 8 bits, rounded and limited to their range."},
              {"int16", "y = int16(x)", "Signed whole numbers of 16 bits, rounded and limited to their range."},
              {"uint16", "y = uint16(x)", "Unsigned whole numbers of 16 bits, rounded and limited to their range."},
              {"int32", "y = int32(x)", "Signed whole numbers of 32 bits, rounded and limited to their range."},
              {"uint32", "y = uint32(x)", "Unsigned whole numbers of 32 bits, rounded and limited to their range."},
              {"int64", "y = int64(x)", "Signed whole numbers of 64 bits, rounded and limited to their range."},
              {"uint64", "y = uint64(x)", "Unsigned whole numbers of 64 bits, rounded and limited to their range."},
              {"logical", "y = logical(x)", "True where elements are other than zero; NaN is an error."},
              {"char", "y = char(x)\ny = char(cells)",
               "Characters of their codes, or rows of text from a cell array, filled with blanks."},
              {"isnumeric", "t = isnumeric(x)",
               "Whether a value is an array of numbers; logical values and characters aren't."},
              {"isfloat", "t = isfloat(x)", "Whether a value is of class double or single."},
              {"isreal", "t = isreal(x)",
               "Whether a value is numbers, logical values or characters without imaginary parts."},
              {"islogical", "t = islogical(x)", "Whether a value is of class logical."},
              {"ischar", "t = ischar(x)", "Whether a value is text."},
              {"iscell", "t = iscell(x)", "Whether a value is a cell array."},
              {"iscellstr", "t = iscellstr(x)", "Whether a value is a cell array of texts alone."},
              {"isstruct", "t = isstruct(x)", "Whether a value is a structure."},
              {"isobject", "t = isobject(x)", "Whether a value is an object of a class."},
              {"is_function_handle", "t = is_function_handle(x)", "Whether a value is a function handle."},
              {"kinemo.Value", "x = kinemo.Value(number, unit)",
               "A value with a unit; one that has a unit already is converted.",
               "Its properties are 'value' and 'unit'. Computations check and convert units: kinemo.Value(1, 'V') + "
               "kinemo.Value(1, 'mV')."},
          }};
}

}  // namespace embedded::scripting_runtime
