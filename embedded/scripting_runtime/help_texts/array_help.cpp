#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea array_help() {
  return {
      "Making and arranging arrays",
      {
          {"zeros", "x = zeros(n)\nx = zeros(n, m, ...)\nx = zeros(n, m, class)",
           "An array of zeros: n by n, or of the sizes given; class names a numeric class."},
          {"ones", "x = ones(n)\nx = ones(n, m, ...)\nx = ones(n, m, class)",
           "An array of ones: n by n, or of the sizes given; class names a numeric class."},
          {"eye", "x = eye(n)\nx = eye(n, m)", "The identity matrix."},
          {"linspace", "x = linspace(a, b)\nx = linspace(a, b, n)",
           "A row of n numbers at equal distances from a to b; 100 where n isn't given."},
          {"repmat", "y = repmat(x, n)\ny = repmat(x, n, m, ...)",
           "Copies of an array side by side: n by n, or as many as given in each dimension."},
          {"reshape", "y = reshape(x, n, m, ...)\ny = reshape(x, [n m ...])",
           "The same elements in another shape; one size may be [] and follows from the others."},
          {"horzcat", "y = horzcat(a, b, ...)", "Arrays joined side by side, as [a, b]."},
          {"vertcat", "y = vertcat(a, b, ...)", "Arrays joined one above the other, as [a; b]."},
          {"fliplr", "y = fliplr(x)", "The columns of a matrix in reverse order."},
          {"flipud", "y = flipud(x)", "The rows of a matrix in reverse order."},
          {"transpose", "y = transpose(x)", "Rows and columns exchanged, as x.'."},
          {"diag", "y = diag(x)", "A matrix with the vector x on its diagonal, or the diagonal of the matrix x."},
          {"size", "s = size(x)\nn = size(x, d)\n[n, m, ...] = size(x)",
           "The dimensions of an array, or its dimension d."},
          {"numel", "n = numel(x)", "The number of elements of an array."},
          {"length", "n = length(x)", "The largest dimension of an array; 0 where it has no elements."},
          {"ndims", "n = ndims(x)", "The number of dimensions of an array; at least 2."},
          {"isempty", "t = isempty(x)", "Whether an array has no elements."},
          {"isscalar", "t = isscalar(x)", "Whether an array has just one element."},
          {"isvector", "t = isvector(x)", "Whether an array is one row or one column and has elements."},
          {"isrow", "t = isrow(x)", "Whether an array has one row."},
          {"iscolumn", "t = iscolumn(x)", "Whether an array has one column."},
          {"find", "k = find(x)\nk = find(x, n)\n[row, column] = find(x)",
           "The places of the elements other than zero, at most n of them."},
          {"sort", "y = sort(x)\ny = sort(x, d)\ny = sort(x, 'descend')\n[y, k] = sort(x)",
           "Elements in rising order along a dimension, or texts of a cell array; y is x(k). NaN comes last."},
          {"unique", "y = unique(x)", "The different elements of an array, or texts of a cell array, in rising order."},
          {"ismember", "t = ismember(x, set)\n[t, k] = ismember(x, set)",
           "Whether elements of x are in the set, and the first place k of each there; 0 for none. Sets are arrays of "
           "numbers or cell arrays of texts."},
          {"union", "y = union(a, b)", "What is in one of two sets or in both, in rising order."},
          {"intersect", "y = intersect(a, b)", "What is in both of two sets, in rising order."},
          {"setdiff", "y = setdiff(a, b)", "What is in the set a but not in b, in rising order."},
      }};
}

}  // namespace embedded::scripting_runtime
