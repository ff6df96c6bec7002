#include "platform/foundation/gantrel_id.hpp"

#include <boost/unordered_map.hpp>

#include <mutex>

namespace kmf {
namespace {

using Objects = boost::unordered_map<VnIdPath, ustring>;

struct Registry {
  std::mutex mutex;
  boost::unordered_map<VnId, Objects> models;

  static Registry& get() {
    static Registry* const registry = new Registry;
    return *registry;
  }
};

}  // namespace

void GantrelId::addRegistryEntry(const VnId& model, const std::map<VnIdPath, ustring>& objects) {
  Objects table(objects.begin(), objects.end());
  Registry& registry = Registry::get();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  registry.models[model].swap(table);
}

ustring GantrelId::object(const VnId& model, const VnIdPath& path) {
  Registry& registry = Registry::get();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  const auto objects = registry.models.find(model);
  if (objects == registry.models.end()) return {};
  const auto object = objects->second.find(path);
  return object == objects->second.end() ? ustring() : object->second;
}

bool GantrelId::hasRegistryEntry(const VnId& model) {
  Registry& registry = Registry::get();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  return registry.models.count(model) != 0;
}

void GantrelId::removeRegistryEntry(const VnId& model) {
  Registry& registry = Registry::get();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  registry.models.erase(model);
}

}  // namespace kmf
