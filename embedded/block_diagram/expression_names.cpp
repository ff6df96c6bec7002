#include "embedded/block_diagram/expression_names.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/parameter_object.hpp"
#include "embedded/expression/parse.hpp"
#include "embedded/expression/walk.hpp"
#include "platform/foundation/strings.hpp"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace embedded::block_diagram {

namespace {

/// Calls `visit(block, mask)` for every block with a mask, at all levels.
template <class Visit>
void forEachMask(const Diagram& diagram, const Visit& visit) {
  std::vector<const System*> open{&diagram.root()};
  while (!open.empty()) {
    const System& system = *open.back();
    open.pop_back();
    for (const GTBlock* block : system.blocks()) {
      if (const GTMask* mask = block->host().mask.get()) visit(*block, *mask);
      if (const System* inside = contents(*block)) open.push_back(inside);
    }
  }
}

/// The parameters of masks of subsystems, which blocks inside see.
struct MaskParameters {
  explicit MaskParameters(const Diagram& diagram) {
    forEachMask(diagram, [this](const GTBlock& block, const GTMask& mask) {
      if (isSubsystem(block)) add(mask);
    });
  }

  std::set<std::string> names;
  std::set<std::string> withoutNumbers;

 private:
  void add(const GTMask& mask) {
    for (std::size_t i = 0; i < mask.size(); ++i) {
      const std::string& name = mask.kind->parameters()[i].name;
      names.insert(name);
      if (i < mask.values.size() && mask.values[i] && !holdsRealNumbers(mask.values[i].get())) {
        withoutNumbers.insert(name);
      }
    }
  }
};

class Reader {
 public:
  Reader(const Diagram& diagram, const VariableScope& variables, const std::set<std::string>& marked)
      : variables_(variables), marked_(marked), masks_(diagram) {
    forEachMask(diagram, [this](const GTBlock&, const GTMask& mask) { read(mask); });
  }

  CompanionNames names;

 private:
  void read(const GTMask& mask) {
    for (std::size_t i = 0; i < mask.size(); ++i) {
      if (mask.kind->parameters()[i].type != GTPrmDesc::EDIT) continue;
      const SharedText& text = mask.text(i);
      if (text.entry() && read_.insert(text.entry()).second) read(text.text());
    }
  }

  void read(const ustring& text) {
    const expression::ParseResult parsed = expression::parse_cached(kmf::ustring_to_utf8_string(text));
    if (!parsed) return;
    const std::set<std::string> used = expression::used_names(*parsed.tree, true);
    const bool isKept = std::any_of(used.begin(), used.end(), [this](const std::string& name) {
      return marked_.count(name) != 0 || masks_.names.count(name) != 0;
    });
    if (!isKept) return;
    for (const std::string& name : used) {
      if (masks_.withoutNumbers.count(name) != 0) names.withoutNumbers.insert(name);
      if (marked_.count(name) == 0 && variables_.scope().find(name) != nullptr) names.variables.insert(name);
    }
  }

  const VariableScope& variables_;
  const std::set<std::string>& marked_;
  const MaskParameters masks_;
  std::unordered_set<const SharedText::Entry*> read_;
};

}  // namespace

CompanionNames companionNames(const Diagram& diagram, const VariableScope& variables,
                              const std::set<std::string>& marked) {
  return Reader(diagram, variables, marked).names;
}

}  // namespace embedded::block_diagram
