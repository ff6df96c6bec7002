#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea reduction_help() {
  return {"Sums and statistics",
          {
              {"sum", "s = sum(x)\ns = sum(x, d)", "The sum along dimension d, or along the first one that isn't 1."},
              {"prod", "p = prod(x)\np = prod(x, d)",
               "The product along dimension d, or along the first one that isn't 1."},
              {"cumsum", "s = cumsum(x)\ns = cumsum(x, d)", "Running sums along a dimension."},
              {"cumprod", "p = cumprod(x)\np = cumprod(x, d)", "Running products along a dimension."},
              {"mean", "m = mean(x)\nm = mean(x, d)", "Mean values along a dimension."},
              {"median", "m = median(x)", "The middle value of a vector, or of each column of a matrix."},
              {"std", "s = std(x)",
               "The standard deviation of a vector, or of each column of a matrix, with n - 1 as divisor."},
              {"var", "v = var(x)", "The variance of a vector, or of each column of a matrix, with n - 1 as divisor."},
              {"max", "m = max(x)\n[m, k] = max(x)\nm = max(a, b)\nm = max(x, [], d)",
               "The largest elements along a dimension and their places k, or the larger ones of two arrays; NaN only "
               "where there is nothing else."},
              {"min", "m = min(x)\n[m, k] = min(x)\nm = min(a, b)\nm = min(x, [], d)",
               "The smallest elements along a dimension and their places k, or the smaller ones of two arrays; NaN "
               "only where there is nothing else."},
              {"any", "t = any(x)\nt = any(x, d)", "Whether one element along a dimension is other than zero."},
              {"all", "t = all(x)\nt = all(x, d)", "Whether all elements along a dimension are other than zero."},
              {"nnz", "n = nnz(x)", "The number of elements other than zero."},
              {"diff", "d = diff(x)", "Differences of neighbours, down the columns of a matrix and along a row."},
              {"trapz", "s = trapz(y)\ns = trapz(x, y)",
               "The integral of y over x by the trapezoidal rule; steps of 1 where x isn't given."},
          }};
}

}  // namespace embedded::scripting_runtime
