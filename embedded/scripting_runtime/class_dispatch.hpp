#pragma once

// What the runtime asks a class system: methods of objects, functions of packages, and how objects are shown. The
// runtime knows no classes itself; a class system that stands on it makes itself known here.
//
//   g.nodes, g.subgraph('a'), nodes(g)     methods: chosen by the class of the first input
//   kinemo.gl.gt.graph('physical', 'm')    functions of packages, and classes, which construct objects
//   kinemo.gl.Graph.nodes(g)               a method by its full name

#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace embedded::scripting_runtime {

/// This one knows nothing; a class system overrides what it has.
class ClassDispatch {
 public:
  virtual ~ClassDispatch() = default;
  /// Null where there is no such class or method. The function's first input is the object.
  virtual std::shared_ptr<const kmf::CvFunction> find_method(const std::string& class_name,
                                                             std::string_view method) const;
  /// Whether a method takes nothing but the object, so that brackets behind it index what it gives: g.nodes(2).
  virtual bool is_property(const std::string& class_name, std::string_view method) const;
  /// A function of a package, the constructor of a class, or a method of a class, by its path. Null where there is
  /// none.
  virtual std::shared_ptr<const kmf::CvFunction> find_function(std::string_view path) const;
  /// What its author tells of a function of a package, or of a package; empty for nothing, or where there is none.
  virtual std::string description(std::string_view path) const;
  /// How a prompt shows an array; none for arrays that hold no objects of the class system.
  virtual std::optional<std::string> display_text(const cvArray_tag* array) const;

  virtual bool has_class(const std::string& name) const;
  virtual bool has_package(std::string_view path) const;
  // Names for lists and messages, sorted; none for an unknown class or package.
  virtual std::vector<std::string> class_names() const;
  virtual std::vector<std::string> methods_of(const std::string& class_name) const;
  virtual std::vector<std::string> package_contents(std::string_view path) const;  ///< packages, functions and classes
};

/// Borrowed; null for none.
void set_class_dispatch(const ClassDispatch* dispatch) noexcept;
const ClassDispatch& class_dispatch() noexcept;

/// Names of all classes, of a class's methods, and of what is in a package ("" for the top-level packages of the class
/// system); sorted. The functions of the runtime's own table that have help count to the packages in their
/// names.
std::vector<std::string> class_names();
std::vector<std::string> methods_of(const std::string& class_name);
std::vector<std::string> package_contents(const std::string& path);

/// @throws "NoSuchMethod" (method, class), with the nearest method's name as its cause
[[noreturn]] void throw_no_such_method(const std::string& class_name, const std::string& method);
/// Raises an error where `path`, which is no variable nor function, begins with a package's name; returns otherwise,
/// and where it goes on behind a function of a package.
/// @throws "NotInPackage" (name, package), with the nearest name of the package as its cause, "PackageIsNoValue"
/// (package, what is in it), or "NoSuchMethod" (method, class)
void refuse_in_package(const std::string& path);

}  // namespace embedded::scripting_runtime
