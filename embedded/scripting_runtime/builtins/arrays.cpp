// Making and shaping arrays.

#include "embedded/scripting_runtime/arithmetic.hpp"
#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <cmath>
#include <limits>

namespace embedded::scripting_runtime {

namespace {

cvClassID class_named(const std::string& name) {
  for (int id = cvLOGICAL_CLASS; id <= cvUINT64_CLASS; ++id) {
    if (name == class_name_of(static_cast<cvClassID>(id))) return static_cast<cvClassID>(id);
  }
  throw_runtime_error("UnknownClass", name);
}

/// Sizes from inputs such as (2, 3), ([2 3]) or (4), which means 4 by 4.
Shape shape_from(const Call& call, std::size_t begin, std::size_t end) {
  std::vector<double> sizes;
  for (std::size_t i = begin; i < end; ++i) {
    const Numbers numbers = numbers_of(call[i]);
    sizes.insert(sizes.end(), numbers.re.begin(), numbers.re.end());
  }
  if (sizes.empty()) sizes = {1};
  if (sizes.size() == 1) sizes.push_back(sizes.front());
  Shape shape;
  for (const double size : sizes) shape.push_back(dimension_from(size));
  while (shape.size() > 2 && shape.back() == 1) shape.pop_back();
  return shape;
}

/// An array of one value, with the class named by a last input of text.
void filled(Call& call, double value) {
  std::size_t end = call.size();
  cvClassID class_id = cvDOUBLE_CLASS;
  if (end > 0 && cvIsChar(call[end - 1])) class_id = class_named(call.text(--end));
  Numbers result = Numbers::zeros(shape_from(call, 0, end), class_id);
  std::fill(result.re.begin(), result.re.end(), value);
  call.give(array_of(std::move(result)));
}

void filled_logical(Call& call, double value) {
  Numbers result = Numbers::zeros(shape_from(call, 0, call.size()), cvLOGICAL_CLASS);
  std::fill(result.re.begin(), result.re.end(), value);
  call.give(array_of(std::move(result)));
}

void zeros(Call& call) {
  filled(call, 0);
}
void ones(Call& call) {
  filled(call, 1);
}
void pi(Call& call) {
  filled(call, std::acos(-1.0));
}
void e(Call& call) {
  filled(call, std::exp(1.0));
}
void infinity(Call& call) {
  filled(call, std::numeric_limits<double>::infinity());
}
void not_a_number(Call& call) {
  filled(call, std::numeric_limits<double>::quiet_NaN());
}
void logical_true(Call& call) {
  filled_logical(call, 1);
}
void logical_false(Call& call) {
  filled_logical(call, 0);
}

void imaginary_unit(Call& call) {
  call.give(array_of({{1, 1}, cvDOUBLE_CLASS, {0}, {1}}));
}

/// The distance from |x| to the next larger number.
void epsilon(Call& call) {
  Numbers x = call.size() == 0 ? Numbers::scalar(1) : numbers_of(call[0]);
  for (double& value : x.re) {
    value = std::abs(value);
    value = std::nextafter(value, std::numeric_limits<double>::infinity()) - value;
  }
  x.im.clear();
  call.give(array_of(std::move(x)));
}

void eye(Call& call) {
  Numbers result = Numbers::zeros(shape_from(call, 0, call.size()));
  if (!result.is_matrix()) throw_runtime_error("NotMatrix", shape_text(result.shape));
  for (std::size_t i = 0; i < std::min(result.shape[0], result.shape[1]); ++i) result.re[i * result.shape[0] + i] = 1;
  call.give(array_of(std::move(result)));
}

void size(Call& call) {
  const Shape& shape = cvGetDimensions(call[0]);
  if (call.size() == 2) {
    const std::size_t dimension = dimension_from(call.number(1));
    if (dimension == 0) throw_runtime_error("InvalidIndex", "0");
    return call.give(static_cast<double>(dimension <= shape.size() ? shape[dimension - 1] : 1));
  }
  if (call.wanted <= 1) return call.give(array_of(Numbers::row({shape.begin(), shape.end()})));
  const auto wanted = static_cast<std::size_t>(call.wanted);
  for (std::size_t d = 0; d < wanted; ++d) {
    double value = d < shape.size() ? static_cast<double>(shape[d]) : 1;
    for (std::size_t more = wanted; d + 1 == wanted && more < shape.size(); ++more) {
      value *= static_cast<double>(shape[more]);
    }
    call.give(value);
  }
}

void numel(Call& call) {
  call.give(static_cast<double>(cvGetNumberOfElements(call[0])));
}
void ndims(Call& call) {
  call.give(static_cast<double>(cvGetDimensions(call[0]).size()));
}
void is_empty(Call& call) {
  call.give(cvGetNumberOfElements(call[0]) == 0);
}

void length(Call& call) {
  const Shape& shape = cvGetDimensions(call[0]);
  const bool empty = cvGetNumberOfElements(call[0]) == 0;
  call.give(empty ? 0.0 : static_cast<double>(*std::max_element(shape.begin(), shape.end())));
}

void linspace(Call& call) {
  const double first = call.number(0);
  const double last = call.number(1);
  constexpr double usual_count = 100;
  const std::size_t count = std::max<std::size_t>(1, dimension_from(call.size() > 2 ? call.number(2) : usual_count));
  Numbers result = Numbers::zeros({1, count});
  for (std::size_t i = 0; i + 1 < count; ++i) {
    result.re[i] = first + (last - first) * static_cast<double>(i) / static_cast<double>(count - 1);
  }
  result.re.back() = last;
  call.give(array_of(std::move(result)));
}

/// Sizes, at most one of them empty: that dimension follows from the others.
Shape reshape_sizes(const Call& call, std::size_t count) {
  if (call.size() == 2) return shape_from(call, 1, 2);
  Shape shape;
  std::size_t open = call.size();
  std::size_t known = 1;
  for (std::size_t i = 1; i < call.size(); ++i) {
    const bool is_open = cvIsEmpty(call[i]);
    if (is_open && open < call.size()) throw_runtime_error("SeveralOpenSizes", std::string(call.name));
    if (is_open) open = i - 1;
    shape.push_back(is_open ? 1 : dimension_from(call.number(i)));
    known *= shape.back();
  }
  if (open < shape.size() && known > 0) shape[open] = count / known;
  return shape;
}

void reshape(Call& call) {
  const std::size_t count = cvGetNumberOfElements(call[0]);
  const Shape shape = reshape_sizes(call, count);
  if (checked_count(shape) != count) {
    throw_runtime_error("CannotReshape", shape_text(cvGetDimensions(call[0])), shape_text(shape));
  }
  call.give(reshaped(call[0], shape));
}

void repmat(Call& call) {
  const Shape times = shape_from(call, 1, call.size());
  Shape from = cvGetDimensions(call[0]);
  from.resize(std::max(from.size(), times.size()), 1);
  Shape shape = from;
  for (std::size_t d = 0; d < times.size(); ++d) shape[d] = checked_count({from[d], times[d]});
  const std::size_t count = checked_count(shape);
  std::vector<std::size_t> sources(count);
  for (std::size_t k = 0; k < count; ++k) {
    std::size_t rest = k;
    std::size_t stride = 1;
    for (std::size_t d = 0; d < shape.size(); ++d) {
      sources[k] += rest % shape[d] % from[d] * stride;
      rest /= shape[d];
      stride *= from[d];
    }
  }
  call.give(gather(call[0], shape, sources));
}

void transpose_of(Call& call) {
  call.give(std::move(transpose(Operator::transpose, Value::of(call[0]))).release());
}

}  // namespace

std::vector<Builtin> array_builtins() {
  return {{"zeros", 0, any_number, zeros},
          {"ones", 0, any_number, ones},
          {"eye", 0, 2, eye},
          {"true", 0, any_number, logical_true},
          {"false", 0, any_number, logical_false},
          {"pi", 0, any_number, pi},
          {"e", 0, any_number, e},
          {"inf", 0, any_number, infinity},
          {"Inf", 0, any_number, infinity},
          {"nan", 0, any_number, not_a_number},
          {"NaN", 0, any_number, not_a_number},
          {"eps", 0, 1, epsilon},
          {"i", 0, 0, imaginary_unit},
          {"j", 0, 0, imaginary_unit},
          {"size", 1, 2, size},
          {"numel", 1, 1, numel},
          {"length", 1, 1, length},
          {"ndims", 1, 1, ndims},
          {"isempty", 1, 1, is_empty},
          {"linspace", 2, 3, linspace},
          {"reshape", 2, any_number, reshape},
          {"repmat", 2, any_number, repmat},
          {"transpose", 1, 1, transpose_of}};
}

}  // namespace embedded::scripting_runtime
