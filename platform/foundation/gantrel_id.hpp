#pragma once

#include "platform/foundation/export.hpp"
#include "platform/foundation/ustring.hpp"
#include "platform/foundation/vn_id.hpp"

#include <map>

namespace kmf {

/// The process's table from graph paths to block paths, by model: errors raised on graph paths are shown on blocks.
class KINEMO_PLATFORM_API GantrelId {
 public:
  /// Stores the table of `model`, in place of an earlier one.
  static void addRegistryEntry(const VnId& model, const std::map<VnIdPath, ustring>& objects);
  /// The block path for a graph path; empty when model or path is unknown.
  static ustring object(const VnId& model, const VnIdPath& path);
  static bool hasRegistryEntry(const VnId& model);
  static void removeRegistryEntry(const VnId& model);
};

}  // namespace kmf
