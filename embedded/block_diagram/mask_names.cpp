// Names of the dialog parameters of a block's own mask and all masks around it. What lies around a system is worked out
// once for the system, and every block of one kind in it gets a copy of the same array.

#include "embedded/block_diagram/block_data.hpp"
#include "embedded/block_diagram/host_functions.hpp"
#include "embedded/block_diagram/system_data.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

#include <unordered_set>

namespace embedded::block_diagram {

namespace {

using Names = std::shared_ptr<const std::vector<std::string>>;

std::uint64_t current_epoch = 1;

/// `outer` with the names of the mask in front that it lacks. `outer` itself when there is nothing to add.
Names withMask(const GTMask* mask, const Names& outer) {
  if (!mask || mask->size() == 0) return outer;
  std::unordered_set<std::string_view> own;
  std::vector<std::string> names;
  for (const GTMaskParameter& parameter : mask->kind->parameters()) {
    own.insert(parameter.name);
    names.push_back(parameter.name);
  }
  const std::size_t before = names.size();
  std::size_t shared = 0;
  for (const std::string& name : *outer) {
    if (own.count(name)) {
      ++shared;
    } else {
      names.push_back(name);
    }
  }
  if (shared == before) return outer;
  return std::make_shared<const std::vector<std::string>>(std::move(names));
}

MaskNames& namesOf(const System& system) {
  std::unique_ptr<MaskNames>& names = SystemAccess::data(system).maskNames;
  if (!names) names = std::make_unique<MaskNames>();
  return *names;
}

/// Brings the names around `system` up to date, from the outermost system that isn't inward.
const Names& namesAround(const System& system) {
  std::vector<const System*> stale;
  for (const System* at = &system; at; at = at->owner() ? &parentSystem(*at->owner()) : nullptr) {
    if (namesOf(*at).epoch == current_epoch) break;
    stale.push_back(at);
  }
  while (!stale.empty()) {
    const System& at = *stale.back();
    stale.pop_back();
    MaskNames& names = namesOf(at);
    const GTBlock* owner = at.owner();
    names.names = owner ? withMask(owner->host().mask.get(), namesOf(parentSystem(*owner)).names)
                        : std::make_shared<const std::vector<std::string>>();
    names.arrays.clear();
    names.epoch = current_epoch;
  }
  return namesOf(system).names;
}

cvUniquePtr cellOf(const std::vector<std::string>& names) {
  std::vector<ustring> texts;
  texts.reserve(names.size());
  for (const std::string& name : names) texts.push_back(kmf::utf8_string_to_ustring(name));
  cvUniquePtr cell(kmf::string_vector_to_cvarray(texts, 1));
  cvSetArrayScope(cell.get(), 0);
  return cell;
}

cvUniquePtr namesFor(const GTBlock& block) {
  const System* system = block.host().system;
  const GTMask* mask = block.host().mask.get();
  if (!system) return cellOf(*withMask(mask, std::make_shared<const std::vector<std::string>>()));
  const Names& around = namesAround(*system);
  MaskNames::Array& kept = namesOf(*system).arrays[mask ? mask->kind.get() : nullptr];
  if (!kept.names) {
    if (mask) kept.kind = mask->kind;
    kept.names = cellOf(*withMask(mask, around));
  }
  return cvUniquePtr(cvCreateSharedCopy(kept.names.get()));
}

}  // namespace

void masksChanged(GTBlock& block) {
  if (isSubsystem(block)) ++current_epoch;
}

void recursiveMaskNames(int, Arguments outputs, int nIn, Arguments inputs) {
  kmf::check_num_inputs(1, 1, nIn);
  GantrelObject& object = objectFrom(inputs[0]);
  if (const auto* block = dynamic_cast<const GTBlock*>(&object)) {
    outputs[0] = namesFor(*block).release();
  } else {
    outputs[0] = kmf::string_vector_to_cvarray({}, 1);
  }
}

}  // namespace embedded::block_diagram
