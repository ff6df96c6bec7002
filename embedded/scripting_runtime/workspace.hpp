#pragma once

// Workspaces hold variables; a scope is the order in which workspaces are asked for a name.
//
// A workspace owns its arrays, which have scope 0 and so outlive the calls that made them. Scopes own nothing: the
// workspaces, and the scopes around them, must outlive them.

#include "platform/scripting_array/scripting_array.hpp"

#include <list>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace embedded::scripting_runtime {

class Workspace {
 public:
  Workspace() = default;
  /// Copies share the contents of their arrays until one of them is written.
  Workspace(const Workspace& other);
  Workspace& operator=(const Workspace& other);
  Workspace(Workspace&&) noexcept = default;
  Workspace& operator=(Workspace&&) noexcept = default;

  /// Borrowed until the variable is set or cleared; null when there is none.
  const cvArray_tag* get(std::string_view name) const;
  bool has(std::string_view name) const { return get(name) != nullptr; }
  /// Takes over `value`, which must not be null. A new variable comes last; one that exists keeps its place.
  void set(const std::string& name, cvUniquePtr value);
  void set(const std::string& name, double value) { set(name, cvUniquePtr(cvCreateDoubleScalar(value))); }
  void set(const std::string& name, const std::string& utf8) { set(name, cvUniquePtr(cvCreateString(utf8))); }
  /// Takes a variable's value out, to be changed in place without a copy; null when there is none. The variable can't
  /// be found until it is set again.
  cvUniquePtr take(std::string_view name);
  /// Whether there was one.
  bool clear(std::string_view name);
  void clear();

  /// In the order in which the variables came.
  std::vector<std::string> names() const;
  std::size_t size() const { return variables_.size(); }
  bool empty() const { return variables_.empty(); }

 private:
  struct Variable {
    std::string name;
    cvUniquePtr value;
  };
  using Variables = std::list<Variable>;

  Variables variables_;
  std::unordered_map<std::string_view, Variables::iterator> index_;  // the keys are the names in `variables_`
};

/// A chain of name lookups, such as mask workspace, masks around it, model workspace, base workspace.
class Scope {
 public:
  /// Without any variables: functions only.
  Scope() = default;
  explicit Scope(const Workspace& only) : own_{&only} {}
  /// `workspaces` are tried in order, then what `outer` tries.
  explicit Scope(std::vector<const Workspace*> workspaces, const Scope* outer = nullptr)
      : own_(std::move(workspaces)), outer_(outer) {}
  Scope(const Workspace& first, const Scope& outer) : own_{&first}, outer_(&outer) {}

  /// Borrowed; null when no workspace has the name.
  const cvArray_tag* find(std::string_view name) const;
  /// All names that can be found, each once, for messages.
  std::vector<std::string> names() const;

 private:
  std::vector<const Workspace*> own_;
  const Scope* outer_ = nullptr;
};

/// The workspace of the process, the last one of most scopes. It lives as long as the process.
Workspace& base_workspace();

}  // namespace embedded::scripting_runtime
