// Joining arrays: [a, b; c, d].

#include "embedded/scripting_runtime/gather.hpp"
#include "embedded/scripting_runtime/indexing.hpp"
#include "embedded/scripting_runtime/numbers.hpp"
#include "embedded/scripting_runtime/object_arrays.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

enum class Direction : std::size_t { down = 0, across = 1 };

bool is_nothing(const cvArray_tag* array) {
  const Shape& shape = cvGetDimensions(array);
  return shape.size() == 2 && shape[0] == 0 && shape[1] == 0;
}

cvUniquePtr in_cell(Value value) {
  cvUniquePtr result(cvCreateCellMatrix(1, 1));
  cvSetCell(result.get(), 0, std::move(value).release().release());
  return result;
}

/// Class of the joined array. Characters and integers win over other numbers.
cvClassID joined_class(cvClassID a, cvClassID b) {
  if (a == b) return a;
  if (a == cvCHAR_CLASS || b == cvCHAR_CLASS) return cvCHAR_CLASS;
  if (is_integer_class(a)) return a;
  if (is_integer_class(b)) return b;
  return a == cvSINGLE_CLASS || b == cvSINGLE_CLASS ? cvSINGLE_CLASS : cvDOUBLE_CLASS;
}

/// Where elements of the parts stand in the joined array, whose shape it checks and holds.
class Layout {
 public:
  Layout(const std::vector<const cvArray_tag*>& parts, Direction direction)
      : dimension_(static_cast<std::size_t>(direction)), shape_(cvGetDimensions(parts.front())) {
    std::size_t total = 0;
    for (const cvArray_tag* part : parts) {
      const Shape& shape = cvGetDimensions(part);
      check_fit(shape);
      total += shape[dimension_];
    }
    shape_[dimension_] = total;
    checked_count(shape_);
    for (std::size_t d = 0; d < dimension_; ++d) inner_ *= shape_[d];
  }

  const Shape& shape() const { return shape_; }

  /// Calls `put(target, source)` for the elements of the next part.
  template <class Put>
  void place(const cvArray_tag* part, Put put) {
    const std::size_t run = inner_ * cvGetDimensions(part)[dimension_];
    const std::size_t stride = inner_ * shape_[dimension_];
    const std::size_t count = cvGetNumberOfElements(part);
    for (std::size_t i = 0; i < count; ++i) put(begin_ + i / run * stride + i % run, i);
    begin_ += run;
  }

 private:
  void check_fit(const Shape& shape) const {
    bool fits = shape.size() == shape_.size();
    for (std::size_t d = 0; fits && d < shape.size(); ++d) fits = d == dimension_ || shape[d] == shape_[d];
    if (!fits) throw_runtime_error("ConcatenationMismatch", shape_text(shape_), shape_text(shape));
  }

  std::size_t dimension_;
  Shape shape_;
  std::size_t inner_ = 1;
  std::size_t begin_ = 0;
};

cvUniquePtr join_numbers(const std::vector<const cvArray_tag*>& parts, Direction direction) {
  cvClassID class_id = cvGetClassID(parts.front());
  bool complex = false;
  for (const cvArray_tag* part : parts) {
    class_id = joined_class(class_id, cvGetClassID(part));
    complex = complex || cvIsComplex(part);
  }
  Layout layout(parts, direction);
  Numbers result = Numbers::zeros(layout.shape(), class_id, complex);
  for (const cvArray_tag* part : parts) {
    const Numbers numbers = numbers_of(part);
    layout.place(part, [&](std::size_t target, std::size_t source) {
      result.re[target] = numbers.re[source];
      if (complex) result.im[target] = numbers.at(source).imag();
    });
  }
  return array_of(std::move(result));
}

cvUniquePtr join_cells(const std::vector<const cvArray_tag*>& parts, Direction direction) {
  Layout layout(parts, direction);
  cvUniquePtr result(cvCreateCellMatrix(layout.shape()[0], layout.shape()[1]));
  for (const cvArray_tag* part : parts) {
    layout.place(part, [&](std::size_t target, std::size_t source) {
      cvSetCell(result.get(), target, cvCreateSharedCopy(cvGetCell(part, source)));
    });
  }
  return result;
}

cvUniquePtr join_structures(const std::vector<const cvArray_tag*>& parts, Direction direction) {
  const std::vector<std::string> fields = cvGetFieldNames(parts.front());
  Layout layout(parts, direction);
  cvUniquePtr result(cvCreateStructMatrix(layout.shape()[0], layout.shape()[1], fields));
  for (const cvArray_tag* part : parts) {
    if (cvGetFieldNames(part).size() != fields.size()) throw_runtime_error("DifferentFields");
    for (const std::string& field : fields) {
      if (cvGetFieldNumber(part, field.c_str()) < 0) throw_runtime_error("DifferentFields");
    }
    layout.place(part, [&](std::size_t target, std::size_t source) {
      for (const std::string& field : fields) {
        const cvArray_tag* value = cvGetField(part, source, field.c_str());
        cvSetField(result.get(), target, field.c_str(), cvCreateSharedCopy(value));
      }
    });
  }
  return result;
}

cvUniquePtr join_objects(const std::vector<const cvArray_tag*>& parts, Direction direction) {
  Layout layout(parts, direction);
  cvUniquePtr result = new_objects(parts.front(), layout.shape());
  for (const cvArray_tag* part : parts) {
    layout.place(part, [&](std::size_t target, std::size_t source) { put_object(result.get(), target, part, source); });
  }
  return result;
}

bool any_is(const std::vector<Value>& parts, bool (*test)(const cvArray_tag*)) {
  return std::any_of(parts.begin(), parts.end(), [&](const Value& part) { return test(part.array()); });
}

/// Parts of one family, or an error that names two that don't go together.
void check_families(const std::vector<const cvArray_tag*>& parts, bool structures) {
  const bool objects = holds_objects(parts.front());
  for (const cvArray_tag* part : parts) {
    if (objects ? hold_same_objects(parts.front(), part) : structures ? cvIsStruct(part) : holds_numbers(part)) continue;
    throw_runtime_error("CannotConcatenate", cvGetClassName(parts.front()), cvGetClassName(part));
  }
}

Value join(std::vector<Value> parts, Direction direction);

/// Numbers in the unit of the first part that has one.
Value join_quantities(std::vector<Value> parts, Direction direction) {
  const Unit unit = to_common_unit(parts, "[ ]");
  for (const Value& part : parts) {
    const bool number = part.is_number() || cvIsNumeric(part.array()) || cvIsLogical(part.array());
    if (unit.id() != 0 && !number) {
      throw_runtime_error("CannotConcatenate", std::string("kinemo.Value"), cvGetClassName(part.array()));
    }
  }
  return value_of({join(std::move(parts), direction), unit});
}

Value join(std::vector<Value> parts, Direction direction) {
  const bool cells = any_is(parts, cvIsCell);
  for (Value& part : parts) {
    if (part.is_number() && !cells) continue;
    if (cells && !cvIsCell(part.array()) && !is_nothing(part.array())) part = Value(in_cell(std::move(part)));
  }
  if (!cells && parts.size() > 1 && any_is(parts, is_value_object)) return join_quantities(std::move(parts), direction);
  std::vector<const cvArray_tag*> arrays;
  for (const Value& part : parts) {
    if (!is_nothing(part.array())) arrays.push_back(part.array());
  }
  if (arrays.empty()) {
    if (!parts.empty()) return std::move(parts.front());
    return cvUniquePtr(cvCreateDoubleMatrix(0, 0));
  }
  if (arrays.size() == 1 && (parts.size() == 1 || !any_is(parts, cvIsChar))) return Value::of(arrays.front());
  if (cells) return join_cells(arrays, direction);
  const bool structures = any_is(parts, cvIsStruct);
  check_families(arrays, structures);
  if (holds_objects(arrays.front())) return join_objects(arrays, direction);
  return structures ? join_structures(arrays, direction) : join_numbers(arrays, direction);
}

}  // namespace

Value joined_in_row(std::vector<Value> parts) {
  const bool numbers = std::all_of(parts.begin(), parts.end(), [](const Value& part) { return part.is_number(); });
  if (!numbers || parts.empty()) return join(std::move(parts), Direction::across);
  Numbers row;
  row.shape = {1, parts.size()};
  row.re.reserve(parts.size());
  for (const Value& part : parts) row.re.push_back(part.number());
  return array_of(std::move(row));
}

Value joined_in_column(std::vector<Value> parts) {
  if (parts.size() == 1) return std::move(parts.front());
  return join(std::move(parts), Direction::down);
}

Value cell_row(std::vector<Value> parts) {
  cvUniquePtr result(cvCreateCellMatrix(1, parts.size()));
  for (std::size_t i = 0; i < parts.size(); ++i) {
    cvSetCell(result.get(), i, std::move(parts[i]).release().release());
  }
  return result;
}

}  // namespace embedded::scripting_runtime
