#include "embedded/scripting_runtime/assign.hpp"

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/quantity.hpp"

#include <functional>

namespace embedded::scripting_runtime {

namespace {

using Steps = std::vector<Step>;
using Leaf = std::function<void(cvUniquePtr& part)>;

/// Goes down the first `count` of a chain of steps and lets `leaf` change what stands there.
class Change {
 public:
  Change(const Steps& steps, std::size_t count, const Leaf& leaf) : steps_(steps), count_(count), leaf_(leaf) {}

  void at(cvUniquePtr& target, std::size_t step) const {
    const DepthGuard depth;
    if (step == count_) return leaf_(target);
    switch (steps_[step].kind) {
      case Step::Kind::field:
        return field(target, step);
      case Step::Kind::cell:
        return cell(target, step);
      case Step::Kind::index:
        return element_field(target, step);
    }
  }

 private:
  /// Changes an inner array that nobody else holds meanwhile, so that it needn't be copied.
  template <class Put>
  void inner(const cvArray_tag* before, std::size_t step, Put put) const {
    cvUniquePtr part(before != nullptr ? cvCreateSharedCopy(before) : nullptr);
    if (part) put(nullptr);
    try {
      at(part, step);
    } catch (...) {
      if (part) put(part.release());
      throw;
    }
    put(part.release());
  }

  void field(cvUniquePtr& target, std::size_t step) const {
    const std::string& name = steps_[step].field;
    if (is_nothing(target.get())) return new_structure(target, {{1, 1}, 0}, name, step + 1);
    if (cvGetClassID(target.get()) == cvOBJECT_CLASS) return property(target, name, step + 1);
    if (!cvIsStruct(target.get())) throw_runtime_error("NoFields", name, cvGetClassName(target.get()));
    const std::size_t count = cvGetNumberOfElements(target.get());
    if (count != 1) throw_runtime_error("NotOneStructure", std::to_string(count));
    field_of(target, 0, name, step + 1);
  }

  void field_of(cvUniquePtr& target, std::size_t element, const std::string& name, std::size_t step) const {
    const char* field = name.c_str();
    inner(cvGetField(target.get(), element, field), step,
          [&](cvArray_tag* value) { cvSetField(target.get(), element, field, value); });
  }

  /// A structure that comes into being with its first field.
  void new_structure(cvUniquePtr& target, const OnePlace& place, const std::string& name, std::size_t step) const {
    checked_count(place.shape);
    cvUniquePtr part;
    at(part, step);
    const cvUniquePtr none(cvCreateStructMatrix(0, 0, {name}));
    cvUniquePtr made = grown(none.get(), place.shape);
    cvSetField(made.get(), place.index, name.c_str(), part.release());
    target = std::move(made);
  }

  void property(cvUniquePtr& target, const std::string& name, std::size_t step) const {
    cvUniquePtr part(cvGetProperty(target.get(), 0, name.c_str()));
    if (!part) throw_runtime_error("NoSuchProperty", name, cvGetClassName(target.get()));
    at(part, step);
    cvUniquePtr changed(cvCreateSharedCopy(target.get()));
    cvSetProperty(changed.get(), 0, name.c_str(), part.release());
    if (is_value_object(changed.get())) quantity_of(changed.get());  // refuses what isn't a unit
    target = std::move(changed);
  }

  void cell(cvUniquePtr& target, std::size_t step) const {
    const cvUniquePtr made(is_nothing(target.get()) ? cvCreateCellMatrix(0, 0) : nullptr);
    const cvArray_tag* before = made ? made.get() : target.get();
    if (!cvIsCell(before)) throw_runtime_error("NotCell", cvGetClassName(before));
    const OnePlace place = one_place(before, steps_[step].subscripts);
    if (place.shape == cvGetDimensions(before)) {
      return inner(cvGetCell(target.get(), place.index), step + 1,
                   [&](cvArray_tag* value) { cvSetCell(target.get(), place.index, value); });
    }
    checked_count(place.shape);
    cvUniquePtr part;
    at(part, step + 1);
    target = grown(before, place.shape);
    cvSetCell(target.get(), place.index, part.release());
  }

  /// a(i).f…: a field of one element of an array of structures.
  void element_field(cvUniquePtr& target, std::size_t step) const {
    const bool last = step + 1 == count_;
    if (last || steps_[step + 1].kind != Step::Kind::field) throw_runtime_error("IndexOfIndex");
    const std::string& name = steps_[step + 1].field;
    const bool nothing = is_nothing(target.get());
    const OnePlace place = one_place(target.get(), steps_[step].subscripts);
    if (nothing) return new_structure(target, place, name, step + 2);
    if (cvGetClassID(target.get()) == cvOBJECT_CLASS && place.shape == Shape{1, 1}) return at(target, step + 1);
    if (!cvIsStruct(target.get())) throw_runtime_error("NoFields", name, cvGetClassName(target.get()));
    if (place.shape == cvGetDimensions(target.get())) return field_of(target, place.index, name, step + 2);
    checked_count(place.shape);
    cvUniquePtr part;
    at(part, step + 2);
    target = grown(target.get(), place.shape);
    cvSetField(target.get(), place.index, name.c_str(), part.release());
  }

  const Steps& steps_;
  std::size_t count_;
  const Leaf& leaf_;
};

}  // namespace

void assign(cvUniquePtr& target, const Steps& steps, Value value) {
  if (!steps.empty() && steps.back().kind == Step::Kind::index) {
    const Leaf put = [&](cvUniquePtr& part) { assign_elements(part, steps.back().subscripts, value); };
    return Change(steps, steps.size() - 1, put).at(target, 0);
  }
  const Leaf replace = [&](cvUniquePtr& part) { part = std::move(value).release(); };
  Change(steps, steps.size(), replace).at(target, 0);
}

void remove_elements(cvUniquePtr& target, const Steps& steps) {
  const Leaf remove = [&](cvUniquePtr& part) { delete_elements(part, steps.back().subscripts); };
  Change(steps, steps.size() - 1, remove).at(target, 0);
}

cvUniquePtr part_at(const cvArray_tag* array, const Step& step) {
  if (array == nullptr) return nullptr;
  if (step.kind == Step::Kind::field) {
    if (cvGetClassID(array) == cvOBJECT_CLASS) return cvUniquePtr(cvGetProperty(array, 0, step.field.c_str()));
    if (!cvIsStruct(array) || cvGetNumberOfElements(array) != 1) return nullptr;
    const cvArray_tag* field = cvGetField(array, 0, step.field.c_str());
    return cvUniquePtr(field != nullptr ? cvCreateSharedCopy(field) : nullptr);
  }
  const OnePlace place = one_place(array, step.subscripts);
  if (place.shape != cvGetDimensions(array)) return nullptr;
  if (step.kind == Step::Kind::index) return std::move(indexed(array, step.subscripts)).release();
  if (!cvIsCell(array)) throw_runtime_error("NotCell", cvGetClassName(array));
  return cvUniquePtr(cvCreateSharedCopy(cvGetCell(array, place.index)));
}

}  // namespace embedded::scripting_runtime
