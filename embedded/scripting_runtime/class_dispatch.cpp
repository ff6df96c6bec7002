#include "embedded/scripting_runtime/class_dispatch.hpp"

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"

#include <algorithm>

namespace embedded::scripting_runtime {

namespace {

constexpr char group[] = "kinemo:scripting:runtime";

constinit const ClassDispatch* known_dispatch = nullptr;

[[noreturn]] void fail(kmf::MessageException error, const std::string& name, const std::vector<std::string>& known) {
  const std::string nearest = nearest_name(name, known);
  if (!nearest.empty()) {
    error.addCause(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NearestName", nearest))));
  }
  throw error;
}

std::string joined(const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ", ") + name;
  return text;
}

}  // namespace

std::shared_ptr<const kmf::CvFunction> ClassDispatch::find_method(const std::string&, std::string_view) const {
  return nullptr;
}
bool ClassDispatch::is_property(const std::string&, std::string_view) const {
  return false;
}
std::shared_ptr<const kmf::CvFunction> ClassDispatch::find_function(std::string_view) const {
  return nullptr;
}
std::string ClassDispatch::description(std::string_view) const {
  return {};
}
std::optional<std::string> ClassDispatch::display_text(const cvArray_tag*) const {
  return std::nullopt;
}
bool ClassDispatch::has_class(const std::string&) const {
  return false;
}
bool ClassDispatch::has_package(std::string_view) const {
  return false;
}
std::vector<std::string> ClassDispatch::class_names() const {
  return {};
}
std::vector<std::string> ClassDispatch::methods_of(const std::string&) const {
  return {};
}
std::vector<std::string> ClassDispatch::package_contents(std::string_view) const {
  return {};
}

void set_class_dispatch(const ClassDispatch* dispatch) noexcept {
  known_dispatch = dispatch;
}

const ClassDispatch& class_dispatch() noexcept {
  static const ClassDispatch none;
  return known_dispatch != nullptr ? *known_dispatch : none;
}

std::vector<std::string> class_names() {
  return class_dispatch().class_names();
}

std::vector<std::string> methods_of(const std::string& class_name) {
  return class_dispatch().methods_of(class_name);
}

std::vector<std::string> package_contents(const std::string& path) {
  return class_dispatch().package_contents(path);
}

void throw_no_such_method(const std::string& class_name, const std::string& method) {
  fail(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NoSuchMethod", method, class_name))), method,
       methods_of(class_name));
}

void refuse_in_package(const std::string& path) {
  const auto end_of_name = [&](std::size_t begin) { return std::min(path.find('.', begin), path.size()); };
  const auto is_package = [&](std::size_t end) { return class_dispatch().has_package(path.substr(0, end)); };
  std::size_t end = end_of_name(0);
  if (!is_package(end)) return;
  while (end < path.size() && is_package(end_of_name(end + 1))) end = end_of_name(end + 1);
  const std::string package = path.substr(0, end);
  const std::vector<std::string> known = package_contents(package);
  if (end == path.size()) throw_runtime_error("PackageIsNoValue", package, joined(known));
  const std::string name = path.substr(end + 1, end_of_name(end + 1) - end - 1);
  fail(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NotInPackage", name, package))), name, known);
}

}  // namespace embedded::scripting_runtime
