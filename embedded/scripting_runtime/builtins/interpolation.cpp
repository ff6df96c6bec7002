// interp1(x, v, xq): the values between the points (x, v) of a table.
// interp1(x, v, xq, method), interp1(x, v, xq, method, outside); outside is 'extrap' or the value beyond the ends.

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/numbers.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace embedded::scripting_runtime {

namespace {

/// Points in rising order.
struct Table {
  std::vector<double> x;
  std::vector<double> v;
};

using Method = double (*)(const Table& table, std::size_t left, double at);

double linear(const Table& table, std::size_t left, double at) {
  const double share = (at - table.x[left]) / (table.x[left + 1] - table.x[left]);
  return share == 1 ? table.v[left + 1] : table.v[left] + share * (table.v[left + 1] - table.v[left]);
}
/// Half-way the later point.
double nearest(const Table& table, std::size_t left, double at) {
  return at - table.x[left] < table.x[left + 1] - at ? table.v[left] : table.v[left + 1];
}
double previous(const Table& table, std::size_t left, double at) {
  return at < table.x[left + 1] ? table.v[left] : table.v[left + 1];
}
double next(const Table& table, std::size_t left, double at) {
  return at > table.x[left] ? table.v[left + 1] : table.v[left];
}

Method method_of(const Call& call) {
  constexpr std::size_t place = 3;
  const std::string name = call.size() > place ? call.text(place) : "linear";
  if (name == "linear") return linear;
  if (name == "nearest") return nearest;
  if (name == "previous") return previous;
  if (name == "next") return next;
  throw_runtime_error("UnknownMethod", name, "'linear', 'nearest', 'previous', 'next'");
}

std::size_t vector_length(const Call& call, std::size_t input, const Numbers& numbers) {
  const bool vector = numbers.is_matrix() && (numbers.shape[0] == 1 || numbers.shape[1] == 1);
  if (!vector || numbers.is_complex())
    throw_runtime_error("NotRealVector", std::string(call.name), std::to_string(input + 1));
  return numbers.size();
}

Table table_of(const Call& call) {
  const Numbers x = numbers_of(call[0]);
  const Numbers v = numbers_of(call[1]);
  if (vector_length(call, 0, x) != vector_length(call, 1, v))
    throw_runtime_error("SizeMismatch", std::string(call.name), shape_text(x.shape), shape_text(v.shape));
  if (std::any_of(x.re.begin(), x.re.end(), [](double value) { return std::isnan(value); }))
    throw_runtime_error("TooFewPoints", std::string(call.name));
  std::vector<std::size_t> order(x.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::sort(order.begin(), order.end(), [&x](std::size_t a, std::size_t b) { return x.re[a] < x.re[b]; });
  Table table;
  for (const std::size_t i : order) {
    table.x.push_back(x.re[i]);
    table.v.push_back(v.re[i]);
  }
  if (table.x.size() < 2 || std::adjacent_find(table.x.begin(), table.x.end()) != table.x.end())
    throw_runtime_error("TooFewPoints", std::string(call.name));
  return table;
}

/// What lies beyond the ends of the table.
struct Outside {
  bool continues = false;
  double value = std::nan("");
};

Outside outside_of(const Call& call) {
  constexpr std::size_t place = 4;
  if (call.size() <= place) return {};
  if (!cvIsChar(call[place])) return {false, call.number(place)};
  if (call.text(place) != "extrap") throw_runtime_error("UnknownMethod", call.text(place), "'extrap', a number");
  return {true, 0};
}

double looked_up(const Table& table, Method method, const Outside& outside, double at) {
  if (std::isnan(at)) return at;
  if (!outside.continues && (at < table.x.front() || at > table.x.back())) return outside.value;
  const auto above = std::upper_bound(table.x.begin() + 1, table.x.end() - 1, at);
  return method(table, static_cast<std::size_t>(above - table.x.begin()) - 1, at);
}

void interpolate(Call& call) {
  const Table table = table_of(call);
  const Method method = method_of(call);
  const Outside outside = outside_of(call);
  Numbers result = numbers_of(call[2]);
  if (result.is_complex()) throw_runtime_error("NotRealVector", std::string(call.name), "3");
  result.class_id = cvDOUBLE_CLASS;
  InterruptPoll poll;
  for (double& value : result.re) {
    poll.step();
    value = looked_up(table, method, outside, value);
  }
  call.give(array_of(std::move(result)));
}

}  // namespace

std::vector<Builtin> interpolation_builtins() {
  constexpr int most = 5;
  return {{"interp1", 3, most, interpolate}};
}

}  // namespace embedded::scripting_runtime
