#include "embedded/scripting_array/errors.hpp"

namespace kmf::embedded {

std::string dimensions_text(const std::vector<std::size_t>& dimensions) {
  std::string text;
  for (const std::size_t dimension : dimensions) {
    if (!text.empty()) text += 'x';
    text += std::to_string(dimension);
  }
  return text;
}

void throw_index_out_of_range(std::size_t index, std::size_t count) {
  if (count == 0) throw_array_error("NoElements", std::to_string(index + 1));
  throw_array_error("IndexOutOfRange", std::to_string(index + 1), std::to_string(count));
}

}  // namespace kmf::embedded
