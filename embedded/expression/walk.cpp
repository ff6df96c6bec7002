#include "embedded/expression/walk.hpp"

#include <algorithm>

namespace embedded::expression {

namespace {

class FreeNames {
 public:
  explicit FreeNames(const std::function<void(const Node&, NameUse)>& visitor) : visitor_(visitor) {}

  void walk(const Node& node) {
    switch (node.kind()) {
      case Kind::name:
        return report(node, NameUse::value);
      case Kind::handle:
        return report(node, NameUse::handle);
      case Kind::anonymous:
        return anonymous(node);
      case Kind::index:
        return indexed(node);
      default:
        for (const Tree& child : node.children()) walk(*child);
    }
  }

 private:
  void indexed(const Node& node) {
    if (node.child(0).kind() == Kind::name) {
      report(node.child(0), NameUse::called);
    } else {
      walk(node.child(0));
    }
    for (std::size_t i = 1; i < node.children().size(); ++i) walk(node.child(i));
  }

  void anonymous(const Node& node) {
    const std::size_t before = bound_.size();
    for (std::size_t i = 0; i + 1 < node.children().size(); ++i) bound_.push_back(&node.child(i).text());
    walk(*node.children().back());
    bound_.resize(before);
  }

  void report(const Node& node, NameUse use) {
    const auto same = [&](const std::string* name) { return *name == node.text(); };
    const bool bound = use != NameUse::handle && std::any_of(bound_.begin(), bound_.end(), same);
    if (!bound) visitor_(node, use);
  }

  const std::function<void(const Node&, NameUse)>& visitor_;
  std::vector<const std::string*> bound_;
};

}  // namespace

void visit_free_names(const Node& tree, const std::function<void(const Node&, NameUse)>& visitor) {
  FreeNames(visitor).walk(tree);
}

std::set<std::string> used_names(const Node& tree, bool with_called) {
  std::set<std::string> result;
  visit_free_names(tree, [&](const Node& node, NameUse use) {
    if (use == NameUse::value || (with_called && use == NameUse::called)) result.insert(node.text());
  });
  return result;
}

}  // namespace embedded::expression
