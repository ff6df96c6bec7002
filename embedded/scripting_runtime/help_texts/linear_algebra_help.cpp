#include "embedded/scripting_runtime/help_texts.hpp"

namespace embedded::scripting_runtime {

HelpArea linear_algebra_help() {
  return {"Linear algebra",
          {
              {"dot", "s = dot(a, b)", "The scalar product of two vectors; the first one is conjugated."},
              {"cross", "c = cross(a, b)", "The vector product of two vectors of three elements."},
              {"det", "d = det(m)", "The determinant of a square matrix."},
              {"inv", "y = inv(m)", "The inverse of a square matrix."},
              {"norm", "n = norm(v)\nn = norm(v, p)\nn = norm(m, 'fro')",
               "The length of a vector in the p-norm, 2 where p isn't given; 'fro' takes all elements of any array."},
          }};
}

}  // namespace embedded::scripting_runtime
