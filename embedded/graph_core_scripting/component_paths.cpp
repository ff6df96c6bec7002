#include "embedded/graph_core_scripting/component_paths.hpp"

#include "embedded/graph_core_scripting/arrays.hpp"
#include "embedded/graph_core_scripting/script_classes.hpp"
#include "platform/foundation/exception.hpp"
#include "platform/foundation/strings.hpp"
#include "platform/scripting_runtime/scripting_runtime.hpp"

namespace embedded::graph_core_scripting {

namespace {

constexpr char group[] = "kinemo:graph:scripting";

/// The name of the block that an entry is tied to; empty where it is tied to none.
std::string block_name(const gl::core::Component& component) {
  if (!component.hasTag(gl::core::OBJECT())) return {};
  std::vector<std::string> names = names_in(kmf::ustring_to_utf8_string(gl::core::object(component)));
  return names.empty() ? std::string() : std::move(names.back());
}

[[noreturn]] void fail_unknown(const gl::core::Graph& graph, const std::string& name, const kmf::VnIdPath& place) {
  std::vector<std::string> known;
  for (const auto& [id, component] : graph.components()) {
    known.emplace_back(id);
    if (std::string block = block_name(component); !block.empty()) known.push_back(std::move(block));
  }
  const std::string where = place.empty() ? "/" : address_text(place);
  throw_with_nearest(kmf::MessageException(kmf::Message(kmf::MessageId(group, "NoSuchComponent", name, where))), name,
                     known);
}

}  // namespace

std::vector<std::string> names_in(const std::string& path) {
  std::vector<std::string> names;
  if (path.empty()) return names;
  names.emplace_back();
  for (std::size_t i = 0; i < path.size(); ++i) {
    if (path[i] != '/') {
      names.back() += path[i];
    } else if (i + 1 < path.size() && path[i + 1] == '/') {
      names.back() += path[i++];
    } else {
      names.emplace_back();
    }
  }
  return names;
}

std::vector<std::string> names_in(const cvArray_tag* path) {
  return cvIsCell(path) ? kmf::cvarray_to_string_vector(path) : names_in(kmf::cvarray_to_string(path));
}

const std::pair<const kmf::VnId, gl::core::Component>* component_named(const gl::core::Graph& graph,
                                                                       const std::string& name) {
  const auto& components = graph.components();
  if (kmf::VnId::isLegal(name)) {
    const auto found = components.find(kmf::VnId(name));
    if (found != components.end()) return &*found;
  }
  for (const auto& entry : components) {
    if (!name.empty() && block_name(entry.second) == name) return &entry;
  }
  return nullptr;
}

FoundComponent find_component(const gl::core::Graph& graph, const std::vector<std::string>& names) {
  if (names.empty()) kmf::throw_message(group, "EmptyPath");
  FoundComponent found;
  const gl::core::Graph* inside = &graph;
  for (const std::string& name : names) {
    if (!found.components.empty()) {
      if (!found.component().isSubgraph()) kmf::throw_message(group, "NotASubgraph", address_text(found.address));
      inside = &found.component().graph();
    }
    const auto* entry = component_named(*inside, name);
    if (entry == nullptr) fail_unknown(*inside, name, found.address);
    found.graphs.push_back(inside);
    found.address.append(entry->first);
    found.components.push_back(&entry->second);
  }
  return found;
}

const gl::core::Graph& find_graph(const gl::core::Graph& graph, const std::vector<std::string>& names) {
  if (names.empty()) return graph;
  const FoundComponent found = find_component(graph, names);
  if (!found.component().isSubgraph()) kmf::throw_message(group, "NotASubgraph", address_text(found.address));
  return found.component().graph();
}

}  // namespace embedded::graph_core_scripting
