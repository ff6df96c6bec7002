#include "embedded/scripting_runtime/functions.hpp"

#include "embedded/scripting_runtime/builtin.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/errors.hpp"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace embedded::scripting_runtime {

namespace {

struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const noexcept { return std::hash<std::string_view>()(text); }
};

using Table = std::unordered_map<std::string, std::shared_ptr<const kmf::CvFunction>, TextHash, std::equal_to<>>;

Table make_table() {
  Table table;
  for (const Builtin& builtin : builtins()) {
    table[builtin.name] = std::make_shared<const kmf::CvFunction>(function_of(builtin));
  }
  return table;
}

/// Never destroyed, since modules that registered functions may be gone by then.
Table& table() {
  static auto* instance = new Table(make_table());
  return *instance;
}

/// Outputs of a running call: released unless they are handed on. There is a place also when none are asked for.
class Slots {
 public:
  explicit Slots(int count) : count_(static_cast<std::size_t>(std::max(count, 1))) {
    if (count_ > few_.size()) many_.resize(count_, nullptr);
  }
  Slots(const Slots&) = delete;
  Slots& operator=(const Slots&) = delete;
  ~Slots() {
    for (std::size_t i = 0; i < count_; ++i) cvDestroyArray(data()[i]);
  }

  std::size_t size() const { return count_; }
  cvArray_tag** data() { return many_.empty() ? few_.data() : many_.data(); }
  cvArray_tag* release(std::size_t i) { return std::exchange(data()[i], nullptr); }

 private:
  std::size_t count_;
  std::array<cvArray_tag*, 4> few_{};
  std::vector<cvArray_tag*> many_;
};

class NamedFunction : public Callable {
 public:
  explicit NamedFunction(std::string name) : name_(std::move(name)) {}

  Outputs call(int nOut, int nIn, cvArray_tag** inputs) const override { return call_named(name_, nOut, nIn, inputs); }

 private:
  std::string name_;
};

void run(const kmf::CvFunction& function, std::string_view name, int nOut, Slots& made, int nIn, cvArray_tag** inputs) {
  constexpr std::size_t levels = 4;  // of stack, compared with the walk over one node
  const DepthGuard depth(levels);
  function(nOut, made.data(), nIn, inputs);
  for (int i = 0; i < nOut; ++i) {
    if (made.data()[i] == nullptr) throw_runtime_error("TooManyOutputs", std::string(name), std::to_string(nOut));
  }
}

std::shared_ptr<const kmf::CvFunction> function_or_throw(std::string_view name, int nIn, cvArray_tag** inputs) {
  auto function = find_function(name, nIn, inputs);
  if (!function) throw_runtime_error("UndefinedFunction", std::string(name));
  return function;
}

}  // namespace

std::shared_ptr<const kmf::CvFunction> find_function(std::string_view name) {
  const auto found = table().find(name);
  return found == table().end() ? class_dispatch().find_function(name) : found->second;
}

std::shared_ptr<const kmf::CvFunction> find_function(std::string_view name, int nIn, const cvArray_tag* const* inputs) {
  if (nIn > 0 && cvGetClassID(inputs[0]) == cvOBJECT_CLASS && !is_value_object(inputs[0])) {
    if (auto method = class_dispatch().find_method(cvGetClassName(inputs[0]), name)) return method;
  }
  return find_function(name);
}

std::vector<std::string> function_names() {
  std::vector<std::string> result;
  for (const auto& [name, function] : table()) result.push_back(name);
  std::sort(result.begin(), result.end());
  return result;
}

Outputs call_function(const kmf::CvFunction& function, std::string_view name, int nOut, int nIn, cvArray_tag** inputs) {
  Slots made(nOut);
  run(function, name, nOut, made, nIn, inputs);
  Outputs outputs;
  for (std::size_t i = 0; i < made.size(); ++i) {
    if (cvArray_tag* output = made.release(i)) outputs.emplace_back(output);
  }
  return outputs;
}

Outputs call_named(const std::string& name, int nOut, int nIn, cvArray_tag** inputs) {
  return call_function(*function_or_throw(name, nIn, inputs), name, nOut, nIn, inputs);
}

cvUniquePtr make_named_handle(const std::string& name) {
  const std::shared_ptr<Callable> callable = std::make_shared<NamedFunction>(name);
  return cvUniquePtr(cvCreateFunctionHandle("@" + name, callable));
}

Outputs call_value(const cvArray_tag* function, int nOut, int nIn, cvArray_tag** inputs) {
  if (cvIsChar(function)) return call_named(kmf::cvarray_to_string(function), nOut, nIn, inputs);
  if (cvGetClassID(function) != cvFUNCTION_CLASS) throw_runtime_error("NotCallable", cvGetClassName(function));
  const std::shared_ptr<void> native = cvGetNative(function);
  if (!native) throw_runtime_error("NotCallable", cvGetClassName(function));
  return static_cast<const Callable*>(native.get())->call(nOut, nIn, inputs);
}

}  // namespace embedded::scripting_runtime

namespace kmf {

using namespace embedded::scripting_runtime;

void call_internal_corvane(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs, const char* name) {
  std::fill_n(outputs, std::max(nOut, 0), nullptr);
  const auto function = function_or_throw(name, nIn, inputs);
  Slots made(nOut);
  run(*function, name, nOut, made, nIn, inputs);
  for (int i = 0; i < nOut; ++i) outputs[i] = made.release(static_cast<std::size_t>(i));
}

void call_corvane(int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs, const char* name,
                  bool interruptible) {
  const Interruptible guard(interruptible);
  call_internal_corvane(nOut, outputs, nIn, inputs, name);
}

void register_corvane_function(const std::string& name, CvFunction function) {
  table()[name] = std::make_shared<const CvFunction>(std::move(function));
}

void unregister_corvane_function(const std::string& name) {
  table().erase(name);
}

}  // namespace kmf
