// Functions that work along a dimension: sums, extremes, order.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace embedded::scripting_runtime {

namespace {

/// The runs of elements along one dimension of a shape.
struct Runs {
  Runs(const Shape& its_shape, std::size_t its_dimension) : shape(its_shape), dimension(its_dimension) {
    length = dimension < shape.size() ? shape[dimension] : 1;
    for (std::size_t d = 0; d < std::min(dimension, shape.size()); ++d) stride *= shape[d];
    count = 1;
    for (std::size_t d = 0; d < shape.size(); ++d) count *= d == dimension ? 1 : shape[d];
  }

  /// The shape with `size` in place of the runs' length.
  Shape with(std::size_t size) const {
    Shape result = shape;
    if (dimension < result.size()) result[dimension] = size;
    return result;
  }
  /// Element `i` of run `run`, and its place when runs have the length `its_length`.
  std::size_t at(std::size_t run, std::size_t i, std::size_t its_length) const {
    return run / stride * stride * its_length + run % stride + i * stride;
  }
  std::size_t at(std::size_t run, std::size_t i) const { return at(run, i, length); }

  Shape shape;
  std::size_t dimension;
  std::size_t length = 1;
  std::size_t stride = 1;
  std::size_t count = 1;
};

/// The dimension given as input `i`, or else the first one whose size isn't 1.
Runs runs_of(const Call& call, const Shape& shape, std::size_t i) {
  if (call.size() > i) {
    const std::size_t dimension = dimension_from(call.number(i));
    if (dimension == 0) throw_runtime_error("InvalidIndex", "0");
    return {shape, dimension - 1};
  }
  // The sum of a 0 by 0 array is 0, as if it were one empty column.
  if (shape == Shape{0, 0}) return {{0, 1}, 0};
  const auto first = std::find_if(shape.begin(), shape.end(), [](std::size_t size) { return size != 1; });
  return {shape, first == shape.end() ? 0 : static_cast<std::size_t>(first - shape.begin())};
}

template <class F>
void accumulate_runs(Call& call, Complex start, bool keep_all, F step) {
  const Numbers x = numbers_of(call[0]);
  const Runs runs = runs_of(call, x.shape, 1);
  const cvClassID class_id = arithmetic_class(x.class_id, cvDOUBLE_CLASS);
  Numbers result = Numbers::zeros(runs.with(keep_all ? runs.length : 1), class_id, x.is_complex());
  const auto put = [&](std::size_t place, Complex value) {
    result.re[place] = value.real();
    if (result.is_complex()) result.im[place] = value.imag();
  };
  for (std::size_t run = 0; run < runs.count; ++run) {
    Complex total = start;
    for (std::size_t i = 0; i < runs.length; ++i) {
      const std::size_t place = runs.at(run, i);
      total = x.is_complex() ? step(total, x.at(place)) : Complex(step(total, x.re[place]).real());
      if (keep_all) put(place, total);
    }
    if (!keep_all) put(runs.at(run, 0, 1), total);
  }
  call.give(array_of(std::move(result)));
}

Complex add(Complex a, Complex b) {
  return a + b;
}
Complex multiply(Complex a, Complex b) {
  return a.imag() == 0 && b.imag() == 0 ? Complex(a.real() * b.real()) : a * b;
}

void sum(Call& call) {
  accumulate_runs(call, 0, false, add);
}
void product(Call& call) {
  accumulate_runs(call, 1, false, multiply);
}
void running_sum(Call& call) {
  accumulate_runs(call, 0, true, add);
}
void running_product(Call& call) {
  accumulate_runs(call, 1, true, multiply);
}

void mean(Call& call) {
  const Runs runs = runs_of(call, cvGetDimensions(call[0]), 1);
  sum(call);
  Numbers total = numbers_of(call.outputs.back().get());
  for (double& part : total.re) part /= static_cast<double>(runs.length);
  for (double& part : total.im) part /= static_cast<double>(runs.length);
  call.outputs.back() = array_of(std::move(total));
}

template <bool All>
void test_runs(Call& call) {
  const Numbers x = numbers_of(call[0]);
  const Runs runs = runs_of(call, x.shape, 1);
  Numbers result = Numbers::zeros(runs.with(1), cvLOGICAL_CLASS);
  for (std::size_t run = 0; run < runs.count; ++run) {
    bool found = All;
    for (std::size_t i = 0; i < runs.length && found == All; ++i) found = x.at(runs.at(run, i)) != 0.0;
    result.re[runs.at(run, 0, 1)] = found ? 1 : 0;
  }
  call.give(array_of(std::move(result)));
}

// --- extremes

bool is_nan(Complex z) {
  return std::isnan(z.real()) || std::isnan(z.imag());
}

/// Whether `a` goes before `b`: by value, in complex arrays by magnitude. NaN is never chosen while there is a number.
template <bool Largest>
bool is_better(Complex a, Complex b, bool complex) {
  if (is_nan(b)) return !is_nan(a);
  const double x = complex ? std::abs(a) : a.real();
  const double y = complex ? std::abs(b) : b.real();
  return Largest ? x > y : x < y;
}

template <bool Largest>
void extreme_of_two(Call& call) {
  const Numbers a = numbers_of(call[0]);
  const Numbers b = numbers_of(call[1]);
  const bool complex = a.is_complex() || b.is_complex();
  Numbers result =
      Numbers::zeros(common_shape(a.shape, b.shape, call.name), arithmetic_class(a.class_id, b.class_id), complex);
  for_each_pair(a.shape, b.shape, result.shape, result.size(), [&](std::size_t k, std::size_t i, std::size_t j) {
    const Complex value = is_better<Largest>(b.at(j), a.at(i), complex) ? b.at(j) : a.at(i);
    result.re[k] = value.real();
    if (complex) result.im[k] = value.imag();
  });
  call.give(array_of(std::move(result)));
}

template <bool Largest>
void extreme(Call& call) {
  if (call.size() == 2) return extreme_of_two<Largest>(call);
  const Numbers x = numbers_of(call[0]);
  if (x.size() == 0) {
    call.give(cvUniquePtr(cvCreateDoubleMatrix(0, 0)));
    return call.give(cvUniquePtr(cvCreateDoubleMatrix(0, 0)));
  }
  const Runs runs = runs_of(call, x.shape, 2);
  std::vector<std::size_t> sources;
  Numbers places = Numbers::zeros(runs.with(1));
  for (std::size_t run = 0; run < runs.count; ++run) {
    std::size_t best = 0;
    for (std::size_t i = 1; i < runs.length; ++i) {
      if (is_better<Largest>(x.at(runs.at(run, i)), x.at(runs.at(run, best)), x.is_complex())) best = i;
    }
    sources.push_back(runs.at(run, best));
    places.re[runs.at(run, 0, 1)] = static_cast<double>(best + 1);
  }
  call.give(gather(call[0], runs.with(1), sources));
  call.give(array_of(std::move(places)));
}

// --- order

/// Before in ascending order: by value, in complex arrays by magnitude and angle. NaN comes last.
bool is_before(Complex a, Complex b, bool complex) {
  if (is_nan(a) || is_nan(b)) return !is_nan(a) && is_nan(b);
  if (!complex) return a.real() < b.real();
  return std::pair(std::abs(a), std::arg(a)) < std::pair(std::abs(b), std::arg(b));
}

bool is_descending(const Call& call) {
  return call.size() > 1 && cvIsChar(call[call.size() - 1]) &&
         kmf::cvarray_to_string(call[call.size() - 1]) == "descend";
}

void sort_texts(Call& call, bool unique) {
  const std::vector<ustring> texts = kmf::cvarray_to_ustring_vector(call[0]);
  std::vector<std::size_t> order(texts.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const bool descending = !unique && is_descending(call);
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return descending ? texts[b] < texts[a] : texts[a] < texts[b];
  });
  if (unique) {
    order.erase(
        std::unique(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return texts[a] == texts[b]; }),
        order.end());
  }
  Shape shape = cvGetDimensions(call[0]);
  if (unique) shape = shape[0] == 1 && shape[1] > 0 ? Shape{1, order.size()} : Shape{order.size(), 1};
  call.give(gather(call[0], shape, order));
  Numbers places = Numbers::zeros(shape);
  for (std::size_t i = 0; i < order.size(); ++i) places.re[i] = static_cast<double>(order[i] + 1);
  call.give(array_of(std::move(places)));
}

void sort(Call& call) {
  if (cvIsCell(call[0])) return sort_texts(call, false);
  const Numbers x = numbers_of(call[0]);
  const bool descending = is_descending(call);
  const bool with_dimension = call.size() > 1 && !cvIsChar(call[1]);
  const Runs runs = runs_of(call, x.shape, with_dimension ? 1 : call.size());
  std::vector<std::size_t> sources(x.size());
  Numbers places = Numbers::zeros(x.shape);
  std::vector<std::size_t> order(runs.length);
  InterruptPoll poll;
  for (std::size_t run = 0; run < runs.count; ++run) {
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
      poll.step();
      const Complex first = x.at(runs.at(run, descending ? b : a));
      const Complex second = x.at(runs.at(run, descending ? a : b));
      return is_before(first, second, x.is_complex());
    });
    for (std::size_t i = 0; i < runs.length; ++i) {
      sources[runs.at(run, i)] = runs.at(run, order[i]);
      places.re[runs.at(run, i)] = static_cast<double>(order[i] + 1);
    }
  }
  call.give(gather(call[0], x.shape, sources));
  call.give(array_of(std::move(places)));
}

void unique(Call& call) {
  if (cvIsCell(call[0])) return sort_texts(call, true);
  const Numbers x = numbers_of(call[0]);
  std::vector<std::size_t> order(x.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  InterruptPoll poll;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    poll.step();
    return is_before(x.at(a), x.at(b), x.is_complex());
  });
  order.erase(std::unique(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return x.at(a) == x.at(b); }),
              order.end());
  const bool row = x.is_matrix() && x.shape[0] == 1 && x.shape[1] > 0;
  call.give(gather(call[0], row ? Shape{1, order.size()} : Shape{order.size(), 1}, order));
}

void find(Call& call) {
  const Numbers x = numbers_of(call[0]);
  const double most = call.size() > 1 ? call.number(1) : std::numeric_limits<double>::infinity();
  std::vector<double> linear, rows, columns;
  for (std::size_t i = 0; i < x.size() && static_cast<double>(linear.size()) < most; ++i) {
    if (x.at(i) == 0.0) continue;
    linear.push_back(static_cast<double>(i + 1));
    rows.push_back(static_cast<double>(i % x.shape[0] + 1));
    columns.push_back(static_cast<double>(i / x.shape[0] + 1));
  }
  const bool row = x.is_matrix() && x.shape[0] == 1 && x.shape[1] != 1;
  const Shape shape = row ? Shape{1, linear.size()} : Shape{x.size() == 0 ? 0 : linear.size(), x.size() == 0 ? 0U : 1U};
  if (call.wanted < 2) return call.give(array_of({shape, cvDOUBLE_CLASS, std::move(linear), {}}));
  call.give(array_of({shape, cvDOUBLE_CLASS, std::move(rows), {}}));
  call.give(array_of({shape, cvDOUBLE_CLASS, std::move(columns), {}}));
}

}  // namespace

std::vector<Builtin> reduction_builtins() {
  return {{"sum", 1, 2, sum},
          {"prod", 1, 2, product},
          {"cumsum", 1, 2, running_sum},
          {"cumprod", 1, 2, running_product},
          {"mean", 1, 2, mean},
          {"any", 1, 2, test_runs<false>},
          {"all", 1, 2, test_runs<true>},
          {"max", 1, 3, extreme<true>},
          {"min", 1, 3, extreme<false>},
          {"sort", 1, 3, sort},
          {"unique", 1, 1, unique},
          {"find", 1, 2, find}};
}

}  // namespace embedded::scripting_runtime
