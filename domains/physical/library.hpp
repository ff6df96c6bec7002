#pragma once

#include "domains/physical/prepared_kind.hpp"

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class GtBlockContext;

namespace kinemo::physical {

/// The domain's kinds of blocks, made ready. There is one while the module is loaded.
class Library {
 public:
  explicit Library(std::vector<BlockKind> kinds);

  /// Hands the host one prototype for each kind. @throws as `gt_register_prototype`
  void registerPrototypes(GtBlockContext* context) const;
  /// Null for an unknown name.
  const PreparedKind* find(const std::string& libraryName) const;

 private:
  std::vector<std::shared_ptr<const PreparedKind>> kinds_;
  std::unordered_map<std::string, const PreparedKind*> byName_;
};

}  // namespace kinemo::physical
