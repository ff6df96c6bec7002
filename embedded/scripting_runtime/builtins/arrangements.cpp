// Arrays put together, turned round, and taken apart.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <cmath>

namespace embedded::scripting_runtime {

namespace {

std::vector<Value> inputs_of(const Call& call) {
  std::vector<Value> result;
  for (std::size_t i = 0; i < call.size(); ++i) result.push_back(Value::of(call[i]));
  return result;
}

void join_across(Call& call) {
  call.give(std::move(joined_in_row(inputs_of(call))).release());
}

void join_down(Call& call) {
  if (call.size() == 0) return call.give(cvUniquePtr(cvCreateDoubleMatrix(0, 0)));
  call.give(std::move(joined_in_column(inputs_of(call))).release());
}

/// Rows or columns in reverse order.
template <bool Rows>
void flip(Call& call) {
  const Shape& shape = cvGetDimensions(call[0]);
  if (shape.size() > 2) throw_runtime_error("NotMatrix", shape_text(shape));
  std::vector<std::size_t> sources;
  for (std::size_t column = 0; column < shape[1]; ++column) {
    for (std::size_t row = 0; row < shape[0]; ++row) {
      const std::size_t from_row = Rows ? shape[0] - 1 - row : row;
      const std::size_t from_column = Rows ? column : shape[1] - 1 - column;
      sources.push_back(from_column * shape[0] + from_row);
    }
  }
  call.give(gather(call[0], shape, sources));
}

enum class Form { row, column, vector };

template <Form TheForm>
void has_form(Call& call) {
  const Shape& shape = cvGetDimensions(call[0]);
  const bool row = shape.size() == 2 && shape[0] == 1;
  const bool column = shape.size() == 2 && shape[1] == 1;
  const bool vector = (row || column) && cvGetNumberOfElements(call[0]) > 0;
  call.give(TheForm == Form::row ? row : TheForm == Form::column ? column : vector);
}

/// Number of elements other than zero.
void count_nonzero(Call& call) {
  const Numbers x = numbers_of(call[0]);
  double count = 0;
  for (std::size_t i = 0; i < x.size(); ++i) count += x.at(i) == 0.0 ? 0 : 1;
  call.give(count);
}

/// Of all elements of a vector, or of each column of a matrix.
template <double (*Of)(std::vector<double>)>
void by_columns(Call& call) {
  const Numbers x = numbers_of(call[0]);
  if (!x.is_matrix()) throw_runtime_error("NotMatrix", shape_text(x.shape));
  const bool vector = x.rows() == 1 || x.columns() == 1 || x.size() == 0;
  const std::size_t rows = vector ? x.size() : x.rows();
  Numbers result = Numbers::zeros({1, vector ? 1 : x.columns()});
  for (std::size_t column = 0; column < result.size(); ++column) {
    const auto begin = x.re.begin() + static_cast<std::ptrdiff_t>(column * rows);
    result.re[column] = Of({begin, begin + static_cast<std::ptrdiff_t>(rows)});
  }
  call.give(array_of(std::move(result)));
}

double median_of(std::vector<double> values) {
  const bool undefined = std::any_of(values.begin(), values.end(), [](double x) { return std::isnan(x); });
  if (values.empty() || undefined) return std::nan("");
  std::sort(values.begin(), values.end());
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

double variance_of(std::vector<double> values) {
  if (values.empty()) return std::nan("");
  const auto count = static_cast<double>(values.size());
  double mean = 0;
  for (const double value : values) mean += value / count;
  double sum = 0;
  for (const double value : values) sum += (value - mean) * (value - mean);
  return values.size() == 1 ? 0 : sum / (count - 1);
}

double deviation_of(std::vector<double> values) {
  return std::sqrt(variance_of(std::move(values)));
}

/// Value of a polynomial whose coefficients begin with the highest power.
void polynomial(Call& call) {
  const Numbers p = numbers_of(call[0]);
  const Numbers x = numbers_of(call[1]);
  Numbers result = Numbers::zeros(x.shape, cvDOUBLE_CLASS, true);
  InterruptPoll poll;
  for (std::size_t i = 0; i < x.size(); ++i) {
    Complex value = 0;
    for (std::size_t k = 0; k < p.size(); ++k, poll.step()) value = value * x.at(i) + p.at(k);
    result.set(i, value);
  }
  call.give(array_of(std::move(result)));
}

/// The integral of y over x by the trapezoidal rule; x is 1, 2, … where only y is given.
void trapezoids(Call& call) {
  const Numbers y = numbers_of(call[call.size() - 1]);
  const Numbers x = numbers_of(call[0]);
  if (x.size() != y.size()) throw_runtime_error("SizeMismatch", "trapz", shape_text(x.shape), shape_text(y.shape));
  double sum = 0;
  for (std::size_t i = 1; i < y.size(); ++i) {
    sum += (call.size() == 1 ? 1 : x.re[i] - x.re[i - 1]) * (y.re[i] + y.re[i - 1]) / 2;
  }
  call.give(sum);
}

/// A cell for each element.
void to_cells(Call& call) {
  const std::size_t count = cvGetNumberOfElements(call[0]);
  cvUniquePtr result(cvCreateCellMatrix(1, count));
  for (std::size_t i = 0; i < count; ++i) {
    std::vector<Subscript> place;
    place.emplace_back(Value(static_cast<double>(i + 1)));
    cvSetCell(result.get(), i, std::move(indexed(call[0], place)).release().release());
  }
  cvSetDimensions(result.get(), cvGetDimensions(call[0]));
  call.give(std::move(result));
}

/// Each input to an output, or the only one to all.
void deal(Call& call) {
  const auto wanted = static_cast<std::size_t>(std::max(call.wanted, 1));
  if (call.size() != 1 && call.size() != wanted) {
    throw_runtime_error("TooFewValues", std::to_string(call.size()), std::to_string(wanted));
  }
  for (std::size_t i = 0; i < wanted; ++i) call.give(cvUniquePtr(cvCreateSharedCopy(call[call.size() == 1 ? 0 : i])));
}

}  // namespace

std::vector<Builtin> arrangement_builtins() {
  return {{"horzcat", 0, any_number, join_across},
          {"vertcat", 0, any_number, join_down},
          {"fliplr", 1, 1, flip<false>},
          {"flipud", 1, 1, flip<true>},
          {"isrow", 1, 1, has_form<Form::row>},
          {"iscolumn", 1, 1, has_form<Form::column>},
          {"isvector", 1, 1, has_form<Form::vector>},
          {"nnz", 1, 1, count_nonzero},
          {"median", 1, 1, by_columns<median_of>},
          {"var", 1, 1, by_columns<variance_of>},
          {"std", 1, 1, by_columns<deviation_of>},
          {"polyval", 2, 2, polynomial},
          {"trapz", 1, 2, trapezoids},
          {"num2cell", 1, 1, to_cells},
          {"deal", 1, any_number, deal}};
}

}  // namespace embedded::scripting_runtime
