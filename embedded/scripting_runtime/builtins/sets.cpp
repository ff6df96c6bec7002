// Arrays of numbers and cell arrays of texts as sets.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <unordered_map>

namespace embedded::scripting_runtime {

namespace {

bool holds_texts(const cvArray_tag* array) {
  return cvIsCell(array) || cvIsChar(array);
}

/// Sets are of one kind: texts or numbers. An empty one goes with both.
bool of_texts(const Call& call) {
  const auto texts = [](const cvArray_tag* array) { return holds_texts(array) && !cvIsEmpty(array); };
  const auto numbers = [](const cvArray_tag* array) { return !holds_texts(array) && !cvIsEmpty(array); };
  const bool mixed = (texts(call[0]) && numbers(call[1])) || (numbers(call[0]) && texts(call[1]));
  if (mixed) throw_runtime_error("CannotConcatenate", cvGetClassName(call[0]), cvGetClassName(call[1]));
  return cvIsCell(call[0]) || cvIsCell(call[1]) || texts(call[0]) || texts(call[1]);
}

std::vector<ustring> texts_of(const cvArray_tag* array) {
  if (!holds_texts(array)) return {};
  return kmf::cvarray_to_ustring_vector(array);
}

std::vector<double> numbers_in(const cvArray_tag* array) {
  return numbers_of(array).re;
}

/// NaN isn't: it has no place in an order, and hashing puts all of them together.
template <class T>
bool equals_itself(const T& element) {
  return element == element;
}

/// Place from 1 of the first equal element, 0 where there is none.
template <class T>
std::vector<double> places(const std::vector<T>& wanted, const std::vector<T>& in) {
  std::unordered_map<T, std::size_t> first;
  for (std::size_t i = 0; i < in.size(); ++i) {
    if (equals_itself(in[i])) first.emplace(in[i], i + 1);
  }
  std::vector<double> result;
  for (const T& each : wanted) {
    const auto found = first.find(each);
    result.push_back(found == first.end() ? 0 : static_cast<double>(found->second));
  }
  return result;
}

void is_member(Call& call) {
  const bool texts = of_texts(call);
  Numbers at = Numbers::zeros(cvIsChar(call[0]) ? Shape{1, 1} : cvGetDimensions(call[0]));
  at.re = texts ? places(texts_of(call[0]), texts_of(call[1])) : places(numbers_in(call[0]), numbers_in(call[1]));
  Numbers found = at;
  found.class_id = cvLOGICAL_CLASS;
  for (double& each : found.re) each = each == 0 ? 0 : 1;
  call.give(array_of(std::move(found)));
  call.give(array_of(std::move(at)));
}

enum class Operation { unite, intersect, subtract };

/// Sorts a list to a set; gives what equals nothing, itself included.
template <class T>
std::vector<T> make_set(std::vector<T>& list) {
  const auto end = std::stable_partition(list.begin(), list.end(), equals_itself<T>);
  std::vector<T> rest(end, list.end());
  std::sort(list.begin(), end);
  list.erase(std::unique(list.begin(), end), list.end());
  return rest;
}

template <class T>
std::vector<T> combined(std::vector<T> a, std::vector<T> b, Operation operation) {
  const std::vector<T> only_in_a = make_set(a);
  const std::vector<T> only_in_b = make_set(b);
  std::vector<T> result;
  const auto out = std::back_inserter(result);
  if (operation == Operation::unite) std::set_union(a.begin(), a.end(), b.begin(), b.end(), out);
  if (operation == Operation::intersect) std::set_intersection(a.begin(), a.end(), b.begin(), b.end(), out);
  if (operation == Operation::subtract) std::set_difference(a.begin(), a.end(), b.begin(), b.end(), out);
  if (operation != Operation::intersect) result.insert(result.end(), only_in_a.begin(), only_in_a.end());
  if (operation == Operation::unite) result.insert(result.end(), only_in_b.begin(), only_in_b.end());
  return result;
}

bool is_column(const cvArray_tag* array) {
  return cvGetDimensions(array).size() == 2 && cvGetDimensions(array)[1] == 1 && cvGetDimensions(array)[0] != 1;
}

template <Operation TheOperation>
void combine(Call& call) {
  const bool column = is_column(call[0]) && (TheOperation == Operation::subtract || is_column(call[1]));
  if (of_texts(call)) {
    const std::vector<ustring> texts = combined(texts_of(call[0]), texts_of(call[1]), TheOperation);
    return call.give(cvUniquePtr(kmf::string_vector_to_cvarray(texts, column ? 1 : 2)));
  }
  Numbers result;
  result.class_id = numbers_of(call[0]).class_id;
  result.re = combined(numbers_in(call[0]), numbers_in(call[1]), TheOperation);
  result.shape = column ? Shape{result.re.size(), 1} : Shape{1, result.re.size()};
  call.give(array_of(std::move(result)));
}

}  // namespace

std::vector<Builtin> set_builtins() {
  return {{"ismember", 2, 2, is_member},
          {"union", 2, 2, combine<Operation::unite>},
          {"intersect", 2, 2, combine<Operation::intersect>},
          {"setdiff", 2, 2, combine<Operation::subtract>}};
}

}  // namespace embedded::scripting_runtime
