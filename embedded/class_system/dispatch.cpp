#include "embedded/class_system/dispatch.hpp"

#include "embedded/class_system/call_checks.hpp"
#include "embedded/class_system/errors.hpp"
#include "embedded/class_system/objects.hpp"
#include "embedded/class_system/packages.hpp"
#include "embedded/scripting_runtime/class_dispatch.hpp"
#include "embedded/scripting_runtime/display.hpp"
#include "embedded/scripting_runtime/text_layout.hpp"

#include <algorithm>

namespace embedded::class_system {

namespace {

using Function = std::shared_ptr<const kmf::CvFunction>;

/// A call of a method as the runtime makes it; `objects` inputs stand before the name.
Function function_of(std::string name, const MethodPtr& method, std::size_t objects) {
  return std::make_shared<const kmf::CvFunction>(
      [name = std::move(name), method, objects](int nOut, cvArray_tag** outputs, int nIn, cvArray_tag** inputs) {
        check_inputs(name, *method->getMethodSignature(), nIn, inputs, objects);
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

/// "2,1" for the element `index`, from 0.
std::string place_text(const cvArray_tag* array, std::size_t index) {
  std::string text;
  for (const std::size_t size : cvGetDimensions(array)) {
    text += (text.empty() ? "" : ",") + std::to_string(index % size + 1);
    index /= size;
  }
  return text;
}

/// "    (2,1): Counter at 5" for each of the first objects.
std::string element_lines(const cvArray_tag* array, const std::function<std::string(const void*)>& display) {
  constexpr std::size_t most_shown = 10;
  const std::size_t count = cvGetNumberOfElements(array);
  std::string text;
  for (std::size_t i = 0; i < std::min(count, most_shown); ++i) {
    const void* native = native_of(omGetArrayElement(array, i));
    const std::string head = "    (" + place_text(array, i) + "): ";
    const std::size_t width = scripting_runtime::display_limits().width;
    const std::size_t room = width - std::min(width, head.size());
    text += "\n" + head + (native ? scripting_runtime::on_one_line(display(native), room) : "no object");
  }
  if (count > most_shown) text += "\n    ... and " + std::to_string(count - most_shown) + " more";
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
    return method ? function_of(class_name + '.' + method->getName(), method, method->isFirstArgDispatch() ? 1 : 0)
                  : nullptr;
  }

  bool is_property(const std::string& class_name, std::string_view name) const override {
    const MethodPtr method = method_of(class_name, name);
    if (!method) return false;
    const ccos::COSMethodSignature& signature = *method->getMethodSignature();
    return signature.numInputs() == 1 && !signature.takesFurtherInputs();
  }

  Function find_function(std::string_view path) const override {
    const auto [owner, name] = split_path(path);
    if (owner.empty()) return nullptr;
    if (const MethodPtr method = package_method(path)) {
      return function_of(std::string(path), method, method->isFirstArgDispatch() ? 1 : 0);
    }
    if (const MethodPtr method = method_of(std::string(owner), name)) return function_of(std::string(path), method, 0);
    Class* its_class = find_class(ccos::COSNameID(std::string(path)));
    return its_class ? constructor_of(*its_class) : nullptr;
  }

  std::string description(std::string_view path) const override {
    if (const Package* package = path.empty() ? nullptr : find_package(path)) return package->description();
    const MethodPtr method = package_method(path);
    if (!method) return {};
    const std::string sentence = method->getDescription();
    const std::string details = method->getDetailedDescription();
    return sentence + (sentence.empty() || details.empty() ? "" : "\n") + details;
  }

  std::optional<std::string> display_text(const cvArray_tag* array) const override {
    if (!omIsCCOSArray(array)) return std::nullopt;
    const std::string name = cvGetClassName(array);
    const auto& display = find_class(ccos::COSNameID(name))->definition().display;
    const std::size_t count = cvGetNumberOfElements(array);
    if (!display || count == 0) return '[' + size_text(array) + ' ' + name + ']';
    if (count > 1) return size_text(array) + ' ' + name + ':' + element_lines(array, display);
    const void* native = native_of(omGetArrayElement(array, 0));
    return native ? display(native) : '[' + size_text(array) + ' ' + name + ']';
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
