#include "platform/block_diagram/library.hpp"

#include "embedded/block_diagram/block_data.hpp"
#include "platform/foundation/exception.hpp"

#include <map>
#include <memory>

namespace {

using Prototypes = std::map<std::string, std::unique_ptr<GTBlock>>;

Prototypes& prototypes() {
  static Prototypes* const instance = new Prototypes;
  return *instance;
}

}  // namespace

void gt_register_prototype(const std::string& name, GTBlock* prototype) {
  std::unique_ptr<GTBlock> owned(prototype);
  if (prototypes().count(name)) kmf::throw_message("kinemo:host:library", "DuplicatePrototype", name);
  prototype->host().library = embedded::block_diagram::internName(name);
  prototypes().emplace(name, std::move(owned));
}

void gt_unregister_prototypes(const std::string& prefix) {
  auto at = prototypes().lower_bound(prefix);
  while (at != prototypes().end() && at->first.compare(0, prefix.size(), prefix) == 0) at = prototypes().erase(at);
}

GTBlock* gt_find_prototype(const std::string& name) {
  const auto found = prototypes().find(name);
  return found == prototypes().end() ? nullptr : found->second.get();
}

std::vector<std::string> gt_prototype_names() {
  std::vector<std::string> names;
  for (const auto& entry : prototypes()) names.push_back(entry.first);
  return names;
}
