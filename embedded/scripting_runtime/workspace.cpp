#include "embedded/scripting_runtime/workspace.hpp"

#include <unordered_set>

namespace embedded::scripting_runtime {

Workspace::Workspace(const Workspace& other) {
  for (const Variable& variable : other.variables_) {
    set(variable.name, cvUniquePtr(cvCreateSharedCopy(variable.value.get())));
  }
}

Workspace& Workspace::operator=(const Workspace& other) {
  Workspace copy(other);
  *this = std::move(copy);
  return *this;
}

const cvArray_tag* Workspace::get(std::string_view name) const {
  const auto found = index_.find(name);
  return found == index_.end() ? nullptr : found->second->value.get();
}

void Workspace::set(const std::string& name, cvUniquePtr value) {
  cvSetArrayScope(value.get(), 0);
  if (const auto found = index_.find(name); found != index_.end()) {
    found->second->value = std::move(value);
    return;
  }
  const auto added = variables_.insert(variables_.end(), Variable{name, std::move(value)});
  index_.emplace(added->name, added);
}

cvUniquePtr Workspace::take(std::string_view name) {
  const auto found = index_.find(name);
  return found == index_.end() ? nullptr : std::move(found->second->value);
}

bool Workspace::clear(std::string_view name) {
  const auto found = index_.find(name);
  if (found == index_.end()) return false;
  const auto variable = found->second;
  index_.erase(found);
  variables_.erase(variable);
  return true;
}

void Workspace::clear() {
  index_.clear();
  variables_.clear();
}

std::vector<std::string> Workspace::names() const {
  std::vector<std::string> result;
  result.reserve(variables_.size());
  for (const Variable& variable : variables_) result.push_back(variable.name);
  return result;
}

const cvArray_tag* Scope::find(std::string_view name) const {
  for (const Scope* scope = this; scope != nullptr; scope = scope->outer_) {
    for (const Workspace* workspace : scope->own_) {
      if (const cvArray_tag* value = workspace->get(name)) return value;
    }
  }
  return nullptr;
}

std::vector<std::string> Scope::names() const {
  std::vector<std::string> result;
  std::unordered_set<std::string> seen;
  for (const Scope* scope = this; scope != nullptr; scope = scope->outer_) {
    for (const Workspace* workspace : scope->own_) {
      for (std::string& name : workspace->names()) {
        if (seen.insert(name).second) result.push_back(std::move(name));
      }
    }
  }
  return result;
}

Workspace& base_workspace() {
  static auto* workspace = new Workspace;  // never destroyed: arrays may be asked for by late destructors
  return *workspace;
}

}  // namespace embedded::scripting_runtime
