#include "embedded/scripting_array/scopes.hpp"

#include "embedded/scripting_array/errors.hpp"

#include <memory>
#include <vector>

namespace kmf::embedded {
namespace {

/// The head of a scope's list, which is a ring.
struct Scope : ScopeLink {
  Scope() { previous = next = this; }
  Scope(const Scope&) = delete;

  void add(cvArray_tag* array) noexcept {
    array->previous = previous;
    array->next = this;
    previous->next = array;
    previous = array;
  }
  bool empty() const noexcept { return next == this; }
};

// Kept for the length of the process, since static objects may still end arrays at its end.
std::vector<std::unique_ptr<Scope>>& scopes() {
  static auto* const all = new std::vector<std::unique_ptr<Scope>>;
  return *all;
}

constinit int open_scope = 0;  // the number of scopes that are open; scope n stands at n - 1

Scope& scope_at(int number) {
  return *scopes()[static_cast<std::size_t>(number - 1)];
}

}  // namespace

void enter_open_scope(cvArray_tag* array) noexcept {
  if (open_scope == 0) return;
  scope_at(open_scope).add(array);
  array->scope = open_scope;
}

void leave_scope(cvArray_tag* array) noexcept {
  array->scope = 0;
  if (!array->previous) return;
  array->previous->next = array->next;
  array->next->previous = array->previous;
  array->previous = array->next = nullptr;
}

}  // namespace kmf::embedded

using namespace kmf::embedded;

int cvOpenScope() {
  if (static_cast<std::size_t>(open_scope) == scopes().size()) scopes().push_back(std::make_unique<Scope>());
  return ++open_scope;
}

void cvCloseScope(int scope) noexcept {
  if (scope < 1) return;
  for (; open_scope >= scope; --open_scope) {
    Scope& closing = scope_at(open_scope);
    while (!closing.empty()) cvDestroyArray(static_cast<cvArray_tag*>(closing.next));
  }
}

void cvSetArrayScope(cvArray_tag* array, int scope) {
  checked(array);
  if (scope < 0 || scope > open_scope) {
    throw_array_error("ScopeNotOpen", std::to_string(scope), std::to_string(open_scope));
  }
  leave_scope(array);
  if (scope == 0) return;
  scope_at(scope).add(array);
  array->scope = scope;
}

void gtsvSetLocalScope(cvArray_tag* array) {
  cvSetArrayScope(array, open_scope);
}

int cvGetArrayScope(const cvArray_tag* array) {
  return checked(array).scope;
}
