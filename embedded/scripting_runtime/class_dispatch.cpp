#include "embedded/scripting_runtime/class_dispatch.hpp"

#include "embedded/scripting_runtime/errors.hpp"
#include "embedded/scripting_runtime/evaluator.hpp"
#include "embedded/scripting_runtime/functions.hpp"
#include "embedded/scripting_runtime/help.hpp"

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

/// The end of the name that begins at a place of a path.
std::size_t end_of_name(const std::string& path, std::size_t begin) {
  return std::min(path.find('.', begin), path.size());
}

bool contains(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

/// Raises an error where the path, up to `end`, is a class, and a method follows that it hasn't.
void refuse_in_class(const std::string& path, std::size_t end) {
  const std::string owner = path.substr(0, end);
  if (end == path.size() || !class_dispatch().has_class(owner)) return;
  const std::string method = path.substr(end + 1, end_of_name(path, end + 1) - end - 1);
  if (!contains(methods_of(owner), method)) throw_no_such_method(owner, method);
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
  std::vector<std::string> names = class_dispatch().package_contents(path);
  if (path.empty()) return names;
  const std::string head = path + '.';
  for (const std::string& function : function_names()) {
    if (function.compare(0, head.size(), head) != 0 || find_help(function) == nullptr) continue;
    std::string name = function.substr(head.size(), end_of_name(function, head.size()) - head.size());
    if (!contains(names, name)) names.push_back(std::move(name));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void throw_no_such_method(const std::string& class_name, const std::string& method) {
  fail(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NoSuchMethod", method, class_name))), method,
       methods_of(class_name));
}

void refuse_in_package(const std::string& path) {
  std::size_t end = end_of_name(path, 0);
  if (!class_dispatch().has_package(path.substr(0, end))) return;
  while (end < path.size() && class_dispatch().has_package(path.substr(0, end_of_name(path, end + 1)))) {
    end = end_of_name(path, end + 1);
  }
  const std::string package = path.substr(0, end);
  const std::vector<std::string> known = package_contents(package);
  if (end == path.size()) throw_runtime_error("PackageIsNoValue", package, joined(known));
  const std::string name = path.substr(end + 1, end_of_name(path, end + 1) - end - 1);
  if (!contains(known, name)) {
    fail(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NotInPackage", name, package))), name, known);
  }
  refuse_in_class(path, end_of_name(path, end + 1));
}

}  // namespace embedded::scripting_runtime
