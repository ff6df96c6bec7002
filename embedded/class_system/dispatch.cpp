#include "embedded/class_system/dispatch.hpp"

#include "embedded/class_system/call_checks.hpp"
#include "embedded/class_system/errors.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/class_system/packages.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"

#include <algorithm>

namespace embedded::class_system {

namespace {

using Function = std::shared_ptr<const kmf::CvFunction>;

/// A call of a method as the runtime makes it.
Function function_of(std::string name, const MethodPtr& method) {
  return std::make_shared<const kmf::CvFunction>(
      [name = std::move(name), method](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
        check_inputs(name, *method->getMethodSignature(), nIn, inputs, method->isFirstArgDispatch() ? 1 : 0);
        int given = nOut;
        method->invoke(nullptr, given, outputs, nIn, inputs);
      });
}

Function constructor_of(Class& its_class) {
  return std::make_shared<const kmf::CvFunction>([&its_class](int, cvArray_tag** outputs, int nIn, cvArray_tag**) {
    if (nIn > 0) throw_class_error("TooManyInputs", its_class.definition().name, std::to_string(nIn), std::string("0"));
    ccos::COSInterfacePtr object;
    its_class.createInstance(object);
    its_class.construct(object);
    outputs[0] = array_of(object).release();
  });
}

std::string size_text(const cvArray_tag* array) {
  std::string text;
  for (const std::size_t size : cvGetDimensions(array)) text += (text.empty() ? "" : "x") + std::to_string(size);
  return text;
}

MethodPtr method_of(const std::string& class_name, std::string_view name) {
  const Class* found = find_class(ccos::COSNameID(class_name));
  return found ? found->method(std::string(name)) : nullptr;
}

MethodPtr package_method(std::string_view path) {
  const auto [place, name] = split_path(path);
  Package* package = place.empty() ? nullptr : find_package(place);  // packages alone stand at the top
  return package ? package->method(std::string(name)) : nullptr;
}

class Dispatch : public scripting_runtime::ClassDispatch {
 public:
  Function find_method(const std::string& class_name, std::string_view name) const override {
    const MethodPtr method = method_of(class_name, name);
    return method ? function_of(class_name + '.' + method->getName(), method) : nullptr;
  }

  bool is_property(const std::string& class_name, std::string_view name) const override {
    const MethodPtr method = method_of(class_name, name);
    if (!method) return false;
    const ccos::COSMethodSignature& signature = *method->getMethodSignature();
    return signature.numInputs() == 1 && !signature.takesFurtherInputs();
  }

  Function find_function(std::string_view path) const override {
    if (const MethodPtr method = package_method(path)) return function_of(std::string(path), method);
    if (path.find('.') == std::string_view::npos) return nullptr;
    Class* its_class = find_class(ccos::COSNameID(std::string(path)));
    return its_class ? constructor_of(*its_class) : nullptr;
  }

  std::string description(std::string_view path) const override {
    const MethodPtr method = package_method(path);
    if (!method) return {};
    const std::string sentence = method->getDescription();
    const std::string details = method->getDetailedDescription();
    return sentence + (sentence.empty() || details.empty() ? "" : "\n") + details;
  }

  std::optional<std::string> display_text(const cvArray_tag* array) const override {
    if (!omIsCCOSArray(array)) return std::nullopt;
    const std::string name = cvGetClassName(array);
    if (cvGetNumberOfElements(array) == 1) {
      const void* native = native_of(omGetArrayElement(array, 0));
      const auto& display = find_class(ccos::COSNameID(name))->definition().display;
      if (native && display) return display(native);
    }
    return '[' + size_text(array) + ' ' + name + ']';
  }

  bool has_class(const std::string& name) const override { return find_class(ccos::COSNameID(name)) != nullptr; }
  bool has_package(std::string_view path) const override { return find_package(path) != nullptr; }
  std::vector<std::string> class_names() const override { return known_classes(); }

  std::vector<std::string> methods_of(const std::string& class_name) const override {
    const Class* found = find_class(ccos::COSNameID(class_name));
    return found ? found->method_names() : std::vector<std::string>();
  }

  std::vector<std::string> package_contents(std::string_view path) const override {
    const Package* package = find_package(path);
    if (!package) return {};
    std::vector<std::string> names = package->contents();
    for (const std::string& name : known_classes()) {
      const auto [place, last] = split_path(name);
      if (place == path) names.emplace_back(last);
    }
    std::sort(names.begin(), names.end());
    return names;
  }
};

}  // namespace

void install_dispatch() {
  static const Dispatch dispatch;
  scripting_runtime::set_class_dispatch(&dispatch);
}

}  // namespace embedded::class_system
