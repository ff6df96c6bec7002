#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea container_help() {
  return {
      "Cells and structures",
      {
          {"cell", "c = cell(n)\nc = cell(n, m)", "A cell array of empty cells."},
          {"num2cell", "c = num2cell(x)", "A cell array with a cell for each element."},
          {"struct", "s = struct(field, value, ...)", "A structure; values in a cell array give one structure each."},
          {"fieldnames", "c = fieldnames(s)",
           "The fields of a structure or the properties of an object, as a column of texts."},
          {"isfield", "t = isfield(s, name)",
           "Whether a structure has a field, or each field that a cell array names."},
          {"getfield", "x = getfield(s, name)", "The field of a structure, as s.(name)."},
          {"setfield", "s = setfield(s, name, x)", "The structure with a field set, as s.(name) = x."},
          {"rmfield", "s = rmfield(s, name)",
           "The structure without a field, or without those that a cell array names."},
          {"deal", "[a, b, ...] = deal(x, y, ...)\n[a, b, ...] = deal(x)",
           "Each input to its output, or the only one to all."},
      }};
}

}  // namespace embedded::scripting_runtime
